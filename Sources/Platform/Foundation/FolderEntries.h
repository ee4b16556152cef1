#pragma once

#include <dirent.h>

#include <cstddef>
#include <system_error>
#include <vector>

namespace kelvane {

// What is in an open folder, as the system tells it: names, and kinds where the file system keeps them with the names.
// "." and ".." are left out. Read whole and at once, so that whoever removes entries meanwhile skips none. One thread
// at a time.
class FolderEntries {
 public:
  struct Entry {
    // In the memory of the FolderEntries.
    const char* name = nullptr;
    // DT_DIR, DT_LNK, DT_REG and so on, or DT_UNKNOWN.
    unsigned char kind = DT_UNKNOWN;
    ino_t inode = 0;
  };

  // Reads the folder from its start. With an error, what could be read before it is there.
  std::error_code read(int descriptor);

  // Gives the next entry, in the order of the folder; false at the end.
  bool next(Entry& entry);

  // Gives the memory back and is at the end.
  void clear();

 private:
  // Records of getdents64.
  std::vector<char> myRecords;
  std::size_t myPlace = 0;
};

}  // namespace kelvane
