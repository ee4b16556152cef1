#include "Support/TemporaryFolder.h"

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace kelvane {

TemporaryFolder::TemporaryFolder() : myPath(std::filesystem::temp_directory_path() / "kelvane-test-XXXXXX") {
  if (!mkdtemp(myPath.data())) throw std::runtime_error("TemporaryFolder: cannot create " + myPath);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(myPath, ignored);
}

void TemporaryFolder::write(const std::string& name, std::string_view bytes) const {
  std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
  std::ofstream(path(name), std::ios::binary) << bytes;
}

std::string TemporaryFolder::bytes(const std::string& name) const {
  std::ifstream file(path(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> TemporaryFolder::names() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(myPath)) names.push_back(entry.path().filename());
  std::ranges::sort(names);
  return names;
}

void TemporaryFolder::clear() {
  for (const auto& entry : std::filesystem::directory_iterator(myPath)) std::filesystem::remove_all(entry.path());
}

}  // namespace kelvane
