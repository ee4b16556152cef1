#include "Platform/Foundation/NSFileManager.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "Platform/Foundation/FileRemoval.h"
#include "Platform/Foundation/FolderChain.h"
#include "Platform/Foundation/FolderEntries.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/SystemCalls.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// Nothing for a path that the system's calls would cut short, or take for another.
std::optional<std::string> systemPath(TextView path) {
  if (path.empty() || path.find(u'\0') != TextView::npos) return std::nullopt;
  return fileSystemRepresentation(path);
}

bool failWith(const std::error_code& reason, TextView path, Ref<NSError>* error) {
  if (error) *error = NSError::errorWithSystemError(reason, path);
  return false;
}

bool failWithErrno(int number, TextView path, Ref<NSError>* error) {
  return failWith({number, std::generic_category()}, path, error);
}

bool isFolder(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// Hands each entry of the folder to `take`.
template <class Take>
std::error_code list(const std::string& path, Take take) {
  FolderChain folder;
  FolderEntries entries;
  if (const auto error = folder.begin(path)) return error;
  if (const auto error = entries.read(folder.descriptor())) return error;
  FolderEntries::Entry entry;
  while (entries.next(entry)) take(folder.descriptor(), entry);
  return {};
}

// Only where the file system does not keep the kinds with the names is the file itself asked.
bool isFolder(int parent, const FolderEntries::Entry& entry) {
  if (entry.kind != DT_UNKNOWN) return entry.kind == DT_DIR;
  struct stat status = {};
  return fstatat(parent, entry.name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
}

template <class T>
Ref<const T> attribute(const NSDictionary& attributes, TextView key) {
  return as<T>(attributes.objectForKey(key));
}

timespec timeOf(const NSDate& date) {
  const double seconds = std::floor(date.timeIntervalSince1970());
  return {static_cast<time_t>(seconds), static_cast<long>((date.timeIntervalSince1970() - seconds) * 1e9)};
}

int setAttributes(const std::string& folder, const NSDictionary& attributes) {
  constexpr auto unchanged = static_cast<uid_t>(-1);
  const auto owner = attribute<NSNumber>(attributes, NSFileOwnerAccountID);
  const auto group = attribute<NSNumber>(attributes, NSFileGroupOwnerAccountID);
  if ((owner || group) && lchown(folder.c_str(), owner ? static_cast<uid_t>(owner->unsignedIntegerValue()) : unchanged,
                                 group ? static_cast<gid_t>(group->unsignedIntegerValue()) : unchanged) < 0)
    return errno;
  const auto permissions = attribute<NSNumber>(attributes, NSFilePosixPermissions);
  if (permissions && chmod(folder.c_str(), static_cast<mode_t>(permissions->unsignedIntegerValue() & 07777)) < 0)
    return errno;
  const auto date = attribute<NSDate>(attributes, NSFileModificationDate);
  // What is no number, or does not fit into the system's, is no date for a file.
  constexpr double farthest = 9e18;
  if (date && !(std::abs(date->timeIntervalSince1970()) < farthest)) return EINVAL;
  const timespec times[2] = {{0, UTIME_OMIT}, date ? timeOf(*date) : timespec{0, UTIME_OMIT}};
  return date && utimensat(AT_FDCWD, folder.c_str(), times, AT_SYMLINK_NOFOLLOW) < 0 ? errno : 0;
}

// Makes `path` and what is missing above it, and tells what was made, outermost first. 0 or an error number.
int makeFolders(const std::string& path, std::vector<std::string>& made) {
  // What is there already need not be writable, nor readable on the way.
  std::vector<std::size_t> missing;
  std::size_t end = path.find_last_not_of('/') + 1;
  for (;;) {
    const std::string folder = end == 0 ? "/" : path.substr(0, end);
    if (mkdir(folder.c_str(), 0777) == 0) {
      made.push_back(folder);
      break;
    }
    const int reason = errno;
    if (isFolder(folder)) break;
    if (reason != ENOENT || end == 0) return reason;
    const std::size_t slash = path.rfind('/', end - 1);
    if (slash == std::string::npos) return reason;
    missing.push_back(end);
    end = slash == 0 ? 0 : path.find_last_not_of('/', slash) + 1;
  }
  for (; !missing.empty(); missing.pop_back()) {
    const std::string folder = path.substr(0, missing.back());
    // Somebody else may have made it meanwhile.
    if (mkdir(folder.c_str(), 0777) == 0)
      made.push_back(folder);
    else if (const int reason = errno; !isFolder(folder))
      return reason;
  }
  return 0;
}

}  // namespace

bool NSFileManager::fileExistsAtPath(TextView path) const { return fileExistsAtPath(path, nullptr); }

bool NSFileManager::fileExistsAtPath(TextView path, bool* isDirectory) const {
  const auto file = systemPath(path);
  struct stat status = {};
  const bool exists = file && stat(file->c_str(), &status) == 0;
  if (isDirectory) *isDirectory = exists && S_ISDIR(status.st_mode);
  return exists;
}

bool NSFileManager::itemExistsAtPath(TextView path) const {
  const auto file = systemPath(path);
  struct stat status = {};
  return file && lstat(file->c_str(), &status) == 0;
}

bool NSFileManager::isDeletableFileAtPath(TextView path) const {
  const auto file = systemPath(path);
  struct stat item = {};
  if (!file || lstat(file->c_str(), &item) < 0) return false;
  const TextView parent = stringByDeletingLastPathComponent(path);
  const std::string folder = parent.empty() ? "." : fileSystemRepresentation(parent);
  struct stat around = {};
  if (faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) < 0 || stat(folder.c_str(), &around) < 0)
    return false;
  const uid_t me = geteuid();
  return (around.st_mode & S_ISVTX) == 0 || me == 0 || me == around.st_uid || me == item.st_uid;
}

