#include "Platform/Foundation/NSSearchPath.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/HomeDirectory.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/StandardFolders.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

constexpr std::size_t largestUserDirectories = 65536;

// The folders that the user can name in "user-dirs.dirs", and what they are called otherwise.
struct NamedFolder {
  NSSearchPathDirectory directory;
  std::string_view key;
  TextView inHome;
};

constexpr NamedFolder namedFolders[] = {
    {NSDocumentDirectory, "XDG_DOCUMENTS_DIR", u"Documents"},
    {NSDesktopDirectory, "XDG_DESKTOP_DIR", u"Desktop"},
    {NSDownloadsDirectory, "XDG_DOWNLOAD_DIR", u"Downloads"},
    {NSMoviesDirectory, "XDG_VIDEOS_DIR", u"Videos"},
    {NSMusicDirectory, "XDG_MUSIC_DIR", u"Music"},
    {NSPicturesDirectory, "XDG_PICTURES_DIR", u"Pictures"},
};

constexpr std::string_view blanks = " \t";

std::string_view withoutLeadingBlanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

// The path in `KEY="$HOME/..."` or `KEY="/..."`, where a backslash makes the next character one like any other; nothing
// for other lines.
std::optional<Text> pathInLine(std::string_view line, std::string_view key) {
  line = withoutLeadingBlanks(line);
  if (!line.starts_with(key)) return std::nullopt;
  line = withoutLeadingBlanks(line.substr(key.size()));
  if (!line.starts_with('=')) return std::nullopt;
  line = withoutLeadingBlanks(line.substr(1));
  if (!line.starts_with('"')) return std::nullopt;
  line.remove_prefix(1);
  constexpr std::string_view home = "$HOME";
  const bool isInHome = line.starts_with("$HOME/") || line.starts_with("$HOME\"");
  if (isInHome) line.remove_prefix(home.size());
  if (!isInHome && !line.starts_with('/')) return std::nullopt;
  std::string path;
  for (std::size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
    if (line[i] == '\\' && i + 1 < line.size()) ++i;
    path += line[i];
  }
  const Text text = textFromFileSystem(path);
  return isInHome ? stringByAppendingPathComponent(NSHomeDirectory(), text) : text;
}

// As the shell would read the file, the last line counts.
std::optional<Text> userDirectory(std::string_view key) {
  const Text path = stringByAppendingPathComponent(configurationFolderPath(), u"user-dirs.dirs");
  const FileContents file = readFile(fileSystemRepresentation(path), largestUserDirectories);
  std::optional<Text> found;
  std::string_view rest = file.bytes;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    if (auto folder = pathInLine(rest.substr(0, end), key)) found = std::move(folder);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return found;
}

Text userFolder(NSSearchPathDirectory directory) {
  if (directory == NSCachesDirectory) return cacheFolderPath();
  for (const NamedFolder& folder : namedFolders) {
    if (folder.directory != directory) continue;
    const auto named = userDirectory(folder.key);
    return named ? *named : stringByAppendingPathComponent(NSHomeDirectory(), folder.inHome);
  }
  return dataFolderPath();
}

Text abbreviated(Text path) {
  const Text home = NSHomeDirectory();
  const bool isInHome =
      home != u"/" && path.starts_with(home) && (path.size() == home.size() || path[home.size()] == u'/');
  return isInHome ? u"~" + path.substr(home.size()) : path;
}

enum class Ownership { Private, Shared, Missing };

// Whether the folder belongs to this user and nobody else may write to it.
Ownership ownershipOf(const std::string& folder, bool mayBeLink) {
  struct stat status = {};
  if (fstatat(AT_FDCWD, folder.c_str(), &status, mayBeLink ? 0 : AT_SYMLINK_NOFOLLOW) < 0) return Ownership::Missing;
  const bool isMine = S_ISDIR(status.st_mode) && status.st_uid == geteuid();
  return isMine && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0 ? Ownership::Private : Ownership::Shared;
}

// Made once for the process; where even that fails, the shared folder has to do.
const std::string& folderOfThisProcess(const std::string& shared) {
  static const std::string& folder = *[&shared] {
    std::string pattern = shared + "/kelvane-" + std::to_string(geteuid()) + "-XXXXXX";
    return new std::string(mkdtemp(pattern.data()) ? pattern : shared);
  }();
  return folder;
}

}  // namespace

std::vector<Text> NSSearchPathForDirectoriesInDomains(NSSearchPathDirectory directory, NSSearchPathDomainMask domains,
                                                      bool expandTilde) {
  const bool isLibrary = directory == NSLibraryDirectory || directory == NSApplicationSupportDirectory;
  std::vector<Text> paths;
  if (domains & NSUserDomainMask) {
    const Text path = userFolder(directory);
    paths.push_back(expandTilde ? path : abbreviated(path));
  }
  if ((domains & NSLocalDomainMask) && isLibrary) paths.emplace_back(u"/usr/local/share");
  if ((domains & NSLocalDomainMask) && directory == NSCachesDirectory) paths.emplace_back(u"/var/cache");
  if ((domains & NSSystemDomainMask) && isLibrary) paths.emplace_back(u"/usr/share");
  return paths;
}

Text NSTemporaryDirectory() {
  const char* variable = getenv("TMPDIR");
  std::string base = variable && variable[0] == '/' ? variable : "/tmp";
  while (base.size() > 1 && base.back() == '/') base.pop_back();
  if (ownershipOf(base, true) != Ownership::Shared) return textFromFileSystem(base);
  const std::string mine = base + "/kelvane-" + std::to_string(geteuid());
  if (mkdir(mine.c_str(), 0700) == 0 || ownershipOf(mine, false) == Ownership::Private) return textFromFileSystem(mine);
  return textFromFileSystem(folderOfThisProcess(base));
}

}  // namespace kelvane
