#include "Platform/Foundation/FolderEntries.h"

#include <errno.h>
#include <unistd.h>

#include <string_view>

namespace kelvane {

std::error_code FolderEntries::read(int descriptor) {
  constexpr std::size_t chunk = 65536;
  mySize = 0;
  myPlace = 0;
  if (lseek(descriptor, 0, SEEK_SET) < 0) return {errno, std::generic_category()};
  for (;;) {
    if (myRecords.size() < mySize + chunk) myRecords.resize(mySize == 0 ? chunk : mySize * 2 + chunk);
    const ssize_t size = getdents64(descriptor, myRecords.data() + mySize, myRecords.size() - mySize);
    if (size == 0) return {};
    // A folder that has been removed meanwhile is as good as empty.
    if (size < 0 && errno == ENOENT) return {};
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) return {errno, std::generic_category()};
    mySize += static_cast<std::size_t>(size);
  }
}

bool FolderEntries::next(Entry& entry) {
  while (myPlace < mySize) {
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
