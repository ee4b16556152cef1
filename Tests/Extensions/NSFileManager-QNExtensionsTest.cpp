#include <sys/stat.h>
#include <unistd.h>

#include "Extensions/NSBundle-QNExtensions.h"
#include "Extensions/NSFileManager-QNExtensions.h"
#include "Extensions/NSFileManager-ThreadSafeManager.h"
#include "Extensions/NSURL-QNExtensions.h"
#include "Platform/Foundation/PathText.h"
#include "Support/Process.h"
#include "Support/Testing.h"
#include "Utilities/QNFileSystemUtilities.h"
#include "Utilities/QNLogger.h"

namespace {

struct FileExtensionsTest : testing::Test {
  FileExtensionsTest() {
    for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "TMPDIR"}) setenv(variable, folder.path().c_str(), 1);
    setenv("XDG_DATA_HOME", folder.path("data").c_str(), 1);
  }

  Text path(const std::string& name = {}) const {
    return textFromFileSystem(name.empty() ? folder.path() : folder.path(name));
  }
  void write(std::initializer_list<std::string> names) const {
    for (const std::string& name : names) folder.write(name, name);
  }
  bool exists(const std::string& name) const { return fs::exists(fs::symlink_status(folder.path(name))); }

  TemporaryFolder folder;
  CapturedSystemLog log;
  NSFileManager& files = NSFileManagerExtensions::threadSafeManager();
  Ref<NSError> error;
};

TEST_F(FileExtensionsTest, ListsWhatMatches) {
  write({"a.txt", "b.png", "c.txt/d.txt"});
  const auto isText = [](const NSURL& url) { return url.pathExtension() == u"txt"; };
  const auto base = NSURL::fileURLWithPath(path());
  const auto urls = contentsOfDirectoryAtURL(files, base, &error, isText);
  std::vector<Text> names;
  for (const auto& url : urls) names.push_back(url->lastPathComponent());
  EXPECT_THAT(names, UnorderedElementsAre(u"a.txt", u"c.txt"));
  EXPECT_TRUE(contentsOfDirectoryAtURL(files, base, &error, nullptr).empty());
  EXPECT_EQ(error, nullptr);
  EXPECT_TRUE(contentsOfDirectoryAtURL(files, NSURL::fileURLWithPath(path("none")), &error, isText).empty());
  EXPECT_EQ(error->localizedDescription(), u"No such file or directory");

  EXPECT_TRUE(fileExistsAtURL(files, urls.front()));
  EXPECT_FALSE(fileExistsAtURL(files, nullptr) || fileExistsAtURL(files, NSURL::URLWithString(u"http://a/tmp")));
  EXPECT_TRUE(isDirectoryAtPath(files, path("c.txt")) && isFileAtPath(files, path("a.txt")));
  EXPECT_FALSE(isDirectoryAtPath(files, path("none")) || isFileAtPath(files, path("none")) ||
               isFileAtPath(files, path()) || isDirectoryAtPath(files, std::nullopt));
}

TEST_F(FileExtensionsTest, MakesFoldersAndTellsWhyNot) {
  EXPECT_TRUE(createDirectoryRecursivlyAtPath(files, path("a/b"), nullptr));
  EXPECT_TRUE(createDirectoryRecursivlyAtPath(files, path("a/b"), nullptr));
  EXPECT_THAT(log.take(), ElementsAre());
  EXPECT_FALSE(createDirectoryRecursivlyAtPath(files, u"/proc/none/x", nullptr, &error));
  EXPECT_FALSE(createDirectoryRecursivlyAtPath(files, std::nullopt, nullptr));
  EXPECT_THAT(
      log.take(),
      ElementsAre(u"Error while creating recursiv directories at path '/proc/none/x': No such file or directory",
                  u"Error while creating recursiv directories at path '(null)': No such file or directory"));
  EXPECT_EQ(error->code(), ENOENT);
}

