#include "Support/TemporaryFolder.h"

#include <stdlib.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace kelvane {

std::string bytesOfFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TemporaryFolder::TemporaryFolder() : myPath(fs::temp_directory_path() / "kelvane-test-XXXXXX") {
  if (!mkdtemp(myPath.data())) throw std::runtime_error("TemporaryFolder: cannot create " + myPath);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(myPath, ignored);
}

void TemporaryFolder::write(const std::string& name, std::string_view bytes) const {
  fs::create_directories(fs::path(path(name)).parent_path());
  std::ofstream(path(name), std::ios::binary) << bytes;
}

std::vector<std::string> TemporaryFolder::names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(myPath)) names.push_back(entry.path().filename());
  std::ranges::sort(names);
  return names;
}

void TemporaryFolder::clear() {
  for (const auto& entry : fs::directory_iterator(myPath)) fs::remove_all(entry.path());
}

}  // namespace kelvane
