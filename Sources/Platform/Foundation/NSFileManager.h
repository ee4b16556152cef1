#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// The file system's services. Paths are as textFromFileSystem gives them; "~" is not expanded; a path that is empty or
// holds NUL names nothing. A manager is used by one thread at a time: NSFileManagerExtensions::threadSafeManager gives
// each its own.
class KELVANE_EXPORT NSFileManager {
 public:
  NSFileManager() = default;
  NSFileManager(const NSFileManager&) = delete;
  NSFileManager& operator=(const NSFileManager&) = delete;

  // fileExistsAtPath:  Whether there is something at `path`, symbolic links followed.
  bool fileExistsAtPath(TextView path) const;
  // fileExistsAtPath:isDirectory:  Tells besides whether it is a folder; `isDirectory` is set to false where nothing
  // is.
  bool fileExistsAtPath(TextView path, bool* isDirectory) const;

  // removeItemAtPath:error:  Removes a file, a link (not what it leads to) or a folder with all that is in it. False
  // when something could not be removed or nothing is there; then `error`, unless null, is set to the reason.
  bool removeItemAtPath(TextView path, Ref<NSError>* error) const;

  // createDirectoryAtPath:withIntermediateDirectories:attributes:error:  Makes a folder, and those above it where
  // `withIntermediateDirectories` says so. True also when it is there already, but only with intermediate folders.
  bool createDirectoryAtPath(TextView path, bool withIntermediateDirectories, Ref<NSError>* error) const;
};

}  // namespace kelvane
