// Folders of many files: listing with a filter, and removing what matches from a tree.

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "Extensions/NSFileManager-QNExtensions.h"
#include "Extensions/NSFileManager-ThreadSafeManager.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/Row.h"
#include "Support/TemporaryFolder.h"

namespace kelvane::bench {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t fileCount = 100000;

void makeFiles(const fs::path& folder, std::size_t count, const std::string& ending) {
  for (std::size_t i = 0; i < count; ++i) std::ofstream(folder / ("document-" + std::to_string(i) + ending));
}

// In memory where that can be had: what is measured is our work and the system's, not the disk's.
std::shared_ptr<TemporaryFolder> newFolder() {
  const char* variable = std::getenv("TMPDIR");
  const std::string before = variable ? variable : "/tmp";
  if (fs::is_directory("/dev/shm")) setenv("TMPDIR", "/dev/shm", 1);
  auto folder = std::make_shared<TemporaryFolder>();
  setenv("TMPDIR", before.c_str(), 1);
  return folder;
}

const std::string& flatFolder() {
  static const auto folder = [] {
    auto made = newFolder();
    makeFiles(made->path(), fileCount / 2, ".txt");
    makeFiles(made->path(), fileCount / 2, ".tmp");
    return made;
  }();
  return folder->path();
}

std::vector<Ref<NSURL>> list() {
  const auto url = NSURL::fileURLWithPath(textFromFileSystem(flatFolder()), true);
  return contentsOfDirectoryAtURL(NSFileManagerExtensions::threadSafeManager(), url, nullptr,
                                  [](const NSURL& item) { return item.pathExtension() == u"txt"; });
}

std::vector<fs::path> standardList() {
  std::vector<fs::path> paths;
  for (const fs::directory_entry& item : fs::directory_iterator(flatFolder()))
    if (item.path().extension() == ".txt") paths.push_back(item.path());
  return paths;
}

// A tree of a hundred folders that is full again each time before the work.
class Removal {
 public:
  void prepare() const {
    for (int i = 0; i < 100; ++i) {
      const fs::path folder = myTree->path("folder-" + std::to_string(i));
      fs::create_directories(folder);
      makeFiles(folder, fileCount / 100, ".tmp");
      makeFiles(folder, 100, ".txt");
    }
  }

 protected:
  const std::string& tree() const { return myTree->path(); }

 private:
  std::shared_ptr<TemporaryFolder> myTree = newFolder();
};

struct OurRemoval : Removal {
  void operator()() const {
    removeAllItemsFromPath(NSFileManagerExtensions::threadSafeManager(), textFromFileSystem(tree()), true,
                           [](TextView path) { return path.ends_with(u".tmp"); });
  }
};

// A folder that is changed while it is walked may be walked in any way, so what matches is collected first.
struct StandardRemoval : Removal {
  void operator()() const {
    std::vector<fs::path> matching;
    for (const fs::directory_entry& item : fs::recursive_directory_iterator(tree()))
      if (item.path().extension() == ".tmp") matching.push_back(item.path());
    for (const fs::path& path : matching) fs::remove_all(path);
  }
};

const Subject files([] {
  Row("contentsOfDirectoryAtURL")
      .ours(list, [](const auto& urls) { return urls.size(); })
      .peer("std", standardList, [](const auto& paths) { return paths.size(); })
      .reach(1.4)
      .per("file", fileCount);
  Row("removeAllItemsFromPath").ours(OurRemoval()).peer("std", StandardRemoval()).reach(1).per("file", fileCount);
});

}  // namespace
}  // namespace kelvane::bench
