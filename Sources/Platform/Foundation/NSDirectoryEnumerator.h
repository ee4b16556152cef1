#pragma once

#include <memory>
#include <optional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// Walks a folder and those in it: each item's path relative to the folder, a folder before what is in it, otherwise in
// the order of the file system. Links are given and not followed; folders that cannot be read, and items that vanish,
// are passed over. Memory for the names of one folder and those above it. One thread at a time.
//
// ```cpp
// NSDirectoryEnumerator walk(u"/usr/share/icons");
// while (const std::optional<Text> path = walk.nextObject()) std::cout << utf8(*path) << '\n';
// ```
class KELVANE_EXPORT NSDirectoryEnumerator {
 public:
  // enumeratorAtPath:  A link at `path` is followed. A walk that cannot begin gives nothing.
  explicit NSDirectoryEnumerator(TextView path);
  ~NSDirectoryEnumerator();
  NSDirectoryEnumerator(const NSDirectoryEnumerator&) = delete;
  NSDirectoryEnumerator& operator=(const NSDirectoryEnumerator&) = delete;

  // The next item; nothing at the end.
  std::optional<Text> nextObject();
  // Does not go into the folder that was given last.
  void skipDescendants();
  // Why the last folder that was passed over was; nil when none was.
  const Ref<NSError>& lastError() const { return myLastError; }

 private:
  struct Way;

  void note(const std::error_code& error, TextView path);

  std::unique_ptr<Way> myWay;
  Ref<NSError> myLastError;
};

}  // namespace kelvane
