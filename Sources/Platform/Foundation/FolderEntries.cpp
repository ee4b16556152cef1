#include "Platform/Foundation/FolderEntries.h"

#include <errno.h>
#include <unistd.h>

#include <string_view>

namespace kelvane {

std::error_code FolderEntries::read(int descriptor) {
  // By way of a buffer, so that no more is kept than there is: walks keep the entries of all folders that they are in.
  alignas(dirent64) char buffer[32768];
  myRecords.clear();
  myPlace = 0;
  if (lseek(descriptor, 0, SEEK_SET) < 0) return {errno, std::generic_category()};
  for (;;) {
    const ssize_t size = getdents64(descriptor, buffer, sizeof buffer);
    if (size == 0) return {};
    // A folder that has been removed meanwhile is as good as empty.
    if (size < 0 && errno == ENOENT) return {};
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) return {errno, std::generic_category()};
    myRecords.insert(myRecords.end(), buffer, buffer + size);
  }
}

bool FolderEntries::next(Entry& entry) {
  while (myPlace < myRecords.size()) {
    const auto* record = reinterpret_cast<const dirent64*>(myRecords.data() + myPlace);
    myPlace += record->d_reclen;
    const std::string_view name = record->d_name;
    if (name == "." || name == "..") continue;
    entry = {record->d_name, record->d_type, record->d_ino};
    return true;
  }
  return false;
}

void FolderEntries::clear() { *this = FolderEntries(); }

}  // namespace kelvane
