#include "Support/TemporaryFolder.h"

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace kelvane {

TemporaryFolder::TemporaryFolder() : myPath(std::filesystem::temp_directory_path() / "kelvane-test-XXXXXX") {
  if (!mkdtemp(myPath.data())) throw std::runtime_error("TemporaryFolder: cannot create " + myPath);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(myPath, ignored);
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
