#include "Platform/Foundation/Trash.h"

#include <errno.h>
#include <fcntl.h>
#include <gio/gio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "Platform/Foundation/FolderChain.h"
#include "Platform/Foundation/FolderEntries.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

template <auto release>
struct Releaser {
  template <class T>
  void operator()(T* object) const {
    release(object);
  }
};

using FileHandle = std::unique_ptr<GFile, Releaser<g_object_unref>>;
using ErrorHandle = std::unique_ptr<GError, Releaser<g_error_free>>;

// The top of the mount that holds `path`, as far as can be seen from outside: the last folder on the same device.
std::string topFolder(const std::string& path, dev_t device) {
  std::string top = path;
  for (std::size_t end = path.rfind('/'); end != std::string::npos;
       end = end == 0 ? std::string::npos : path.rfind('/', end - 1)) {
    const std::string above = end == 0 ? "/" : path.substr(0, end);
    struct stat status = {};
    if (stat(above.c_str(), &status) < 0 || status.st_dev != device) break;
    top = above;
  }
  return top;
}

std::vector<std::string> possibleTrashes(const std::string& path, dev_t device) {
  const std::string user = std::to_string(getuid());
  std::string top = topFolder(path, device);
  if (top != "/") top += '/';
  return {std::string(g_get_user_data_dir()) + "/Trash", top + ".Trash/" + user, top + ".Trash-" + user};
}

// The item in the trash is the very one that it was outside, under whatever name. Mostly it has kept its own; only
// otherwise the trash, which may be large, is gone through.
Ref<NSURL> findInTrash(const std::string& trash, const std::string& name, const struct stat& item) {
  FolderChain folder;
  FolderEntries entries;
  if (folder.begin(trash + "/files")) return nullptr;
  const auto isItem = [&](const char* there) {
    struct stat status = {};
    return fstatat(folder.descriptor(), there, &status, AT_SYMLINK_NOFOLLOW) == 0 && status.st_dev == item.st_dev &&
           status.st_ino == item.st_ino;
  };
  const auto urlOf = [&](const std::string& there) {
    return NSURL::fileURLWithPath(textFromFileSystem(trash + "/files/" + there), S_ISDIR(item.st_mode));
  };
  if (isItem(name.c_str())) return urlOf(name);
  if (entries.read(folder.descriptor())) return nullptr;
  FolderEntries::Entry entry;
  while (entries.next(entry))
    if (entry.inode == item.st_ino && isItem(entry.name)) return urlOf(entry.name);
  return nullptr;
}

// Sets `resolved` to the path with its folder's links resolved, since mounts are found by looking upwards; the item
// itself may be a link. 0 or an error number: EINVAL where the end of the path is no name, as with the root.
int resolve(const std::string& path, std::string& resolved) {
  const std::size_t end = path.find_last_not_of('/') + 1;
  const std::size_t start = end == 0 ? 0 : path.rfind('/', end - 1) + 1;
  const std::string name = path.substr(start, end - start);
  if (name.empty() || name == "." || name == "..") return EINVAL;
  const std::string parent = start == 0 ? "." : path.substr(0, start);
  const std::unique_ptr<char, Releaser<free>> folder(realpath(parent.c_str(), nullptr));
  if (!folder) return errno;
  resolved = folder.get();
  if (resolved != "/") resolved += '/';
  resolved += name;
  return 0;
}

bool failWith(Ref<NSError> reason, Ref<NSError>* error) {
  if (error) *error = std::move(reason);
  return false;
}

}  // namespace

bool trashItemAtPath(TextView path, Ref<NSURL>* resultingItemURL, Ref<NSError>* error) {
  struct stat item = {};
  std::string file;
  const bool isPath = !path.empty() && path.find(u'\0') == TextView::npos;
  int reason = isPath ? resolve(fileSystemRepresentation(path), file) : ENOENT;
  if (reason == 0 && lstat(file.c_str(), &item) < 0) reason = errno;
  // GIO takes a relative data folder for what it is: a folder wherever the process happens to stand.
  if (reason == 0 && g_get_user_data_dir()[0] != '/') reason = EINVAL;
  if (reason != 0) return failWith(NSError::errorWithSystemError({reason, std::generic_category()}, path), error);
  // The local file system as it is: the default one would load modules of the desktop into the process.
  const FileHandle handle(g_vfs_get_file_for_path(g_vfs_get_local(), file.c_str()));
  GError* failure = nullptr;
  if (g_file_trash(handle.get(), nullptr, &failure) == FALSE) {
    const ErrorHandle owner(failure);
    return failWith(NSError::errorWithDescription(textFromUTF8(g_quark_to_string(failure->domain)), failure->code,
                                                  textFromUTF8(failure->message)),
                    error);
  }
  if (!resultingItemURL) return true;
  *resultingItemURL = nullptr;
  const std::string name = file.substr(file.rfind('/') + 1);
  for (const std::string& trash : possibleTrashes(file, item.st_dev))
    if (!*resultingItemURL) *resultingItemURL = findInTrash(trash, name, item);
  return true;
}

}  // namespace kelvane
