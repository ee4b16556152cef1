#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "Platform/Foundation/FileRemoval.h"
#include "Support/Testing.h"

namespace {

// In memory where that can be had: a disk would make the many rounds slow.
struct FileRemoval : testing::Test {
  static const char* place() { return access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp"; }

  int myPlaceIsSet = setenv("TMPDIR", place(), 1);
  TemporaryFolder folder;
};

TEST_F(FileRemoval, RemovesFilesLinksAndTrees) {
  fs::create_directories(folder.path("outside/deep"));
  fs::create_directories(folder.path("tree/a/b"));
  fs::create_directory_symlink("../outside", folder.path("tree/link"));
  fs::create_directory_symlink("..", folder.path("tree/a/loop"));
  fs::create_symlink("nowhere", folder.path("tree/a/b/dangling"));
  folder.write("tree/a/gr\xFC", "x");
  fs::create_directory_symlink("tree", folder.path("to-tree"));
  EXPECT_FALSE(removeTree(folder.path("to-tree//")).error);
  EXPECT_TRUE(fs::exists(folder.path("tree/a/b")));
  EXPECT_FALSE(removeTree(folder.path("tree/")).error);
  EXPECT_EQ(folder.names(), std::vector<std::string>{"outside"});
  EXPECT_TRUE(fs::exists(folder.path("outside/deep")));
}

TEST_F(FileRemoval, RefusesWhatNamesNothingOrTooMuch) {
  fs::create_directory(folder.path("a"));
  const std::pair<std::string, std::errc> rows[] = {
      {"", std::errc::no_such_file_or_directory},
      {folder.path("missing"), std::errc::no_such_file_or_directory},
      {"/", std::errc::invalid_argument},
      {folder.path("a/.."), std::errc::invalid_argument},
      {folder.path("a/./"), std::errc::invalid_argument},
      {folder.path("a") + std::string("\0x", 2), std::errc::invalid_argument},
  };
  for (const auto& [path, error] : rows) EXPECT_EQ(removeTree(path).error, error) << path;
  EXPECT_TRUE(fs::exists(folder.path("a")));
  if (geteuid() != 0) {
    fs::create_directory(folder.path("a/b"));
    fs::permissions(folder.path("a"), fs::perms::owner_read | fs::perms::owner_exec);
    const RemovalResult result = removeTree(folder.path("a"));
    EXPECT_EQ(result.error, std::errc::permission_denied);
    EXPECT_EQ(result.path, folder.path("a/b"));
    fs::permissions(folder.path("a"), fs::perms::owner_all);
  }
}

long mostMemory() {
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

// Deeper than there are descriptors, and than any path could be; and with memory for the names alone.
TEST_F(FileRemoval, IsNotBoundByDepth) {
  const rlimit few = {64, 64};
  setrlimit(RLIMIT_NOFILE, &few);
  int place = open(folder.path().c_str(), O_RDONLY | O_DIRECTORY);
  for (int depth = 0; depth < 3000; ++depth) {
    ASSERT_EQ(mkdirat(place, "folder", 0700), 0);
    ASSERT_EQ(mkdirat(place, "sister", 0700), 0);
    const int next = openat(place, "folder", O_RDONLY | O_DIRECTORY);
    close(place);
    place = next;
  }
  close(place);
  const long before = mostMemory();
  EXPECT_FALSE(removeTree(folder.path("folder")).error);
  EXPECT_LT(mostMemory() - before, 32768);
  EXPECT_FALSE(fs::exists(folder.path("folder")));
}

// While one thread swaps a folder for a link to one outside, and back, another removes the tree, time and again.
TEST_F(FileRemoval, NeverLeavesTheTree) {
  folder.write("outside/inner/file", "precious");
  folder.write("outside/file", "precious");
  std::atomic<int> swaps = 0;
  std::jthread hostile([&](const std::stop_token& isOver) {
    const std::string link = folder.path("link");
    const std::string victim = folder.path("tree/victim");
    while (!isOver.stop_requested())
      if (renameat2(AT_FDCWD, link.c_str(), AT_FDCWD, victim.c_str(), RENAME_EXCHANGE) == 0) ++swaps;
  });
  for (int i = 0; i < 10000; ++i) {
    removeTree(folder.path("link"));
    ASSERT_EQ(symlink(folder.path("outside").c_str(), folder.path("link").c_str()), 0);
    for (const char* name : {"tree", "tree/victim", "tree/victim/inner"}) mkdir(folder.path(name).c_str(), 0700);
    // So that time passes between the listing and what it leads to.
    for (char name = 'a'; name < 'k'; ++name) mkdir(folder.path(std::string("tree/") + name).c_str(), 0700);
    const RemovalResult result = removeTree(folder.path("tree"));
    ASSERT_FALSE(result.error) << result.error.message() << ": " << result.path;
    ASSERT_TRUE(fs::exists(folder.path("outside/file")) && fs::exists(folder.path("outside/inner/file"))) << i;
  }
  EXPECT_GT(swaps, 100);
}

}  // namespace
