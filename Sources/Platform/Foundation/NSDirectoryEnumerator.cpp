#include "Platform/Foundation/NSDirectoryEnumerator.h"

#include <string>
#include <utility>
#include <vector>

#include "Platform/Foundation/FolderChain.h"
#include "Platform/Foundation/FolderEntries.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {

struct NSDirectoryEnumerator::Way {
  struct Level {
    FolderEntries entries;
    // Of the relative path of the folder, with its "/".
    std::size_t prefixLength = 0;
  };

  Text root;
  FolderChain folders;
  std::vector<Level> levels;
  // That of the last item.
  Text path;
  // The name of the last item, while it may be a folder to go into.
  std::string folderToEnter;
};

NSDirectoryEnumerator::NSDirectoryEnumerator(TextView path) : myWay(std::make_unique<Way>()) {
  myWay->root = path;
  std::error_code error = std::make_error_code(std::errc::no_such_file_or_directory);
  if (!path.empty() && path.find(u'\0') == TextView::npos) error = myWay->folders.begin(fileSystemRepresentation(path));
  if (!error) error = myWay->levels.emplace_back().entries.read(myWay->folders.descriptor());
  if (error) note(error, {});
}

NSDirectoryEnumerator::~NSDirectoryEnumerator() = default;

std::optional<Text> NSDirectoryEnumerator::nextObject() {
  Way& way = *myWay;
  const std::string folder = std::exchange(way.folderToEnter, {});
  if (!folder.empty()) {
    std::error_code error = way.folders.enter(folder.c_str());
    if (!error) {
      way.levels.push_back({{}, way.path.size() + 1});
      error = way.levels.back().entries.read(way.folders.descriptor());
    }
    if (error && error != std::errc::not_a_directory) note(error, way.path);
  }
  FolderEntries::Entry entry;
  while (!way.levels.empty() && !way.levels.back().entries.next(entry)) {
    way.levels.pop_back();
    const std::error_code error = way.levels.empty() ? std::error_code() : way.folders.leave();
    if (!error) continue;
    note(error, way.path);
    way.levels.clear();
  }
  if (way.levels.empty()) return std::nullopt;
  const std::size_t prefixLength = way.levels.back().prefixLength;
  if (prefixLength > way.path.size())
    way.path += u'/';
  else
    way.path.resize(prefixLength);
  way.path += textFromFileSystem(entry.name);
  if (entry.kind == DT_DIR || entry.kind == DT_UNKNOWN) way.folderToEnter = entry.name;
  return way.path;
}

void NSDirectoryEnumerator::skipDescendants() { myWay->folderToEnter.clear(); }

void NSDirectoryEnumerator::note(const std::error_code& error, TextView path) {
  myLastError = NSError::errorWithSystemError(error, stringByAppendingPathComponent(myWay->root, path));
}

}  // namespace kelvane
