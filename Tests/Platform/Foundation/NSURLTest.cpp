#include <filesystem>
#include <memory>

#include "Platform/Foundation/NSURL.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

using namespace std::string_view_literals;
using Part = std::optional<Text>;

TEST(NSURL, ReadsComponents) {
  const struct {
    TextView text;
    Part scheme, host, path, query, fragment;
  } rows[] = {
      {u"http://ann:pw@example.org:80/a/b?x=1&y=?#top#?", u"http", u"example.org", u"/a/b", u"x=1&y=?", u"top#?"},
      {u"http://[2001:db8::1]:8080", u"http", u"[2001:db8::1]", {}, {}, {}},
      {u"http://host?q@x:y/z", u"http", u"host", {}, u"q@x:y/z", {}},
      {u"mailto:ann@example.org", u"mailto", {}, u"ann@example.org", {}, {}},
      {u"a/b:c", {}, {}, u"a/b:c", {}, {}},
      {u"/%e2%82%AC/%2F%25?%41", {}, {}, u"/\x20AC//%", u"%41", {}},
      {u"/%ff%00", {}, {}, Text(u"/\xDCFF\0", 3), {}, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.text));
    const Ref<NSURL> url = NSURL::URLWithString(row.text);
    ASSERT_NE(url, nullptr);
    EXPECT_EQ(url->absoluteString(), row.text);
    EXPECT_EQ(url->scheme(), row.scheme);
    EXPECT_EQ(url->host(), row.host);
    EXPECT_EQ(url->path(), row.path);
    EXPECT_EQ(url->query(), row.query);
    EXPECT_EQ(url->fragment(), row.fragment);
  }
}

TEST(NSURL, RefusesWhatIsNoURL) {
  for (const TextView text : {u" "sv, u"http://a b"sv, u"a\0b"sv, u"a\x7F"sv, u"a\n"sv, u"%"sv, u"a%2"sv, u"#%2G"sv,
                              u"%-1"sv, u"%\xFF11\xFF11"sv, u":a"sv, u"1a:b"sv, u"h\xE9:b"sv, u"a_b:c"sv, u"\x161:b"sv})
    EXPECT_EQ(NSURL::URLWithString(text), nullptr) << testing::PrintToString(text);
}

TEST(NSURL, FileURLsKeepWhateverAPathHolds) {
  const struct {
    TextView path;
    bool isFolder;
    TextView url, last, extension;
  } rows[] = {
      {u"/a b/c.tar.gz", false, u"file:///a%20b/c.tar.gz", u"c.tar.gz", u"gz"},
      {u"/a?b#c%d[e]", true, u"file:///a%3Fb%23c%25d%5Be%5D/", u"a?b#c%d[e]", u""},
      {u"/\xE9\xDCE9.\xD83D\xDE00", false, u"file:///%C3%A9%E9.%F0%9F%98%80", u"\xE9\xDCE9.\xD83D\xDE00",
       u"\xD83D\xDE00"},
  };
  for (const auto& row : rows) {
    const Ref<NSURL> url = NSURL::fileURLWithPath(row.path, row.isFolder);
    EXPECT_EQ(url->absoluteString(), row.url);
    EXPECT_EQ(url->path(), row.path);
    EXPECT_TRUE(isEqual(url, NSURL::URLWithString(row.url)));
    EXPECT_EQ(url->lastPathComponent(), row.last);
    EXPECT_EQ(url->pathExtension(), row.extension);
  }
  EXPECT_TRUE(NSURL::URLWithString(u"FiLe:")->isFileURL() && !NSURL::URLWithString(u"files:/a")->isFileURL());
  EXPECT_TRUE(NSURL::fileURLWithPath(u"a")->path()->ends_with(u"/a"));
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.path("gone"));
  std::filesystem::current_path(folder.path("gone"));
  std::filesystem::remove(folder.path("gone"));
  EXPECT_EQ(NSURL::fileURLWithPath(u"a"), nullptr);
  std::filesystem::current_path("/");
  const auto child = NSURL::URLWithString(u"file://host/a//?q#f")->URLByAppendingFileName("b\xFF", true);
  EXPECT_EQ(child->absoluteString(), u"file://host/a/b%FF/");
  EXPECT_EQ(child->path(), u"/a/b\xDCFF");
  EXPECT_EQ(NSURL::URLWithString(u"file:////")->path(), u"/");
}

TEST(NSURL, RemovesPercentEncoding) {
  EXPECT_EQ(stringByRemovingPercentEncoding(u"a+b%20c%2525"), u"a+b c%25");
  EXPECT_EQ(stringByRemovingPercentEncoding(u"%C3%A9%c3|\xDCC3%A9"), u"\xE9\xDCC3|\xE9") << "bytes, then characters";
  for (const TextView text : {u"%", u"%4", u"%%41", u"%4 1"})
    EXPECT_EQ(stringByRemovingPercentEncoding(text), std::nullopt) << testing::PrintToString(text);
}

}  // namespace
}  // namespace kelvane