TEST_F(FileExtensionsTest, DeletesFilesByNameAndNothingElse) {
  write({"cache-1", "x.cache", "Cache", "cache-folder/cache-2", "other"});
  fs::create_symlink("nowhere", folder.path("cache-dangling"));
  fs::create_directory_symlink("cache-folder", folder.path("cache-link"));
  for (const auto& fragment : {std::optional<TextView>(), std::optional<TextView>(u"")})
    deleteAllFilesWithNameContaining(files, fragment, path());
  deleteAllFilesWithNameContaining(files, u"cache", std::nullopt);
  deleteAllFilesWithNameContaining(files, u"cache", path("other"), &error);
  EXPECT_EQ(folder.names().size(), 7U);
  deleteAllFilesWithNameContaining(files, u"cache", path(), &error);
  EXPECT_THAT(folder.names(), ElementsAre("Cache", "cache-folder", "cache-link", "other"));
  EXPECT_TRUE(exists("cache-folder/cache-2"));
  EXPECT_EQ(error, nullptr);
  EXPECT_THAT(log.take(), ElementsAre());
}

TEST_F(FileExtensionsTest, RemovesWhatMatchesAtEveryDepth) {
  write({"a.tmp", "b", "x/c.tmp", "x/y/d.tmp", "x/y/e", "whole.tmp/f", "outside/g.tmp"});
  fs::create_directory_symlink(folder.path("outside"), folder.path("x/link"));
  fs::create_directory_symlink("..", folder.path("x/loop.tmp"));
  std::multiset<Text> asked;
  const auto isTemporary = [&asked](TextView item) { return asked.emplace(item), item.ends_with(u".tmp"); };
  removeAllItemsFromPath(files, path(), false, isTemporary);
  EXPECT_TRUE(!exists("a.tmp") && !exists("whole.tmp") && exists("x/c.tmp"));
  asked.clear();
  removeAllItemsFromPath(files, path("x"), true, isTemporary, &error);
  EXPECT_THAT(asked, UnorderedElementsAre(path("x/c.tmp"), path("x/link"), path("x/y"), path("x/y/d.tmp"),
                                          path("x/y/e"), path("x/loop.tmp")));
  EXPECT_TRUE(exists("x/y/e") && !exists("x/y/d.tmp") && !exists("x/loop.tmp") && exists("outside/g.tmp"));

  // A predicate may remove things itself; what is gone is not asked for.
  const auto removing = [&](TextView item) { return fs::remove_all(folder.path("x/y")), isTemporary(item); };
  removeAllItemsFromPath(files, path("x"), true, removing, &error);
  for (const auto& nothing : {std::optional<Text>(), std::optional<Text>(u""), std::optional<Text>(path("b"))})
    removeAllItemsFromPath(
        files, nothing, true, [](TextView item) { return ADD_FAILURE() << utf8(item), false; }, &error);
  removeAllItemsFromPath(files, path(), true, nullptr);
  EXPECT_EQ(error, nullptr);
  EXPECT_TRUE(exists("b"));
  EXPECT_THAT(log.take(), ElementsAre());
}

TEST_F(FileExtensionsTest, TellsWhatCouldNotBeRemoved) {
  write({"t/locked/in/a", "t/unreadable/b", "t/c", "sticky/d"});
  ASSERT_EQ(chmod(folder.path("t/locked/in").c_str(), 0500), 0);
  ASSERT_EQ(chmod(folder.path("t/unreadable").c_str(), 0300), 0);
  fs::create_directory(folder.path("t/empty"));
  ASSERT_EQ(chmod(folder.path("t/empty").c_str(), 0), 0);
  ASSERT_EQ(chmod(folder.path("sticky").c_str(), 01777), 0);
  ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
  // Reads the program's own folder, which the other user may not see.
  QNLogger::sharedLogger();
  if (geteuid() == 0) {
    for (const auto& item : fs::recursive_directory_iterator(folder.path("t")))
      ASSERT_EQ(lchown(item.path().c_str(), 1234, 1234), 0);
    ASSERT_EQ(lchown(folder.path("t").c_str(), 1234, 1234), 0);
    ASSERT_EQ(seteuid(1234), 0);
  }
  removeAllItemsFromPath(
      files, path("t"), true, [](TextView item) { return item.ends_with(u"locked") || item.ends_with(u"empty"); },
      &error);
  EXPECT_THAT(log.takeWithoutPlaces(), UnorderedElementsAre(u"ERROR - Error while requesting contents of folder '" +
                                                                path("t/locked") + u"': Permission denied",
                                                            u"ERROR - Permission denied (NSError)"));
  EXPECT_EQ(error->code(), EACCES);
  // Nobody else's file goes from a sticky folder, nor is it asked for.
  removeAllItemsFromPath(files, path("sticky"), true, [](TextView) { return true; });
  deleteAllFilesWithNameContaining(files, u"a", path("t/locked/in"));
  EXPECT_THAT(log.take(), ElementsAre());
  ASSERT_EQ(seteuid(getuid()), 0);
  EXPECT_TRUE(exists("t/locked/in/a") && exists("t/unreadable/b") && !exists("t/empty"));
  EXPECT_EQ(exists("sticky/d"), getuid() == 0);
  fs::permissions(folder.path("t/locked/in"), fs::perms::owner_all);
  fs::permissions(folder.path("t/unreadable"), fs::perms::owner_all);
}

