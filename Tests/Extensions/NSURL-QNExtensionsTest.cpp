#include "Extensions/NSURL-QNExtensions.h"
#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/NSURLError.h"
#include "Platform/Foundation/URLContents.h"
#include "Support/RawServer.h"
#include "Support/Testing.h"

namespace {

struct DownloadTest : testing::Test {
  DownloadTest() {
    fs::create_directory(temporary);
    fs::permissions(temporary, fs::perms::owner_all);
    setenv("TMPDIR", temporary.c_str(), 1);
  }

  static Ref<NSURL> url(const std::string& address) { return NSURL::URLWithString(textFromUTF8(address)); }
  std::vector<fs::path> left() const { return {fs::directory_iterator(temporary), fs::directory_iterator()}; }

  TemporaryFolder folder;
  std::string temporary = folder.path("temporary");
  CapturedSystemLog log;
};

TEST_F(DownloadTest, PutsContentsIntoANewFile) {
  const std::string contents(3000000, 'x');
  const RawServer server([&](RawPeer& peer) {
    RawRequest request;
    while (peer.read(request)) {
      EXPECT_THAT(request.head, StartsWith("GET /%C3%A9?a=%20 "));
      peer.send(answer("200 OK", contents));
    }
  });
  URLProgress last;
  const auto progress = [&](const URLProgress& now) {
    EXPECT_GE(now.receivedBytes, last.receivedBytes);
    last = now;
    return true;
  };
  const auto address = url(server.base() + "/\xC3\xA9?a=%20");
  const auto target = qn_downloadContentsOfURLToTemporaryFolderUsingFileExtension(address, u"dat", progress);
  ASSERT_TRUE(target);
  EXPECT_EQ(target->pathExtension(), u"dat");
  EXPECT_EQ(readFile(fileSystemRepresentation(*target->path()), contents.size()).bytes, contents);
  EXPECT_EQ(last.receivedBytes, contents.size());
  EXPECT_EQ(last.bytesToReceive, contents.size());
  EXPECT_EQ(left().size(), 1U);
  EXPECT_TRUE(log.take().empty());
}

TEST_F(DownloadTest, LeavesNothingBehindAFailure) {
  const RawServer server([](RawPeer& peer) {
    RawRequest request;
    peer.read(request);
    const bool isMissing = request.head.find("/missing") != std::string::npos;
    peer.send(isMissing ? answer("404 Not Found", "no") : "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf");
  });
  const auto stop = [](const URLProgress&) { return false; };
  const std::pair<Ref<NSURL>, URLProgressCall> rows[] = {
      {url(server.base() + "/cut"), nullptr},    {url(server.base() + "/missing"), nullptr},
      {url(server.base() + "/stopped"), stop},   {url(refusingBase()), nullptr},
      {url("ftp://127.0.0.1/x"), nullptr},       {url("file:///missing"), nullptr},
      {url("file://" + folder.path()), nullptr}, {nullptr, nullptr}};
  for (const auto& [address, progress] : rows) {
    EXPECT_EQ(qn_downloadContentsOfURLToTemporaryFolderUsingFileExtension(address, u"x", progress), nullptr);
    const auto logged = log.take();
    ASSERT_EQ(logged.size(), 1U) << utf8(description(address));
    EXPECT_THAT(utf8(logged[0]), EndsWith("Can't download contents of URL: " + utf8(description(address))));
    EXPECT_THAT(left(), IsEmpty());
  }
  EXPECT_EQ(qn_downloadContentsOfURLToTemporaryFolderUsingFileExtension(NSURL::fileURLWithPath(u"/etc/passwd"), u"a/b"),
            nullptr);
  EXPECT_THAT(utf8(log.take().at(0)), HasSubstr("Can't write contents to URL: file://"));
}

TEST_F(DownloadTest, LimitsHoldForFilesToo) {
  folder.write("a file", "12345");
  const auto file = NSURL::fileURLWithPath(folder.text("a file"));
  Ref<NSError> error;
  EXPECT_EQ(dataWithContentsOfURL(file, nullptr, {.receivedBytes = 5})->length(), 5U);
  EXPECT_EQ(dataWithContentsOfURL(file, &error, {.receivedBytes = 4}), nullptr);
  EXPECT_EQ(error->code(), NSURLErrorDataLengthExceedsMaximum);
}

}  // namespace
