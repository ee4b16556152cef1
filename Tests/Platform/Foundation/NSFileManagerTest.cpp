#include <sys/stat.h>
#include <unistd.h>

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSDirectoryEnumerator.h"
#include "Platform/Foundation/NSFileManager.h"
#include "Support/Testing.h"

namespace {

struct NSFileManagerTest : testing::Test {
  Text path(const std::string& name) const { return folder.text(name); }
  void write(const std::string& name) const { folder.write(name, name); }

  TemporaryFolder folder;
  NSFileManager files;
  Ref<NSError> error;
};

TEST_F(NSFileManagerTest, MovesWithoutReplacing) {
  write("file");
  write("other");
  fs::create_directory(folder.path("inside"));
  EXPECT_TRUE(files.moveItemAtPath(path("file"), path("inside/moved"), &error));
  EXPECT_FALSE(fs::exists(folder.path("file")));
  EXPECT_EQ(fs::file_size(folder.path("inside/moved")), 4U);
  const std::tuple<Text, Text, int> rows[] = {
      {path("inside/moved"), path("other"), EEXIST}, {path("none"), path("x"), ENOENT}, {u"", path("x"), ENOENT},
      {path("inside"), path("inside/x"), EINVAL},    {path("other"), u"", ENOENT},
  };
  for (const auto& [from, to, reason] : rows) {
    error = nullptr;
    EXPECT_FALSE(files.moveItemAtPath(from, to, &error)) << reason;
    EXPECT_EQ(error ? error->code() : 0, reason);
  }
  EXPECT_TRUE(fs::exists(folder.path("inside/moved")));
  EXPECT_EQ(fs::file_size(folder.path("other")), 5U);
}

TEST_F(NSFileManagerTest, TellsWhatExists) {
  write("file");
  fs::create_symlink("nowhere", folder.path("dangling"));
  fs::create_symlink("loop", folder.path("loop"));
  fs::create_directory_symlink(".", folder.path("to-folder"));
  const std::tuple<Text, bool, bool, bool> rows[] = {
      {path("file"), true, false, true},      {path("file/"), false, false, false},
      {path("dangling"), false, false, true}, {path("to-folder"), true, true, true},
      {path("none"), false, false, false},    {path("file") + Text(1, u'\0'), false, false, false},
  };
  for (const auto& [item, exists, leadsToFolder, isItem] : rows) {
    bool isFolder = true;
    EXPECT_EQ(files.fileExistsAtPath(item, &isFolder), exists) << testing::PrintToString(item);
    EXPECT_EQ(isFolder, leadsToFolder) << testing::PrintToString(item);
    EXPECT_EQ(files.itemExistsAtPath(item), isItem) << testing::PrintToString(item);
    EXPECT_EQ(files.isDeletableFileAtPath(item), isItem) << testing::PrintToString(item);
  }
}

TEST_F(NSFileManagerTest, ListsNamesAndURLs) {
  write("a b");
  write("gr\xFC");
  fs::create_directory(folder.path("folder"));
  fs::create_directory_symlink("folder", folder.path("link"));
  EXPECT_THAT(files.contentsOfDirectoryAtPath(path(""), &error),
              UnorderedElementsAre(u"a b", u"gr\xDCFC", u"folder", u"link"));
  const auto base = NSURL::fileURLWithPath(path(""), true);
  std::vector<Text> urls;
  for (const auto& url : files.contentsOfDirectoryAtURL(*base, &error)) urls.push_back(url->absoluteString());
  const Text prefix = base->absoluteString();
  EXPECT_THAT(urls, UnorderedElementsAre(prefix + u"a%20b", prefix + u"gr%FC", prefix + u"folder/", prefix + u"link"));
  EXPECT_EQ(error, nullptr);
  EXPECT_TRUE(files.contentsOfDirectoryAtPath(path("a b"), &error).empty());
  EXPECT_EQ(error->code(), ENOTDIR);
}

TEST_F(NSFileManagerTest, MakesFoldersWithAttributes) {
  umask(022);
  const auto attributes = dictionaryOf(
      {{Text(NSFilePosixPermissions), box(0555)},
       {Text(NSFileModificationDate), std::make_shared<NSDate>(NSDate::dateWithTimeIntervalSince1970(-1.5))}});
  ASSERT_TRUE(files.createDirectoryAtPath(path("a//b/c/"), true, attributes.get(), &error));
  EXPECT_EQ(modeOf(folder.path("a")), 0555U);
  EXPECT_EQ(modeOf(folder.path("a/b/c")), 0555U);
  struct stat status = {};
  ASSERT_EQ(stat(folder.path("a/b/c").c_str(), &status), 0);
  EXPECT_EQ(status.st_mtim.tv_sec, -2);
  const auto never = dictionaryOf(
      {{Text(NSFileModificationDate), std::make_shared<NSDate>(NSDate::dateWithTimeIntervalSince1970(NAN))}});
  EXPECT_FALSE(files.createDirectoryAtPath(path("never"), false, never.get(), &error));
  EXPECT_EQ(error->code(), EINVAL);
  write("file");
  fs::create_symlink("nowhere", folder.path("dangling"));
  const std::tuple<Text, bool, int> failures[] = {
      {path("x/y"), false, ENOENT}, {path("file/x"), true, ENOTDIR}, {path("dangling"), true, EEXIST}};
  for (const auto& [item, withIntermediates, reason] : failures) {
    EXPECT_FALSE(files.createDirectoryAtPath(item, withIntermediates, &error));
    EXPECT_EQ(error->code(), reason) << testing::PrintToString(item);
  }
  ASSERT_EQ(chmod(folder.path("a").c_str(), 0755), 0);
  ASSERT_EQ(chmod(folder.path("a/b").c_str(), 0755), 0);
  EXPECT_TRUE(files.removeItemAtPath(path("a"), &error));
}

TEST_F(NSFileManagerTest, WalksFoldersWithoutFollowingLinks) {
  fs::create_directories(folder.path("a/b"));
  fs::create_directory_symlink("..", folder.path("a/loop"));
  write("a/b/gr\xFC");
  write("z");
  std::vector<Text> items;
  NSDirectoryEnumerator walk(path(""));
  while (const auto item = walk.nextObject()) items.push_back(*item);
  EXPECT_THAT(items, UnorderedElementsAre(u"a", u"a/b", u"a/b/gr\xDCFC", u"a/loop", u"z"));

  std::size_t count = 0;
  NSDirectoryEnumerator changing(path(""));
  for (; const auto item = changing.nextObject(); ++count)
    if (*item == u"a") fs::remove_all(folder.path("a"));
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(NSDirectoryEnumerator(path("none")).nextObject(), std::nullopt);
}

}  // namespace
