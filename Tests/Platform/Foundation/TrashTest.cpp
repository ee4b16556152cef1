#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Platform/Foundation/Trash.h"
#include "Support/Process.h"
#include "Support/Testing.h"

namespace {

struct TrashTest : testing::Test {
  TrashTest() {
    setenv("HOME", folder.path().c_str(), 1);
    setenv("XDG_DATA_HOME", folder.path("data").c_str(), 1);
  }
  ~TrashTest() override {
    if (isMounted) umount2(folder.path("mount").c_str(), MNT_DETACH);
  }

  void write(const std::string& name) const { folder.write(name, name); }
  bool trash(const std::string& name) {
    place = nullptr;
    error = nullptr;
    return trashItemAtPath(folder.text(name), &place, &error);
  }
  // Where the item went, below the folder; empty when that was not told.
  std::string placeInFolder() const {
    const std::string path = place ? fileSystemRepresentation(place->path().value_or(Text())) : std::string();
    return path.empty() ? path : fs::path(path).lexically_relative(folder.path()).native();
  }
  // A file system of its own at "mount", seen by this process alone; false where that is not allowed.
  bool mountFileSystem() {
    fs::create_directory(folder.path("mount"));
    if (unshare(CLONE_NEWNS) < 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) < 0) return false;
    folder.write("image", "");
    fs::resize_file(folder.path("image"), 8 << 20);
    isMounted = runProcess({"/sbin/mkfs.ext4", "-q", folder.path("image")}).status == 0 &&
                runProcess({"/bin/mount", "-o", "loop", folder.path("image"), folder.path("mount")}).status == 0;
    return isMounted;
  }

  TemporaryFolder folder;
  Ref<NSURL> place;
  Ref<NSError> error;
  bool isMounted = false;
};

// The layout of the freedesktop.org trash standard, and where the item is now.
TEST_F(TrashTest, KeepsTheLayoutThatFileManagersRead) {
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {"x/a b.txt", "a b.txt", "x/a%20b.txt"}, {"a b.txt", "a b.2.txt", "a%20b.txt"}, {"gr\xFC", "gr\xFC", "gr%FC"}};
  for (const auto& [name, inTrash, escaped] : rows) {
    write(name);
    ASSERT_TRUE(trash(name)) << utf8(error->localizedDescription());
    EXPECT_FALSE(fs::exists(folder.path(name)));
    EXPECT_EQ(placeInFolder(), std::string("data/Trash/files/") + inTrash);
    EXPECT_EQ(folder.bytes(placeInFolder()), name);
    EXPECT_THAT(folder.bytes(std::string("data/Trash/info/") + inTrash + ".trashinfo"),
                MatchesRegex("\\[Trash Info\\]\nPath=" + folder.path() + "/" + escaped +
                             "\nDeletionDate=[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\n"));
  }
}

TEST_F(TrashTest, TakesFoldersAndLinksThemselves) {
  write("full/inner");
  write("target");
  fs::create_symlink("target", folder.path("link"));
  fs::create_symlink("nowhere", folder.path("dangling"));
  ASSERT_TRUE(trash("full/"));
  EXPECT_EQ(placeInFolder(), "data/Trash/files/full");
  EXPECT_EQ(folder.bytes("data/Trash/files/full/inner"), "full/inner");
  for (const char* link : {"link", "dangling"}) {
    ASSERT_TRUE(trash(link));
    EXPECT_TRUE(fs::is_symlink(folder.path(std::string("data/Trash/files/") + link)));
  }
  EXPECT_EQ(folder.bytes("target"), "target");
}

TEST_F(TrashTest, RefusesWhatItCannotMove) {
  EXPECT_FALSE(trash("missing"));
  EXPECT_EQ(error->code(), ENOENT);
  EXPECT_FALSE(trashItemAtPath(TextView(u"a\0b", 3), nullptr, nullptr));
  fs::create_directories(folder.path("x/y"));
  fs::current_path(folder.path("x/y"));
  for (const TextView path : {u"/", u"//", u".", u"./", u"..", u"../."}) {
    EXPECT_FALSE(trashItemAtPath(path, nullptr, &error));
    EXPECT_EQ(error->code(), EINVAL);
  }
  fs::current_path("/");
  EXPECT_TRUE(fs::exists(folder.path("x/y")));
  write("a");
  write("data");
  EXPECT_FALSE(trash("a"));
  EXPECT_NE(error, nullptr);
  EXPECT_EQ(place, nullptr);
  setenv("XDG_DATA_HOME", "relative", 1);
  fs::current_path(folder.path());
  EXPECT_FALSE(trash("a"));
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"a", "data", "x"}));
  fs::current_path("/");
}

TEST_F(TrashTest, UsesTheTrashOfTheMount) {
  if (!mountFileSystem()) GTEST_SKIP() << "mounts are not allowed here";
  const std::string user = std::to_string(getuid());
  const std::string own = "mount/.Trash-" + user;
  write("mount/x/one");
  ASSERT_TRUE(trash("mount/x/one")) << utf8(error->localizedDescription());
  EXPECT_EQ(placeInFolder(), own + "/files/one");
  EXPECT_THAT(folder.bytes(own + "/info/one.trashinfo"), HasSubstr("\nPath=x/one\n"));

  // A folder for all that is not sticky, or a link, could be anybody's.
  fs::create_directory(folder.path("mount/.Trash"));
  write("mount/two");
  ASSERT_TRUE(trash("mount/two"));
  EXPECT_EQ(placeInFolder(), own + "/files/two");
  ASSERT_EQ(chmod(folder.path("mount/.Trash").c_str(), 01777), 0);
  write("mount/three");
  ASSERT_TRUE(trash("mount/three"));
  EXPECT_EQ(placeInFolder(), "mount/.Trash/" + user + "/files/three");
  fs::remove_all(folder.path("mount/.Trash"));
  fs::create_directory_symlink(folder.path("elsewhere"), folder.path("mount/.Trash"));
  write("mount/four");
  ASSERT_TRUE(trash("mount/four"));
  EXPECT_EQ(placeInFolder(), own + "/files/four");

  // The user's own one a link to another file system: the item stays.
  fs::remove_all(folder.path(own));
  fs::create_directories(folder.path("elsewhere"));
  fs::create_directory_symlink(folder.path("elsewhere"), folder.path(own));
  write("mount/five");
  EXPECT_FALSE(trash("mount/five"));
  EXPECT_EQ(folder.bytes("mount/five"), "mount/five");
  EXPECT_TRUE(fs::is_empty(folder.path("elsewhere")));
}

}  // namespace
