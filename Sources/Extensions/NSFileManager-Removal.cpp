// The operations of NSFileManager-QNExtensions.h that remove what a folder holds.

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <utility>
#include <vector>

#include "Extensions/NSFileManager-QNExtensions.h"
#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/FileRemoval.h"
#include "Platform/Foundation/FolderChain.h"
#include "Platform/Foundation/FolderEntries.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Utilities/QNLogger.h"

namespace kelvane {
namespace {

constexpr const char* removeAllItemsMethod =
    "-[NSFileManager(QNExtensions) removeAllItemsFromPath:recursive:matching:]";

Text removalFailure(TextView path, const NSError& error) {
  return format(u"Error while requesting contents of folder '%@': %@", path, error.localizedDescription());
}

// Whether a folder could not be opened because there is none.
bool isNoFolder(const std::error_code& error) {
  return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory ||
         error == std::errc::too_many_symbolic_link_levels || error == std::errc::filename_too_long;
}

// Keeps the first failure for who asked.
class FirstError {
 public:
  explicit FirstError(Ref<NSError>* error) : myError(error) {}

  void note(const Ref<NSError>& error) {
    if (myError && !std::exchange(myIsSet, true)) *myError = error;
  }

 private:
  Ref<NSError>* myError;
  bool myIsSet = false;
};

// An open folder, as far as removing from it goes.
class RemovalRights {
 public:
  explicit RemovalRights(int folder) {
    struct stat status = {};
    myMayWrite = faccessat(folder, ".", W_OK | X_OK, AT_EACCESS) == 0 && fstat(folder, &status) == 0;
    myMayRemoveOnlyMine = (status.st_mode & S_ISVTX) != 0 && status.st_uid != myUser && myUser != 0;
  }

  // Whether the item can be removed (NSFileManager::isDeletableFileAtPath tells the rules).
  bool allow(const struct stat& item) const { return myMayWrite && (!myMayRemoveOnlyMine || item.st_uid == myUser); }

 private:
  uid_t myUser = geteuid();
  bool myMayWrite = false;
  bool myMayRemoveOnlyMine = false;
};

std::optional<std::string> systemPath(std::optional<TextView> path) {
  if (!path || path->empty() || path->find(u'\0') != TextView::npos) return std::nullopt;
  return fileSystemRepresentation(*path);
}

bool isFolderBehind(int folder, const char* name, const struct stat& item) {
  struct stat target = {};
  if (!S_ISLNK(item.st_mode)) return S_ISDIR(item.st_mode);
  return fstatat(folder, name, &target, 0) == 0 && S_ISDIR(target.st_mode);
}

// A walk that removes what matches.
class SelectiveRemoval {
 public:
  SelectiveRemoval(bool isRecursive, const std::function<bool(TextView)>& matching, FirstError& error)
      : myIsRecursive(isRecursive), myMatching(matching), myError(error) {}

  void run(TextView path, const std::string& folder) {
    myPath = path;
    if (const auto error = myWay.begin(folder)) {
      if (!isNoFolder(error)) logListing(error);
      return;
    }
    list();
    while (!myLevels.empty()) {
      FolderEntries::Entry entry;
      if (myLevels.back().entries.next(entry))
        consider(entry.name);
      else
        leave();
    }
  }

 private:
  struct Level {
    FolderEntries entries;
    RemovalRights rights;
    // Of the folder's path.
    std::size_t pathLength;
  };

  // The innermost folder, whose path is `myPath`.
  void list() {
    Level& level = myLevels.emplace_back(Level{{}, RemovalRights(myWay.descriptor()), myPath.size()});
    const std::error_code error = level.entries.read(myWay.descriptor());
    if (!error) return;
    logListing(error);
    level.entries.clear();
  }

  void leave() {
    myLevels.pop_back();
    if (myLevels.empty()) return;
    myPath.resize(myLevels.back().pathLength);
    const std::error_code error = myWay.leave();
    if (!error) return;
    logListing(error);
    myLevels.clear();
  }

