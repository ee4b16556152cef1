#pragma once

#include <functional>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// Attributes of files: the permissions, the numbers of owner and group (numbers), and the time of the last change (a
// date).
inline constexpr TextView NSFilePosixPermissions = u"NSFilePosixPermissions";
inline constexpr TextView NSFileOwnerAccountID = u"NSFileOwnerAccountID";
inline constexpr TextView NSFileGroupOwnerAccountID = u"NSFileGroupOwnerAccountID";
inline constexpr TextView NSFileModificationDate = u"NSFileModificationDate";

// The file system's services. Paths are as textFromFileSystem gives them; "~" is not expanded; a path that is empty or
// holds NUL names nothing. Where an operation takes an `error`, it may be null; it is set to the reason of a failure,
// with the path that it is about, and otherwise left alone. A manager is used by one thread at a time:
// NSFileManagerExtensions::threadSafeManager gives each its own. NSDirectoryEnumerator.h walks folders.
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
  // Whether there is something at `path`, be it a link that leads nowhere.
  bool itemExistsAtPath(TextView path) const;

  // isDeletableFileAtPath:  Whether there is something at `path` that the process may remove, as far as the folder
  // around it is concerned: one that can be written, and where it is sticky, belongs to the process as the item does.
  bool isDeletableFileAtPath(TextView path) const;

  // contentsOfDirectoryAtPath:error:  The names in the folder, without "." and "..", in the order of the file system.
  // None after an error.
  std::vector<Text> contentsOfDirectoryAtPath(TextView path, Ref<NSError>* error) const;
  // contentsOfDirectoryAtURL:includingPropertiesForKeys:options:error:  The URLs of what is in the folder that a file
  // URL names, those of folders with a "/" at the end; only those that match, where there is a predicate. None after an
  // error; any other URL is one (EINVAL).
  std::vector<Ref<NSURL>> contentsOfDirectoryAtURL(const NSURL& url, Ref<NSError>* error,
                                                   const std::function<bool(const NSURL&)>& matching = nullptr) const;

  // removeItemAtPath:error:  Removes a file, a link (not what it leads to) or a folder with all that is in it. False
  // when something could not be removed or nothing is there. Touches nothing outside (FileRemoval.h); what is mounted
  // below is inside.
  bool removeItemAtPath(TextView path, Ref<NSError>* error) const;

  // moveItemAtPath:toPath:error:  Gives a file, a link or a folder another path on the same file system. Nothing is
  // ever replaced: what is at `toPath` already is a failure (EEXIST), as is another file system (EXDEV).
  bool moveItemAtPath(TextView path, TextView toPath, Ref<NSError>* error) const;

  // createDirectoryAtPath:withIntermediateDirectories:attributes:error:  Makes a folder, and those above it where
  // `withIntermediateDirectories` says so. True also when it is there already, but only with intermediate folders.
  // All folders that are made get the attributes, which may be nil, whatever the umask; other attributes than those
  // above count for nothing.
  bool createDirectoryAtPath(TextView path, bool withIntermediateDirectories, const NSDictionary* attributes,
                             Ref<NSError>* error) const;
  bool createDirectoryAtPath(TextView path, bool withIntermediateDirectories, Ref<NSError>* error) const {
    return createDirectoryAtPath(path, withIntermediateDirectories, nullptr, error);
  }
};

}  // namespace kelvane
