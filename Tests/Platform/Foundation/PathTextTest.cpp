#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <random>

#include "Platform/Foundation/HomeDirectory.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/TextPrinting.h"

namespace kelvane {
namespace {

// The standard library's normal form is the same, but for slashes at the end, which it keeps.
TEST(PathText, StandardizesLikeTheStandardLibrary) {
  std::mt19937 random(5);
  for (int round = 0; round < 20000; ++round) {
    std::string path;
    for (std::size_t units = 1 + random() % 14; units > 0; --units) path += "/.a./"[random() % 5];
    std::string expected = std::filesystem::path(path).lexically_normal().string();
    while (expected.size() > 1 && expected.ends_with('/')) expected.pop_back();
    ASSERT_EQ(utf8(stringByStandardizingPath(textFromUTF8(path))), expected) << path;
  }
}

TEST(PathText, StandardizesBehindTildes) {
  setenv("HOME", "/home/ann", 1);
  const std::pair<TextView, TextView> rows[] = {
      {u"", u""},
      {u"~", u"/home/ann"},
      {u"~/x/./y", u"/home/ann/x/y"},
      {u"~/../../..", u"/"},
      {u"a/~", u"a/~"},
      {u"./~ann", u"./~ann"},
      {u"x/../~/y", u"./~/y"},
      {u"~no-such-user/../x", u"x"},
      {u"~no-such-user/../~root", u"./~root"},
      {u"\xDCFF/\xD800/..", u"\xDCFF"},
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
  setenv("HOME", "/", 1);
  EXPECT_EQ(stringByExpandingTildeInPath(u"~/a"), u"/a");
  EXPECT_EQ(NSHomeDirectoryForUser(u"root"), u"/root");
  for (const TextView name : {TextView(u"root\0x", 6), TextView(u""), TextView(u"ro ot")})
    EXPECT_EQ(NSHomeDirectoryForUser(name), std::nullopt) << utf8(name);
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
}  // namespace kelvane