  void consider(const char* name) {
    const Level& level = myLevels.back();
    const int folder = myWay.descriptor();
    struct stat item = {};
    if (fstatat(folder, name, &item, AT_SYMLINK_NOFOLLOW) < 0 || !level.rights.allow(item)) return;
    myPath.resize(level.pathLength);
    if (!myPath.ends_with(u'/')) myPath += u'/';
    myPath += textFromFileSystem(name);
    if (myMatching(myPath))
      remove(folder, name, item);
    else if (myIsRecursive && S_ISDIR(item.st_mode))
      enter(name);
  }

  void remove(int folder, const char* name, const struct stat& item) {
    if (!S_ISDIR(item.st_mode) && (unlinkat(folder, name, 0) == 0 || errno == ENOENT)) return;
    const RemovalResult result = removeTree(folder, name);
    // Gone by itself is as good.
    if (!result.error || result.error == std::errc::no_such_file_or_directory) return;
    const auto error = NSError::errorWithSystemError(result.error, myPath);
    QNLogger::sharedLogger().error(__LINE__, __FILE__, removeAllItemsMethod, removalFailure(myPath, *error));
    myError.note(error);
  }

  void enter(const char* name) {
    const std::error_code error = myWay.enter(name);
    if (!error) return list();
    // It may have vanished, or become something else.
    if (!isNoFolder(error)) logListing(error);
  }

  void logListing(const std::error_code& reason) {
    const auto error = NSError::errorWithSystemError(reason, myPath);
    QNLogger::sharedLogger().nsError(__LINE__, __FILE__, removeAllItemsMethod, error.get());
    myError.note(error);
  }

  bool myIsRecursive;
  const std::function<bool(TextView)>& myMatching;
  FirstError& myError;
  FolderChain myWay;
  std::vector<Level> myLevels;
  Text myPath;
};

}  // namespace

void deleteAllFilesWithNameContaining(const NSFileManager&, std::optional<TextView> nameContaining,
                                      std::optional<TextView> fromFolder, Ref<NSError>* error) {
  const auto path = systemPath(fromFolder);
  if (!path || !nameContaining || nameContaining->empty()) return;
  FirstError firstError(error);
  const auto fail = [&](const std::error_code& reason, TextView place) {
    const auto failure = NSError::errorWithSystemError(reason, place);
    systemLog(removalFailure(*fromFolder, *failure));
    firstError.note(failure);
  };
  FolderChain folder;
  FolderEntries entries;
  std::error_code reason = folder.begin(*path);
  if (isNoFolder(reason)) return;
  if (!reason) reason = entries.read(folder.descriptor());
  if (reason) return fail(reason, *fromFolder);
  const RemovalRights rights(folder.descriptor());
  FolderEntries::Entry entry;
  while (entries.next(entry)) {
    const Text name = textFromFileSystem(entry.name);
    struct stat item = {};
    if (!containsString(name, *nameContaining)) continue;
    if (fstatat(folder.descriptor(), entry.name, &item, AT_SYMLINK_NOFOLLOW) < 0 || !rights.allow(item)) continue;
    if (isFolderBehind(folder.descriptor(), entry.name, item)) continue;
    if (unlinkat(folder.descriptor(), entry.name, 0) < 0 && errno != ENOENT)
      fail({errno, std::generic_category()}, Text(*fromFolder) + u"/" + name);
  }
}

void removeAllItemsFromPath(const NSFileManager&, std::optional<TextView> path, bool recursive,
                            const std::function<bool(TextView)>& matching, Ref<NSError>* error) {
  const auto folder = systemPath(path);
  if (!folder || !matching) return;
  FirstError firstError(error);
  SelectiveRemoval(recursive, matching, firstError).run(*path, *folder);
}

}  // namespace kelvane
