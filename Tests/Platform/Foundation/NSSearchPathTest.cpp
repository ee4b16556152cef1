#include <sys/stat.h>
#include <unistd.h>

#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSSearchPath.h"
#include "Support/Testing.h"

namespace {

struct NSSearchPathTest : testing::Test {
  NSSearchPathTest() {
    setenv("HOME", "/home/ann", 1);
    setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
    unsetenv("XDG_DATA_HOME");
    unsetenv("XDG_CACHE_HOME");
  }

  static std::vector<Text> find(NSSearchPathDirectory directory, NSSearchPathDomainMask domains, bool expand = true) {
    return NSSearchPathForDirectoriesInDomains(directory, domains, expand);
  }

  TemporaryFolder folder;
};

TEST_F(NSSearchPathTest, FindsTheFoldersOfEachDomain) {
  EXPECT_THAT(find(NSLibraryDirectory, NSAllDomainsMask),
              ElementsAre(u"/home/ann/.local/share", u"/usr/local/share", u"/usr/share"));
  EXPECT_THAT(find(NSApplicationSupportDirectory, NSUserDomainMask, false), ElementsAre(u"~/.local/share"));
  EXPECT_THAT(find(NSCachesDirectory, NSAllDomainsMask), ElementsAre(u"/home/ann/.cache", u"/var/cache"));
  setenv("XDG_DATA_HOME", "relative", 1);
  setenv("XDG_CACHE_HOME", "/caches", 1);
  EXPECT_THAT(find(NSLibraryDirectory, NSUserDomainMask), ElementsAre(u"/home/ann/.local/share"));
  EXPECT_THAT(find(NSCachesDirectory, NSUserDomainMask, false), ElementsAre(u"/caches"));
  // An abbreviation is not made in the middle of a name.
  setenv("XDG_CACHE_HOME", "/home/anna", 1);
  EXPECT_THAT(find(NSCachesDirectory, NSUserDomainMask, false), ElementsAre(u"/home/anna"));
}

TEST_F(NSSearchPathTest, ReadsTheFoldersThatTheUserNamed) {
  EXPECT_THAT(find(NSDocumentDirectory, NSAllDomainsMask), ElementsAre(u"/home/ann/Documents"));
  folder.write("user-dirs.dirs",
               "# XDG_DESKTOP_DIR=\"/comment\"\n"
               "XDG_DESKTOP_DIR=\"$HOME/Schreib\\\"tisch\\\\\"\n"
               "  XDG_DOCUMENTS_DIR = \"/first\"\nXDG_DOCUMENTS_DIR=\"/gr\xFC\"\n"
               "XDG_MUSIC_DIR=\"relative\"\nXDG_VIDEOS_DIR=/unquoted\n"
               "XDG_PICTURES_DIR=\"$HOMES/x\"\nXDG_DOWNLOAD_DIR=\"$HOME\"");
  const std::pair<NSSearchPathDirectory, TextView> rows[] = {{NSDesktopDirectory, u"/home/ann/Schreib\"tisch\\"},
                                                             {NSDocumentDirectory, u"/gr\xDCFC"},
                                                             {NSMusicDirectory, u"/home/ann/Music"},
                                                             {NSMoviesDirectory, u"/home/ann/Videos"},
                                                             {NSPicturesDirectory, u"/home/ann/Pictures"},
                                                             {NSDownloadsDirectory, u"/home/ann"}};
  for (const auto& [directory, path] : rows) EXPECT_EQ(find(directory, NSUserDomainMask).front(), path);
}

TEST_F(NSSearchPathTest, TheTemporaryFolderIsTheUsersOwn) {
  const auto temporary = [] { return fileSystemRepresentation(NSTemporaryDirectory()); };
  setenv("TMPDIR", (folder.path() + "//").c_str(), 1);
  EXPECT_EQ(temporary(), folder.path());
  // Where others can write, a folder within.
  const std::string own = folder.path("kelvane-" + std::to_string(geteuid()));
  ASSERT_EQ(chmod(folder.path().c_str(), 01777), 0);
  EXPECT_EQ(temporary(), own);
  EXPECT_TRUE(fs::is_directory(own) && modeOf(own) == 0700U);
  EXPECT_EQ(temporary(), own);
  fs::remove(own);
  fs::create_directory(folder.path("trap"));
  fs::create_directory_symlink("trap", own);
  const std::string other = temporary();
  EXPECT_TRUE(other.starts_with(own + "-") && fs::is_directory(other));
  EXPECT_EQ(temporary(), other);
  fs::remove(own);
  fs::create_directory(own);
  ASSERT_EQ(chmod(own.c_str(), 0777), 0);
  EXPECT_EQ(temporary(), other);
  setenv("TMPDIR", "relative", 1);
  EXPECT_TRUE(temporary().starts_with("/tmp"));
}

// Where the resources are for a program of its own, a bundle, and a library before and after its installation.
TEST(NSBundle, FindsResourcesInEachLayout) {
  const std::tuple<const char*, TextView, const char*> rows[] = {
      {"bin/tool", u"", "bin/Resources/a.plist"},
      {"X.app/Contents/Linux/X", u"", "X.app/Contents/Resources/a.plist"},
      {"X.app/Contents/Frameworks/libX.so", u"../../share/X", "X.app/Contents/Resources/a.plist"},
      {"build/libX.so", u"../../share/X", "build/Resources/a.plist"},
      {"prefix/lib/libX.so", u"../share/X", "prefix/lib/../share/X/a.plist"},
  };
  for (const auto& [executable, sharedResources, resourceName] : rows) {
    const TemporaryFolder folder;
    const Text resource = folder.text(resourceName);
    fs::create_directories(fs::path(folder.path(executable)).parent_path());
    folder.write(resourceName, "x");
    const NSBundle bundle(folder.text(executable), sharedResources);
    EXPECT_EQ(bundle.pathForResource(u"a", u"plist"), resource);
    EXPECT_EQ(bundle.pathForResource(u"a.plist", u""), resource);
    EXPECT_EQ(bundle.pathForResource(u"b", u"plist"), std::nullopt);
    EXPECT_EQ(bundle.pathForResource(u"", u""), std::nullopt);
    EXPECT_EQ(bundle.pathForResource(TextView(u"a.plist\0", 8), u"x"), std::nullopt);
  }
}

}  // namespace
