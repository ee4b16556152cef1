#include "Platform/Foundation/FolderChain.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace kelvane {
namespace {

constexpr std::size_t mostOpen = 32;

std::error_code lastError() { return {errno, std::generic_category()}; }

}  // namespace

int openFolder(int parent, const char* name, bool mayBeLink) {
  int descriptor;
  do {
    descriptor = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOCTTY | (mayBeLink ? 0 : O_NOFOLLOW));
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

FolderChain::~FolderChain() {
  for (std::size_t i = myFirstIsBorrowed ? 1 : 0; i < myFolders.size(); ++i)
    if (myFolders[i].descriptor >= 0) close(myFolders[i].descriptor);
}

std::error_code FolderChain::begin(const std::string& path) {
  const int descriptor = openFolder(AT_FDCWD, path.c_str(), true);
  if (descriptor < 0) return lastError();
  myFolders.push_back({descriptor, 0, 0});
  return {};
}

void FolderChain::begin(int descriptor) {
  myFolders.push_back({descriptor, 0, 0});
  myFirstIsBorrowed = true;
}

std::error_code FolderChain::enter(const char* name) {
  const int descriptor = openFolder(this->descriptor(), name, false);
  if (descriptor < 0) return lastError();
  struct stat status = {};
  if (fstat(descriptor, &status) < 0) {
    const std::error_code error = lastError();
    close(descriptor);
    return error;
  }
  myFolders.push_back({descriptor, status.st_dev, status.st_ino});
  // The first stays open: it may be one that can be entered but not read, and so not be opened a second time.
  if (depth() > mostOpen) close(std::exchange(myFolders[depth() - mostOpen].descriptor, -1));
  return {};
}

std::error_code FolderChain::leave() {
  const int child = myFolders.back().descriptor;
  myFolders.pop_back();
  Folder& folder = myFolders.back();
  std::error_code error;
  if (folder.descriptor < 0) {
    folder.descriptor = openFolder(child, "..", false);
    struct stat status = {};
    if (folder.descriptor < 0 || fstat(folder.descriptor, &status) < 0)
      error = lastError();
    else if (status.st_dev != folder.device || status.st_ino != folder.inode)
      error = {ESTALE, std::generic_category()};
  }
  close(child);
  return error;
}

}  // namespace kelvane
