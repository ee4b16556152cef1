#pragma once

#include <string>
#include <system_error>

#include "Platform/Foundation/Export.h"

// Removing that stays where it was sent: trees are walked by descriptors (FolderChain.h), so nothing outside of them is
// touched, whoever swaps folders for links meanwhile. Any thread.
namespace kelvane {

// What a removal came to. `path` is what could not be removed, as far as it is known: the path that was given, and what
// follows it within the tree.
struct RemovalResult {
  std::error_code error;
  std::string path;
};

// Removes the file, the link (not what it leads to) or the folder with all that is in it at `path`. Ends at the first
// thing that cannot be removed; what vanishes by itself meanwhile is as good as removed. Where nothing is:
// std::errc::no_such_file_or_directory. A path that ends in ".", ".." or is the root: std::errc::invalid_argument.
KELVANE_EXPORT RemovalResult removeTree(const std::string& path);

// The same for what is called `name` in an open folder.
KELVANE_EXPORT RemovalResult removeTree(int folder, const char* name);

}  // namespace kelvane
