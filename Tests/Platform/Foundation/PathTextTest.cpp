#include <pwd.h>
#include <unistd.h>

#include <filesystem>

#include "Platform/Foundation/HomeDirectory.h"
#include "Platform/Foundation/PathText.h"
#include "Support/Testing.h"

namespace {

TEST(PathText, StandardizesBehindTildes) {
  setenv("HOME", "/home/ann", 1);
  const std::pair<TextView, TextView> rows[] = {
      {u"", u""},
      {u"~", u"/home/ann"},
      {u"~/x/./y", u"/home/ann/x/y"},
      {u"~/../../..", u"/"},
      {u"./~ann", u"./~ann"},
      {u"x/../~/y", u"./~/y"},
      {u"~no-such-user/../x", u"x"},
      {u"~no-such-user/../~root", u"./~root"},
  };
  for (const auto& [path, expected] : rows) EXPECT_EQ(stringByStandardizingPath(path), expected) << utf8(path);
}

TEST(PathText, ExpandsTildes) {
  setenv("HOME", "/tmp/h\xFF", 1);
  EXPECT_EQ(NSHomeDirectory(), u"/tmp/h\xDCFF");
  const std::pair<TextView, TextView> rows[] = {
      {u"", u""},     {u"~", u"/tmp/h\xDCFF"}, {u"~/a//", u"/tmp/h\xDCFF/a//"},          {u"a~", u"a~"},
      {u"/~", u"/~"}, {u" ~", u" ~"},          {u"~no-such-user/a", u"~no-such-user/a"}, {u"~~", u"~~"}};
  for (const auto& [path, expected] : rows) EXPECT_EQ(stringByExpandingTildeInPath(path), expected) << utf8(path);
  EXPECT_EQ(stringByExpandingTildeInPath(u"~root/a"), u"/root/a");
  EXPECT_EQ(NSHomeDirectoryForUser(u"root"), u"/root");
  for (const TextView name : {TextView(u"root\0x", 6), TextView(u""), TextView(u"ro ot")})
    EXPECT_EQ(NSHomeDirectoryForUser(name), std::nullopt) << utf8(name);
}

TEST(PathText, TakesPathsApart) {
  const std::tuple<TextView, TextView, TextView, TextView, TextView> rows[] = {
      {u"/a/b.tar.gz", u"b.tar.gz", u"/a", u"gz", u"/a/b.tar"},
      {u"/a//b.d///", u"b.d", u"/a", u"d", u"/a//b"},
      {u"a.b/c", u"c", u"a.b", u"", u"a.b/c"},
      {u"//a", u"a", u"/", u"", u"//a"},
      {u"/", u"/", u"/", u"", u"/"},
      {u"", u"", u"", u"", u""},
      {u".profile", u".profile", u"", u"", u".profile"},
      {u"/.profile.bak", u".profile.bak", u"/", u"bak", u"/.profile"},
      {u"b.", u"b.", u"", u"", u"b."},
      {u"/a/..", u"..", u"/a", u"", u"/a/.."},
  };
  for (const auto& [path, last, above, extension, withoutExtension] : rows) {
    SCOPED_TRACE(utf8(path));
    EXPECT_EQ(lastPathComponent(path), last);
    EXPECT_EQ(stringByDeletingLastPathComponent(path), above);
    EXPECT_EQ(pathExtension(path), extension);
    EXPECT_EQ(stringByDeletingPathExtension(path), withoutExtension);
  }
  static_assert(std::same_as<decltype(lastPathComponent(Text())), Text>, "no view of what is gone");
}

TEST(PathText, PutsPathsTogether) {
  const TextView joined[][3] = {{u"/a", u"b", u"/a/b"}, {u"/a//", u"//b/c//", u"/a/b/c"},
                                {u"/", u"b", u"/b"},    {u"", u"b", u"b"},
                                {u"a", u"", u"a"},      {u"/", u"/", u"/"}};
  for (const auto& [path, component, expected] : joined)
    EXPECT_EQ(stringByAppendingPathComponent(path, component), expected) << utf8(path);
  const TextView extended[][3] = {
      {u"/a/b", u"txt", u"/a/b.txt"}, {u"b/", u"d", u"b.d"}, {u"/", u"d", u"/"}, {u"", u"d", u""}};
  for (const auto& [path, extension, expected] : extended)
    EXPECT_EQ(stringByAppendingPathExtension(path, extension), expected) << utf8(path);
  EXPECT_TRUE(isAbsolutePath(u"/a") && isAbsolutePath(u"~") && !isAbsolutePath(u"a/") && !isAbsolutePath(u""));
}

TEST(HomeDirectory, ComesFromTheUserDatabaseUnlessHOMEIsAbsolute) {
  const passwd* entry = getpwuid(geteuid());
  const Text expected = entry ? textFromFileSystem(entry->pw_dir) : u"/";
  unsetenv("HOME");
  EXPECT_EQ(NSHomeDirectory(), expected);
  for (const char* home : {"", "relative", "~"}) {
    setenv("HOME", home, 1);
    EXPECT_EQ(NSHomeDirectory(), expected) << home;
  }
}

}  // namespace
