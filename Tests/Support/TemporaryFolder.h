#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {

namespace fs = std::filesystem;

// What the file holds; empty for none.
std::string bytesOfFile(const fs::path& path);

// The permissions of what is there itself, as a number such as 0640.
inline unsigned modeOf(const fs::path& path) { return static_cast<unsigned>(fs::symlink_status(path).permissions()); }

// An empty folder that is removed at the end with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // Absolute, without a slash at the end.
  const std::string& path() const { return myPath; }
  std::string path(const std::string& name) const { return myPath + "/" + name; }
  // The same as text.
  Text text(const std::string& name) const { return textFromFileSystem(path(name)); }
  // Writes a file, and makes the folders that it is to stand in.
  void write(const std::string& name, std::string_view bytes) const;
  std::string bytes(const std::string& name) const { return bytesOfFile(path(name)); }
  // The names of what is in the folder, sorted.
  std::vector<std::string> names() const;
  // Removes all that is in the folder.
  void clear();

 private:
  std::string myPath;
};

}  // namespace kelvane
