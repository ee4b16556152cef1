#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <iostream>

#include "Platform/Foundation/AtomicFile.h"
#include "Support/FaultySystemCalls.h"
#include "Support/Process.h"
#include "Support/Testing.h"

namespace {

using namespace std::string_literals;

constexpr std::size_t noLimit = FaultySystemCalls::never;
const std::string oldBytes(3000, 'o');
const std::string newBytes(70000, 'n');

void put(const std::string& path, const std::string& bytes, mode_t mode = 0640) {
  FaultySystemCalls quick;
  ASSERT_FALSE(writeFileAtomically(path, bytes, quick));
  ASSERT_EQ(::chmod(path.c_str(), mode), 0);
}

struct Scene {
  const char* name;
  bool existed;
  std::function<void(const TemporaryFolder&)> set;
};

const Scene scenes[] = {
    {"no file", false, [](const TemporaryFolder&) {}},
    {"a file", true, [](const TemporaryFolder& folder) { put(folder.path("file"), oldBytes); }},
    {"two links to a file", true,
     [](const TemporaryFolder& folder) {
       put(folder.path("target"), oldBytes);
       fs::create_symlink("target", folder.path("link"));
       fs::create_symlink("link", folder.path("file"));
     }},
    {"a link to nothing", false, [](const TemporaryFolder& folder) { fs::create_symlink("no", folder.path("file")); }},
};

std::vector<std::string> withoutTemporary(std::vector<std::string> names) {
  std::erase_if(names, [](const std::string& name) { return name.starts_with(".kelvane-save-") && name.size() == 30; });
  return names;
}

// One save with one fault. False when there were not as many calls.
bool saveWithFault(const TemporaryFolder& folder, const Scene& scene, std::size_t at, Fault fault, int errorNumber) {
  scene.set(folder);
  const std::vector<std::string> before = folder.names();
  const bool isLink = fs::is_symlink(folder.path("file"));
  FaultySystemCalls calls(at, fault, errorNumber);
  const std::error_code error = writeFileAtomically(folder.path("file"), newBytes, calls);
  const std::string& faulty = calls.faultyCall();

  const FileContents after = readFile(folder.path("file"), noLimit);
  const bool isNew = !after.error && after.bytes == newBytes;
  const bool isOld = scene.existed ? after.bytes == oldBytes : after.error == std::errc::no_such_file_or_directory;
  EXPECT_TRUE(isNew || isOld) << after.error << ", " << after.bytes.size() << " bytes";
  const bool flushOfFolder = isNew && faulty == "fsync" && fault != Fault::Interrupted;
  EXPECT_EQ(!error, flushOfFolder ? errorNumber == EINVAL : isNew) << error;
  EXPECT_TRUE(fault != Fault::Interrupted || !error == (faulty != "rename")) << error;
  if (isNew && faulty == "close" && fault == Fault::Error) {
    EXPECT_EQ(calls.calls()[at - 1], "fsync");
    EXPECT_EQ(calls.calls()[at - 2], "rename") << "closing the file failed, and nobody was told";
  }
  EXPECT_TRUE(fault != Fault::Short || !error);
  EXPECT_TRUE(fault != Fault::Nothing || !error == faulty.empty());

  // A system that says wrongly that there is nothing gets the link replaced; no other does.
  const bool staysLink = fs::is_symlink(folder.path("file"));
  EXPECT_TRUE(staysLink == isLink || (faulty == "lstat" && errorNumber == ENOENT));
  std::vector<std::string> expected = before;
  if (isNew && !scene.existed && isLink == staysLink) expected.push_back(isLink ? "no" : "file");
  EXPECT_EQ(fault == Fault::Crash ? withoutTemporary(folder.names()) : folder.names(), expected);
  EXPECT_EQ(calls.openDescriptors(), 0);
  return calls.calls().size() > at;
}

TEST(AtomicFile, SavesWhicheverCallFails) {
  const int errors[] = {EIO,    ENOSPC, EDQUOT, EACCES,       EPERM, EROFS,  EMFILE,
                        ENOENT, EEXIST, EINVAL, ENAMETOOLONG, ELOOP, EISDIR, ENOMEM};
  const Fault faults[] = {Fault::Error, Fault::Interrupted, Fault::Nothing, Fault::Short, Fault::Crash};
  TemporaryFolder folder;
  std::size_t runs = 0;
  for (const Scene& scene : scenes)
    for (const Fault fault : faults)
      for (const int number : errors) {
        bool more = true;
        for (std::size_t at = 0; more && !testing::Test::HasFailure(); ++at, ++runs) {
          SCOPED_TRACE(scene.name + ", fault "s + std::to_string(static_cast<int>(fault)) + ", call " +
                       std::to_string(at) + ", " + strerror(number));
          folder.clear();
          more = saveWithFault(folder, scene, at, fault, number);
        }
      }
  EXPECT_GT(runs, 3000);
  std::cout << runs << " saves, with a fault at each system call in turn\n";
}

TEST(AtomicFile, ReadsWhicheverCallFails) {
  const TemporaryFolder folder;
  put(folder.path("file"), newBytes);
  for (const Fault fault : {Fault::Error, Fault::Interrupted, Fault::Short, Fault::Crash}) {
    bool more = true;
    for (std::size_t at = 0; more; ++at) {
      FaultySystemCalls calls(at, fault);
      const FileContents contents = readFile(folder.path("file"), newBytes.size(), calls);
      const std::string& faulty = calls.faultyCall();
      const bool expected = fault == Fault::Interrupted || faulty.empty() || faulty == "close";
      EXPECT_EQ(!contents.error, expected) << faulty << contents.error;
      EXPECT_TRUE(contents.bytes == (expected ? newBytes : "")) << faulty;
      EXPECT_EQ(calls.openDescriptors(), 0);
      more = calls.calls().size() > at;
    }
  }
}

TEST(AtomicFile, ReadsAndReplacesNothingButFiles) {
  const TemporaryFolder folder;
  put(folder.path("file"), "12345");
  fs::create_symlink("file", folder.path("link"));
  fs::create_symlink("loop", folder.path("loop"));
  ASSERT_EQ(::mkfifo(folder.path("fifo").c_str(), 0600), 0);
  const std::pair<std::string, std::errc> refused[] = {
      {folder.path("fifo"), std::errc::invalid_argument},
      {"/dev/zero", std::errc::invalid_argument},
      {folder.path(), std::errc::is_a_directory},
      {folder.path("none/file"), std::errc::no_such_file_or_directory},
      {folder.path("loop"), std::errc::too_many_symbolic_link_levels},
      {folder.path("file\0x"s), std::errc::invalid_argument},
      {"", std::errc::no_such_file_or_directory},
  };
  for (const auto& [path, error] : refused) {
    EXPECT_EQ(readFile(path, noLimit).error, error) << path;
    EXPECT_EQ(writeFileAtomically(path, "x"), error) << path;
  }
  EXPECT_EQ(readFile(folder.path("link"), 5).bytes, "12345");
  // The second one says that it has 0 bytes.
  for (const std::string& path : {folder.path("file"), "/proc/self/status"s}) {
    EXPECT_EQ(readFile(path, 4).error, std::errc::file_too_large);
    EXPECT_EQ(readFile(path, 4).bytes, "");
  }
}

TEST(AtomicFile, KeepsPermissionsOwnerAndGroup) {
  const TemporaryFolder folder;
  const std::string path = folder.path("file");
  const mode_t mask = ::umask(0777);
  EXPECT_FALSE(writeFileAtomically(path, "new"));
  EXPECT_EQ(modeOf(path), 0600);
  ::umask(027);
  EXPECT_FALSE(writeFileAtomically(path, "newer", NewFileAccess::Customary));
  EXPECT_EQ(modeOf(path), 0600);
  EXPECT_FALSE(writeFileAtomically(folder.path("document"), "new", NewFileAccess::Customary));
  EXPECT_EQ(modeOf(folder.path("document")), 0640);
  ::umask(mask);
  for (const mode_t mode : {0400, 0664}) {
    ASSERT_EQ(::chmod(path.c_str(), mode), 0);
    EXPECT_FALSE(writeFileAtomically(path, "x"));
    EXPECT_EQ(modeOf(path), mode);
  }
  const bool mayGiveAway = ::chown(path.c_str(), 1234, 1235) == 0;
  struct stat status = {};
  ASSERT_EQ(::lstat(path.c_str(), &status), 0);
  if (mayGiveAway) {
    EXPECT_EQ(std::pair(status.st_uid, status.st_gid), std::pair(uid_t{1234}, gid_t{1235}));
  }

  // Nobody may give files away here, and the file is another group's.
  struct OtherGroup : SystemCalls {
    int fchown(int, uid_t, gid_t) noexcept override { return errno = EPERM, -1; }
    int lstat(const char* name, struct stat* result) noexcept override {
      const int found = SystemCalls::lstat(name, result);
      result->st_gid = getegid() + 1;
      return found;
    }
  } otherGroup;
  EXPECT_FALSE(writeFileAtomically(path, "x", otherGroup));
  EXPECT_EQ(modeOf(path), 0644);
}

TEST(AtomicFile, FollowsLinks) {
  const TemporaryFolder folder;
  fs::create_directories(folder.path("a/b"));
  fs::create_symlink("../target", folder.path("a/relative"));
  fs::create_symlink(folder.path("a/relative"), folder.path("absolute"));
  fs::create_symlink("a/b", folder.path("folder"));
  fs::create_symlink("folder/../relative", folder.path("chain"));
  put(folder.path("target"), "old");
  for (const char* link : {"a/relative", "absolute", "chain"}) {
    EXPECT_FALSE(writeFileAtomically(folder.path(link), link));
    EXPECT_TRUE(fs::is_symlink(folder.path(link))) << link;
    EXPECT_EQ(readFile(folder.path("target"), 99).bytes, link);
  }
  for (int i = 1; i <= 41; ++i)
    fs::create_symlink(i == 1 ? "target" : std::to_string(i - 1), folder.path(std::to_string(i)));
  EXPECT_FALSE(writeFileAtomically(folder.path("40"), "forty"));
  EXPECT_EQ(writeFileAtomically(folder.path("41"), "x"), std::errc::too_many_symbolic_link_levels);
  EXPECT_EQ(readFile(folder.path("target"), 99).bytes, "forty");

  ASSERT_EQ(::chdir(folder.path().c_str()), 0);
  EXPECT_FALSE(writeFileAtomically("absolute", "here"));
  EXPECT_FALSE(writeFileAtomically("plain", "here"));
  EXPECT_EQ(readFile("target", 99).bytes + readFile("plain", 99).bytes, "herehere");
}

TEST(AtomicFile, SurvivesKills) {
  const TemporaryFolder folder;
  const std::string path = folder.path("file");
  const auto contents = [](char letter) { return std::string(50000 + static_cast<std::size_t>(letter), letter); };
  put(path, contents('a'));
  std::mt19937 random(20260131);
  std::set<char> seen;
  for (int i = 0; i < 150; ++i) {
    const pid_t child = childProcess([&] {
      FaultySystemCalls quick;
      for (int letter = i;; ++letter)
        if (writeFileAtomically(path, contents(static_cast<char>('a' + letter % 26)), quick)) _exit(1);
    });
    ::usleep(static_cast<useconds_t>(random() % 4000));
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "a save failed";
    const FileContents after = readFile(path, noLimit);
    ASSERT_FALSE(after.error || after.bytes.empty()) << after.error;
    ASSERT_TRUE(after.bytes == contents(after.bytes[0]));
    seen.insert(after.bytes[0]);
  }
  EXPECT_GT(seen.size(), 3);
  EXPECT_THAT(withoutTemporary(folder.names()), ElementsAre("file"));
}

TEST(AtomicFile, LockKeepsOthersOut) {
  const TemporaryFolder folder;
  const std::string path = folder.path("counter");
  put(path, "0");
  const bool isWell = runInProcesses(4, [&](int) {
    for (int round = 0; round < 250; ++round) {
      const FileLock lock(path + ".lock");
      FaultySystemCalls quick;
      const int count = std::stoi(readFile(path, 99).bytes);
      if (lock.error() || writeFileAtomically(path, std::to_string(count + 1), quick)) _exit(1);
      // Whoever removes the lock file, last thing, must not let two of the others in.
      if (round % 10 == 9) ::unlink((path + ".lock").c_str());
    }
  });
  EXPECT_TRUE(isWell);
  EXPECT_EQ(readFile(path, 99).bytes, "1000");
}

TEST(AtomicFile, LockSurvivesInterruptionAndTellsFailure) {
  const TemporaryFolder folder;
  const std::string path = folder.path("lock");
  for (const Fault fault : {Fault::Error, Fault::Interrupted, Fault::Crash}) {
    for (std::size_t at = 0; at < 4; ++at) {
      FaultySystemCalls calls(at, fault, ESTALE);
      {
        const FileLock lock(path, calls);
        EXPECT_EQ(!lock.error(), fault == Fault::Interrupted) << calls.faultyCall();
      }
      EXPECT_EQ(calls.openDescriptors(), 0);
    }
  }
  EXPECT_EQ(modeOf(path), 0600);
  EXPECT_EQ(FileLock(folder.path()).error(), std::errc::is_a_directory);
  EXPECT_EQ(FileLock(folder.path("none/lock")).error(), std::errc::no_such_file_or_directory);
}

TEST(AtomicFile, SetsAsideWithoutReplacing) {
  const TemporaryFolder folder;
  const std::string path = folder.path("file");
  // The last is a file system that cannot rename without replacing.
  for (const int round : {1, 2, 3}) {
    put(path, std::to_string(round));
    FaultySystemCalls calls(round == 3 ? 1 : FaultySystemCalls::never, Fault::Error, EINVAL);
    if (round == 3) fs::remove(path + ".damaged-1");
    std::string aside;
    EXPECT_FALSE(setAside(path, &aside, calls));
    EXPECT_EQ(aside, path + ".damaged-" + (round == 2 ? "2" : "1"));
    EXPECT_EQ(readFile(aside, 99).bytes, std::to_string(round));
    EXPECT_FALSE(fs::exists(path));
  }
  EXPECT_EQ(setAside(path, nullptr), std::errc::no_such_file_or_directory);

  put(path, "3");
  fs::create_symlink("file", folder.path("link"));
  EXPECT_FALSE(setAside(folder.path("link"), nullptr));
  EXPECT_TRUE(fs::is_symlink(folder.path("link")));
  EXPECT_EQ(readFile(path + ".damaged-3", 99).bytes, "3");
}

TEST(AtomicFile, WhatCannotBeSetAsideStays) {
  // The file is linked to its new name, and then cannot be unlinked from its old one.
  struct OnlyLinks : FaultySystemCalls {
    int renameWithoutReplacing(const char*, const char*) noexcept override { return errno = EINVAL, -1; }
    int unlink(const char* path) noexcept override {
      return std::string_view(path).ends_with("file") ? (errno = EACCES, -1) : SystemCalls::unlink(path);
    }
  } calls;
  const TemporaryFolder folder;
  put(folder.path("file"), "1");
  EXPECT_EQ(setAside(folder.path("file"), nullptr, calls), std::errc::permission_denied);
  EXPECT_THAT(folder.names(), ElementsAre("file"));
}

}  // namespace
