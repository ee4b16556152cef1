#include "Platform/Foundation/HomeDirectory.h"

#include <errno.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// Runs one of the user database's re-entrant look-ups with a buffer that grows until the entry fits.
template <class LookUp>
std::optional<Text> homeFound(LookUp lookUp) {
  std::vector<char> buffer(1024);
  passwd entry{};
  passwd* found = nullptr;
  while (lookUp(&entry, buffer.data(), buffer.size(), &found) == ERANGE) buffer.resize(buffer.size() * 2);
  if (!found || !found->pw_dir) return std::nullopt;
  return textFromFileSystem(found->pw_dir);
}

}  // namespace

Text NSHomeDirectory() {
  const char* home = std::getenv("HOME");
  if (home && home[0] == '/') return textFromFileSystem(home);
  const auto found = homeFound([](passwd* entry, char* buffer, std::size_t size, passwd** result) {
    return getpwuid_r(geteuid(), entry, buffer, size, result);
  });
  return found.value_or(u"/");
}

std::optional<Text> NSHomeDirectoryForUser(TextView name) {
  // A name with NUL names nobody; cut there, it would name somebody else.
  if (name.find(u'\0') != TextView::npos) return std::nullopt;
  const std::string bytes = fileSystemRepresentation(name);
  return homeFound([&bytes](passwd* entry, char* buffer, std::size_t size, passwd** result) {
    return getpwnam_r(bytes.c_str(), entry, buffer, size, result);
  });
}

}  // namespace kelvane
