#include "Platform/Foundation/FileRemoval.h"

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <utility>
#include <vector>

#include "Platform/Foundation/FolderChain.h"
#include "Platform/Foundation/FolderEntries.h"

namespace kelvane {
namespace {

// How often one name is tried that turns from a folder into something else and back, or a folder emptied that is filled
// again meanwhile.
constexpr int mostTries = 100;

std::error_code errorOf(int number) { return {number, std::generic_category()}; }

class TreeRemoval {
 public:
  explicit TreeRemoval(int folder) { myWay.begin(folder); }

  RemovalResult remove(const char* name) {
    std::error_code error = removeOrEnter(name, DT_UNKNOWN);
    while (!error && !myLevels.empty()) {
      FolderEntries::Entry entry;
      error = myLevels.back().entries.next(entry) ? removeOrEnter(entry.name, entry.kind) : removeEmptied();
      // Gone by itself, which only matters where it was asked for.
      if (error == std::errc::no_such_file_or_directory) error.clear();
    }
    if (error) return {error, pathOfFailure()};
    return {};
  }

 private:
  struct Level {
    std::string name;
    FolderEntries entries;
    int tries = 1;
  };

  // Whatever is called `name` in the innermost folder: removes it, or goes into it when it is a folder.
  std::error_code removeOrEnter(const char* name, unsigned char kind) {
    myName = name;
    const int folder = myWay.descriptor();
    for (int tries = 0; tries < mostTries; ++tries) {
      int reason = 0;
      if (kind != DT_DIR) {
        if (unlinkat(folder, name, 0) == 0) return {};
        reason = errno;
        // EPERM is what POSIX wants to hear of a folder, and some file systems say.
        if (reason != EISDIR && reason != EPERM) return errorOf(reason);
      }
      const std::error_code error = myWay.enter(name);
      if (!error) return readEntered(name);
      // Not a folder, or one no longer.
      const bool isOther = error == std::errc::not_a_directory || error == std::errc::too_many_symbolic_link_levels;
      // A folder that cannot be read, but is empty, can be removed.
      if (error == std::errc::permission_denied && unlinkat(folder, name, AT_REMOVEDIR) == 0) return {};
      if (!isOther) return error;
      if (reason == EPERM) return errorOf(EPERM);
      kind = DT_UNKNOWN;
    }
    return errorOf(ELOOP);
  }

  std::error_code readEntered(const char* name) {
    Level level;
    level.name = name;
    const std::error_code error = level.entries.read(myWay.descriptor());
    myLevels.push_back(std::move(level));
    if (error) myName.clear();
    return error;
  }

  // Nothing is left to do in the innermost folder.
  std::error_code removeEmptied() {
    Level level = std::move(myLevels.back());
    myLevels.pop_back();
    myName = level.name;
    if (const auto error = myWay.leave()) {
      // A way that cannot be gone on ends here, even where the folder is gone.
      return error == std::errc::no_such_file_or_directory ? errorOf(ESTALE) : error;
    }
    if (unlinkat(myWay.descriptor(), level.name.c_str(), AT_REMOVEDIR) == 0) return {};
    if (errno == ENOTDIR) return removeOrEnter(level.name.c_str(), DT_UNKNOWN);
    if ((errno != ENOTEMPTY && errno != EEXIST) || level.tries == mostTries) return errorOf(errno);
    // Somebody has put something in.
    const int tries = level.tries + 1;
    const std::size_t depth = myLevels.size();
    const auto error = removeOrEnter(level.name.c_str(), DT_DIR);
    if (myLevels.size() > depth) myLevels.back().tries = tries;
    return error;
  }

  std::string pathOfFailure() const {
    std::string path;
    for (const Level& level : myLevels) path += level.name + '/';
    if (myName.empty() && !path.empty()) path.pop_back();
    return path + myName;
  }

  FolderChain myWay;
  std::vector<Level> myLevels;
  // What was tried last in the innermost folder; empty for that folder itself.
  std::string myName;
};

}  // namespace

RemovalResult removeTree(int folder, const char* name) { return TreeRemoval(folder).remove(name); }

RemovalResult removeTree(const std::string& path) {
  const std::size_t end = path.find_last_not_of('/') + 1;
  const std::size_t start = end == 0 ? 0 : path.rfind('/', end - 1) + 1;
  const std::string name = path.substr(start, end - start);
  if (path.empty()) return {errorOf(ENOENT), path};
  if (name.empty() || name == "." || name == ".." || path.find('\0') != std::string::npos)
    return {errorOf(EINVAL), path};
  const std::string parent = path.substr(0, start);
  // A folder that can be entered and not read is enough for removing what is in it.
  const int folder = open(parent.empty() ? "." : parent.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return {errorOf(errno), path};
  RemovalResult result = removeTree(folder, name.c_str());
  close(folder);
  if (result.error) result.path.insert(0, parent);
  return result;
}

}  // namespace kelvane
