#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/PathText.h"
#include "Support/Testing.h"
#include "Utilities/QNEnvironment.h"

namespace {

MATCHER_P(TextEndsWith, tail, "") { return TextView(arg).ends_with(tail); }

struct QNEnvironmentTest : testing::Test {
  QNEnvironmentTest() {
    for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "TMPDIR"}) setenv(variable, folder.path().c_str(), 1);
    setenv("XDG_DATA_HOME", "/d", 1);
    setenv("XDG_CACHE_HOME", "/c", 1);
    environment.setAppName(u"Foo");
  }

  Text path(const std::string& name) const { return folder.text(name); }

  TemporaryFolder folder;
  CapturedSystemLog log;
  QNEnvironment environment;
};

TEST_F(QNEnvironmentTest, DerivesEveryPathFromTheName) {
  environment.setDevelopmentVersion(true);
  const Text bundle = NSBundle::mainBundle().bundlePath();
  const std::pair<Text, Text> rows[] = {
      {environment.applicationFolderPath(), bundle},
      {environment.resourcesFolderPath(), bundle + u"/Contents/Resources"},
      {environment.libraryFolderPath(), u"/d"},
      {environment.systemLibraryPath(), u"/usr/local/share"},
      {environment.libraryAppSupportPath(), u"/d/Foo"},
      {environment.systemLibraryAppSupportPath(), u"/usr/local/share/Application Support/Foo"},
      {environment.cachesFolderPath(), u"/c"},
      {environment.cachesMetadataApplicationFolderPath(), u"/c/Metadata/Foo.dev"},
      {environment.logFilePath(), u"/d/Foo/Logs/Foo.log"},
      {environment.logConfigFilePath(), u"/d/Foo/Log.config"},
      {environment.crashReportFilePath(), u"/d/Logs/CrashReporter/Foo.crash.log"},
      {environment.userPluginFolderPath(), u"/d/Foo/Plug-Ins"},
      {environment.privateDocumentsFolderPath(), u"/d/Foo/Documents"},
      {environment.documentsFolderPath(), path("Documents")},
      {QNEnvironment::desktopFolderPath(), path("Desktop")},
      {environment.userHomeFolderPath(), textFromFileSystem(folder.path())},
      {environment.userPicturesFolderPath(), path("Pictures")},
      {environment.temporaryFolderPath(), path("Foo")},
      {environment.summary(), u"app-name: Foo\nlibrary-app-support: /d/Foo\n"},
  };
  for (const auto& [actual, expected] : rows) EXPECT_EQ(actual, expected);
  // The library lies elsewhere than the tests that use it.
  EXPECT_THAT(environment.pluginFolderPaths(),
              ElementsAre(TextEndsWith(u"/PlugIns"), bundle + u"/PlugIns",
                          u"/usr/local/share/Application Support/Foo/Plug-Ins", u"/d/Foo/Plug-Ins"));
  environment.setDevelopmentVersion(false);
  EXPECT_EQ(environment.cachesMetadataApplicationFolderPath(), u"/c/Metadata/Foo");
  // The tests have no information dictionary.
  environment.setAppName(u"");
  EXPECT_EQ(environment.appName(), u"NoNameApp");
  EXPECT_EQ(environment.appVersion(), std::nullopt);
  EXPECT_EQ(environment.appRevision(), std::nullopt);
}

TEST_F(QNEnvironmentTest, PreparesItsFolders) {
  setenv("XDG_DATA_HOME", folder.path("data").c_str(), 1);
  environment.setupFilesAndFolders();
  EXPECT_THAT(log.take(),
              ElementsAre(u"Error while removing file at path '" + path("Foo") + u"': No such file or directory"));
  EXPECT_TRUE(fs::is_directory(folder.path("Foo")) && fs::is_directory(folder.path("data/Foo")));
  EXPECT_FALSE(fs::exists(folder.path("data/Foo/Logs")));
  folder.write("Foo/left", "x");
  folder.write("data/Foo/kept", "x");
  environment.setupFilesAndFolders();
  EXPECT_TRUE(fs::is_empty(folder.path("Foo")) && fs::exists(folder.path("data/Foo/kept")));

  // A link goes, and what it leads to stays.
  fs::remove_all(folder.path("Foo"));
  fs::create_directory_symlink("data", folder.path("Foo"));
  environment.setupFilesAndFolders();
  EXPECT_TRUE(!fs::is_symlink(folder.path("Foo")) && fs::exists(folder.path("data/Foo/kept")));
  EXPECT_THAT(log.take(), ElementsAre());
}

TEST_F(QNEnvironmentTest, RemovesNoFolderThatIsNotItsOwn) {
  // Two deep, so that what a mistake would remove is the test's own.
  folder.write("above/tmp/others", "x");
  setenv("TMPDIR", folder.path("above/tmp").c_str(), 1);
  setenv("XDG_DATA_HOME", folder.path("above/data").c_str(), 1);
  for (const TextView name : {u"..", u".", u"/", u"//", u"a/..", u"a/../..", u"../tmp"}) {
    environment.setAppName(name);
    environment.setupFilesAndFolders();
    EXPECT_TRUE(fs::exists(folder.path("above/tmp/others"))) << utf8(name);
    EXPECT_THAT(log.take(), testing::Contains(TextEndsWith(u": Invalid argument")));
  }
  EXPECT_EQ(folder.names(), std::vector<std::string>{"above"});
}

TEST_F(QNEnvironmentTest, MakesTheTemporaryFolderWhenAsked) {
  EXPECT_EQ(environment.temporaryFolderPathWithCreate(), path("Foo"));
  EXPECT_THAT(log.take(), ElementsAre(TextEndsWith(u" - Temporary folder does not exist. Will create one...")));
  fs::remove(folder.path("Foo"));
  folder.write("Foo", "x");
  EXPECT_EQ(environment.temporaryFolderPathWithCreate(), std::nullopt);
  EXPECT_THAT(log.take(), ElementsAre(TextEndsWith(u" - Can't put poster into the temporary folder at '" + path("Foo") +
                                                   u"', because there is a file with the same name.")));
}

}  // namespace