TEST_F(FileExtensionsTest, MovesToTheTrash) {
  write({"a b"});
  const Ref<NSURL> place = moveFileToTrash(files, path("a b"), &error);
  ASSERT_NE(place, nullptr);
  EXPECT_EQ(*place->path(), path("data/Trash/files/a b"));
  EXPECT_TRUE(fileExistsAtURL(files, place) && !exists("a b"));
  EXPECT_EQ(moveFileToTrash(files, path("a b"), &error), nullptr);
  EXPECT_EQ(error->code(), ENOENT);
  EXPECT_EQ(moveFileToTrash(files, u"/proc/self/comm"), nullptr);
  moveFileToTrash(files, std::nullopt);
  moveFileToTrash(files, u"");
  EXPECT_THAT(log.takeWithoutPlaces(),
              ElementsAre(u"INFO - Move file at path: '" + path("a b") + u"' to trash.",
                          u"ERROR - Can't move file at path: '" + path("a b") + u"' to trash. File does not exists.",
                          u"INFO - Move file at path: '/proc/self/comm' to trash.",
                          u"ERROR - Can't move file at path: '/proc/self/comm' to trash."));
}

TEST_F(FileExtensionsTest, ResolvesLinks) {
  write({"real/file"});
  fs::create_symlink("file", folder.path("real/link"));
  fs::create_symlink("real/link", folder.path("chain"));
  fs::create_directory_symlink("real", folder.path("folder-link"));
  fs::create_symlink("loop", folder.path("loop"));
  const Text real = textFromFileSystem(fs::canonical(folder.path()).native());
  const std::pair<Text, Text> rows[] = {
      {path("chain"), real + u"/real/file"},    {path("./folder-link/"), real + u"/real"},
      {path("real/./file"), path("real/file")}, {path("folder-link/file"), path("folder-link/file")},
      {path("loop/."), path("loop/.")},
  };
  for (const auto& [from, to] : rows) EXPECT_EQ(resolveAliasAndLinkAtPath(files, from), to);
  EXPECT_EQ(resolveAliasAndLinkAtPath(files, std::nullopt), std::nullopt);
}

