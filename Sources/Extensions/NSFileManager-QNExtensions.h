#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSFileManager.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

// Operations on files: listing, making, removing, the trash, links, names that are free.
//
// ```cpp
// const NSFileManager& files = NSFileManagerExtensions::threadSafeManager();
// if (createDirectoryRecursivlyAtPath(files, folder, nullptr))
//   if (const auto name = createUniqueFileAtPath(files, folder, u"Untitled", u"txt"))
//     std::cout << utf8(*name) << '\n';  // Untitled.txt, or Untitled-1.txt
// ```
//
// Failures are logged and answered with nil, false, empty or nothing. Who wants to know more gives an `error`, where
// there is one: it is set to the first failure, and otherwise left alone; null is fine. Nil paths are std::nullopt. Any
// thread, each with its own manager (NSFileManagerExtensions::threadSafeManager).
//
// Removing goes by open folders and never through a link in the tree: nothing outside of it is touched, whatever others
// do to it meanwhile. A link that is to be removed goes itself, and what it leads to stays.
namespace kelvane {

// contentsOfDirectoryAtURL:error:matching:  The URLs of what is in the folder and matches, in the order of the file
// system, those of folders with a "/" at the end. Empty for nil, for no predicate, and after an error.
//
// Linear: about as fast as the system can list.
KELVANE_EXPORT std::vector<Ref<NSURL>> contentsOfDirectoryAtURL(const NSFileManager& receiver, const Ref<NSURL>& url,
                                                                Ref<NSError>* error,
                                                                const std::function<bool(const NSURL&)>& matching);

// createDirectoryRecursivlyAtPath:attributes:  Makes a folder and those above it that are missing, with attributes
// (NSFileManager.h) unless they are nil. True when it is there afterwards; a failure goes to the system log.
KELVANE_EXPORT bool createDirectoryRecursivlyAtPath(const NSFileManager& receiver, std::optional<TextView> path,
                                                    const Ref<NSDictionary>& attributes, Ref<NSError>* error = nullptr);

// deleteAllFilesWithNameContaining:fromFolder:  Removes the files in a folder whose name contains the fragment, with
// regard to case; folders, links to folders and what is in them stay. Nothing for a nil or empty fragment or folder.
// Failures go to the system log.
KELVANE_EXPORT void deleteAllFilesWithNameContaining(const NSFileManager& receiver,
                                                     std::optional<TextView> nameContaining,
                                                     std::optional<TextView> fromFolder, Ref<NSError>* error = nullptr);

// removeAllItemsFromPath:recursive:matching:  Asks the predicate for each item in the folder, files, links and folders
// alike, by its full path (`path`, "/" and names), and removes those that it is true for, a folder with all that is in
// it. If `recursive`, the same in each folder that stays, except through links. What the process may not remove
// (NSFileManager::isDeletableFileAtPath) and what has vanished meanwhile is passed over. Nothing for a nil or empty
// path, and where there is no folder. Failures are logged, and the rest goes on.
//
// The predicate may itself change the folder; without one nothing is removed.
KELVANE_EXPORT void removeAllItemsFromPath(const NSFileManager& receiver, std::optional<TextView> path, bool recursive,
                                           const std::function<bool(TextView)>& matching,
                                           Ref<NSError>* error = nullptr);

// moveFileToTrash:  Moves the file, the folder or the link at `path` to the trash (Platform/Foundation/Trash.h), and
// gives the place where it is now: nil when it was not moved, or that place cannot be told. Nothing for a nil or empty
// path.
KELVANE_EXPORT Ref<NSURL> moveFileToTrash(const NSFileManager& receiver, std::optional<TextView> path,
                                          Ref<NSError>* error = nullptr);

// resolveAliasAndLinkAtPath:  For a link, however many links it leads through, the path of what they lead to; otherwise
// the path in its standard form (stringByStandardizingPath). A path where nothing is comes back as it is, nil as nil.
KELVANE_EXPORT std::optional<Text> resolveAliasAndLinkAtPath(const NSFileManager& receiver,
                                                             std::optional<TextView> path);

// fileExistsAtURL:  Whether there is something at the path of a file URL; false for any other, and nil.
KELVANE_EXPORT bool fileExistsAtURL(const NSFileManager& receiver, const Ref<NSURL>& url);
// isDirectoryAtPath:  Whether there is a folder, or a link to one.
KELVANE_EXPORT bool isDirectoryAtPath(const NSFileManager& receiver, std::optional<TextView> path);
// isFileAtPath:  Whether there is something that is no folder.
KELVANE_EXPORT bool isFileAtPath(const NSFileManager& receiver, std::optional<TextView> path);

// uniqueFileNameAtPath:basedOnName:fileExtension:  A file name that is free in the folder: "NAME.EXTENSION", else the
// first of "NAME-1.EXTENSION" to "NAME-9999.EXTENSION"; a nil extension is an empty one. Nil for a nil or empty folder
// or name, and, logged, where there is no such folder or all are taken. Nothing is made: somebody else may be given the
// same name, and one that is too long for the file system counts as free, so rather use the one below. Each name is a
// question to the file system.
KELVANE_EXPORT std::optional<Text> uniqueFileNameAtPath(const NSFileManager& receiver, std::optional<TextView> path,
                                                        std::optional<TextView> basedOnName,
                                                        std::optional<TextView> fileExtension);

// The same, and the file is made: empty, for the caller alone, whoever else asks at the same time, in this process or
// another. What would be free, but cannot be made, is a failure; so is a name with "/" or NUL.
KELVANE_EXPORT std::optional<Text> createUniqueFileAtPath(const NSFileManager& receiver, std::optional<TextView> path,
                                                          std::optional<TextView> basedOnName,
                                                          std::optional<TextView> fileExtension,
                                                          Ref<NSError>* error = nullptr);

namespace NSFileManagerExtensions {

// temporaryFileURLWithExtension:  The URL of a file that is not there yet, in the user's folder for temporary files,
// with a UUID for its name, and a point and the extension, even an empty one, unless that is nil. Nil when a hundred
// names were taken. Nothing is made.
KELVANE_EXPORT Ref<NSURL> temporaryFileURLWithExtension(std::optional<TextView> extension);

// The same, and the file is made: empty, and for its user's eyes only (0600).
KELVANE_EXPORT Ref<NSURL> createTemporaryFileWithExtension(std::optional<TextView> extension,
                                                           Ref<NSError>* error = nullptr);

}  // namespace NSFileManagerExtensions

}  // namespace kelvane