std::vector<Text> NSFileManager::contentsOfDirectoryAtPath(TextView path, Ref<NSError>* error) const {
  std::vector<Text> names;
  const auto folder = systemPath(path);
  const std::error_code reason =
      folder ? list(*folder, [&](int, const auto& entry) { names.push_back(textFromFileSystem(entry.name)); })
             : std::make_error_code(std::errc::no_such_file_or_directory);
  if (reason) failWith(reason, path, error);
  return names;
}

std::vector<Ref<NSURL>> NSFileManager::contentsOfDirectoryAtURL(
    const NSURL& url, Ref<NSError>* error, const std::function<bool(const NSURL&)>& matching) const {
  std::vector<Ref<NSURL>> urls;
  const Text path = url.path().value_or(Text());
  const auto folder = url.isFileURL() ? systemPath(path) : std::nullopt;
  const auto take = [&](int parent, const FolderEntries::Entry& entry) {
    Ref<NSURL> item = url.URLByAppendingFileName(entry.name, isFolder(parent, entry));
    if (!matching || matching(*item)) urls.push_back(std::move(item));
  };
  if (!url.isFileURL())
    failWithErrno(EINVAL, url.absoluteString(), error);
  else if (const auto reason = folder ? list(*folder, take) : std::error_code(ENOENT, std::generic_category()))
    failWith(reason, path, error);
  return urls;
}

bool NSFileManager::removeItemAtPath(TextView path, Ref<NSError>* error) const {
  const auto file = systemPath(path);
  if (!file) return failWithErrno(ENOENT, path, error);
  const RemovalResult result = removeTree(*file);
  return !result.error || failWith(result.error, textFromFileSystem(result.path), error);
}

bool NSFileManager::moveItemAtPath(TextView path, TextView toPath, Ref<NSError>* error) const {
  const auto from = systemPath(path);
  const auto to = systemPath(toPath);
  if (!from || !to) return failWithErrno(ENOENT, from ? toPath : path, error);
  SystemCalls& calls = SystemCalls::system();
  if (calls.renameWithoutReplacing(from->c_str(), to->c_str()) == 0) return true;
  if (errno != EINVAL) return failWithErrno(errno, path, error);
  // A file system that cannot promise it: what is there now is left alone at least. A folder within itself is EINVAL,
  // too, and stays that.
  struct stat status = {};
  if (lstat(to->c_str(), &status) == 0) return failWithErrno(EEXIST, toPath, error);
  return calls.rename(from->c_str(), to->c_str()) == 0 || failWithErrno(errno, path, error);
}

bool NSFileManager::createDirectoryAtPath(TextView path, bool withIntermediateDirectories,
                                          const NSDictionary* attributes, Ref<NSError>* error) const {
  const auto folder = systemPath(path);
  if (!folder) return failWithErrno(ENOENT, path, error);
  std::vector<std::string> made;
  int reason = 0;
  if (withIntermediateDirectories)
    reason = makeFolders(*folder, made);
  else if (mkdir(folder->c_str(), 0777) == 0)
    made.push_back(*folder);
  else
    reason = errno;
  // From the innermost outwards: a folder without the right to write takes no more folders.
  for (; attributes && !made.empty() && reason == 0; made.pop_back()) reason = setAttributes(made.back(), *attributes);
  return reason == 0 || failWithErrno(reason, path, error);
}

}  // namespace kelvane
