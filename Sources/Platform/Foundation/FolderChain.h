#pragma once

#include <sys/types.h>

#include <string>
#include <system_error>
#include <vector>

#include "Platform/Foundation/Export.h"

namespace kelvane {

// The way of a walk: an open folder, and those around it up to the one where the walk began. Each step goes from an
// open folder to a name in it and never through a symbolic link, so that nobody who swaps folders for links, or moves
// them, can lead a walk outside.
//
// However deep the way is, no more than some 32 folders are open at once. Those further up are closed; on the way back
// they are opened again through "..", and only taken if they are the very ones that they were. One thread at a time.
class KELVANE_EXPORT FolderChain {
 public:
  FolderChain() = default;
  ~FolderChain();
  FolderChain(const FolderChain&) = delete;
  FolderChain& operator=(const FolderChain&) = delete;

  // Begins at the folder `path`; links in it are followed.
  std::error_code begin(const std::string& path);
  // Begins at an open folder, which stays the caller's.
  void begin(int descriptor);

  // Goes into the folder `name` of the innermost one. An error, such as std::errc::not_a_directory or
  // std::errc::too_many_symbolic_link_levels for a link, changes nothing.
  std::error_code enter(const char* name);
  // Goes back out; not called at the beginning of the way. After an error the way cannot be gone on.
  std::error_code leave();

  // The innermost folder.
  int descriptor() const { return myFolders.back().descriptor; }
  // How many folders have been entered and not left.
  std::size_t depth() const { return myFolders.size() - 1; }

 private:
  struct Folder {
    int descriptor;  // -1 while it is closed
    dev_t device;
    ino_t inode;
  };

  std::vector<Folder> myFolders;
  bool myFirstIsBorrowed = false;
};

// Opens a folder for reading; -1 with errno otherwise. A link is followed only where `mayBeLink`.
int openFolder(int parent, const char* name, bool mayBeLink);

}  // namespace kelvane