TEST_F(FileExtensionsTest, FindsNamesThatAreFree) {
  EXPECT_EQ(uniqueFileNameAtPath(files, path(), u"a", u"txt"), u"a.txt");
  write({"a.txt", "a-1.txt", "x."});
  fs::create_symlink("nowhere", folder.path("a-2.txt"));
  EXPECT_EQ(uniqueFileNameAtPath(files, path(), u"a", u"txt"), u"a-3.txt");
  EXPECT_EQ(createUniqueFileAtPath(files, path(), u"a", u"txt"), u"a-3.txt");
  EXPECT_EQ(createUniqueFileAtPath(files, path(), u"a", u"txt"), u"a-4.txt");
  EXPECT_EQ(uniqueFileNameAtPath(files, path(), u"x", std::nullopt), u"x-1.");
  EXPECT_EQ(uniqueFileNameAtPath(files, std::nullopt, u"a", u"txt"), std::nullopt);
  EXPECT_EQ(uniqueFileNameAtPath(files, path(), u"", u"txt"), std::nullopt);
  EXPECT_THAT(log.take(), ElementsAre());
  EXPECT_EQ(uniqueFileNameAtPath(files, path("a.txt"), u"a", u"txt"), std::nullopt);
  for (int i = 1; i <= 9999; ++i) ASSERT_EQ(symlink("x", folder.path("full-" + std::to_string(i) + ".x").c_str()), 0);
  write({"full.x"});
  EXPECT_EQ(uniqueFileNameAtPath(files, path(), u"full", u"x"), std::nullopt);
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"WARN - Folder does not exist or path points to file.",
                                                   u"ERROR - Could not create unique file name."));
  const std::tuple<Text, TextView, int, TextView> refused[] = {
      {path(), u"../a", EINVAL, u"ERROR - Could not create unique file name."},
      {path("a.txt"), u"a", ENOTDIR, u"WARN - Folder does not exist or path points to file."},
      {path("none"), u"a", ENOENT, u"WARN - Folder does not exist or path points to file."}};
  for (const auto& [folderPath, name, code, message] : refused) {
    EXPECT_EQ(createUniqueFileAtPath(files, folderPath, name, u"txt", &error), std::nullopt);
    EXPECT_EQ(error->code(), code);
    EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(message));
  }
}

TEST_F(FileExtensionsTest, GivesTemporaryNames) {
  using namespace NSFileManagerExtensions;
  EXPECT_EQ(temporaryFileURLWithExtension(u"")->lastPathComponent().substr(36), u".");
  const auto made = createTemporaryFileWithExtension(u"png");
  EXPECT_EQ(made->lastPathComponent().substr(36), u".png");
  EXPECT_EQ(modeOf(fileSystemRepresentation(*made->path())), 0600U);
  setenv("TMPDIR", folder.path("none").c_str(), 1);
  EXPECT_EQ(createTemporaryFileWithExtension(std::nullopt, &error), nullptr);
}

TEST_F(FileExtensionsTest, SixtyFourProcessesGetNamesOfTheirOwn) {
  EXPECT_TRUE(runInProcesses(64, [&](int) {
    for (int i = 0; i < 16; ++i) createUniqueFileAtPath(files, path(), u"report", u"pdf");
  }));
  EXPECT_EQ(folder.names().size(), 64U * 16);
}

TEST_F(FileExtensionsTest, FindsResources) {
  write({"data/Themes/a.css", "data/Themes/b.css/c.CSS", "data/Themes/b.css/d.js", "data/Themes/e"});
  const auto found = QNFileSystemUtilities::pathsForLibraryResourcesOfType({u"css", u"js"}, u"Themes");
  EXPECT_THAT(found, UnorderedElementsAre(path("data/Themes/a.css"), path("data/Themes/b.css"),
                                          path("data/Themes/b.css/d.js")));
  write({"N.app/Contents/MacOS/N", "N.app/Contents/Resources/a b.plist", "N.app/Contents/Resources/plain"});
  const NSBundle bundle(path("N.app/Contents/MacOS/N"));
  EXPECT_EQ(*URLForResource(bundle, u"a b", u"plist")->path(), path("N.app/Contents/Resources/a b.plist"));
  EXPECT_EQ(*NSURLExtensions::fileURLForResource(u"plain", std::nullopt, &bundle)->path(),
            path("N.app/Contents/Resources/plain"));
  EXPECT_EQ(NSURLExtensions::fileURLForResource(u"none", u"plist"), nullptr);
  EXPECT_EQ(NSURLExtensions::fileURLForResource(std::nullopt, std::nullopt, &bundle), nullptr);
  EXPECT_EQ(NSURLExtensions::fileURLForResource(u"plain", std::nullopt, nullptr), nullptr);
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"ERROR - Can't locate resource 'none' of type 'plist'.",
                                                   u"ERROR - Can't locate resource '(null)' of type '(null)'."));
}

}  // namespace
