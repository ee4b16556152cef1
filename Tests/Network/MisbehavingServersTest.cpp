// Servers that do wrong, and such that do right in unusual ways. Each row is asked in the three ways that the library
// asks: a post that waits, one in the background, and a read of the whole content.

#include <list>

#include "Network/QNHTTPPost.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSRunLoop.h"
#include "Platform/Foundation/NSURLError.h"
#include "Platform/Foundation/URLContents.h"
#include "Support/RawServer.h"
#include "Support/Testing.h"

namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;

constexpr std::int64_t fine = 0;
constexpr std::int64_t lost = NSURLErrorNetworkConnectionLost;
constexpr std::int64_t senseless = NSURLErrorBadServerResponse;
constexpr std::int64_t tooMuch = NSURLErrorDataLengthExceedsMaximum;
constexpr std::int64_t tooManyRedirects = NSURLErrorHTTPTooManyRedirects;
constexpr std::int64_t unsupported = NSURLErrorUnsupportedURL;
constexpr std::int64_t late = NSURLErrorTimedOut;

struct Row {
  const char* name;
  RawServer::Behaviour behave;
  // What posts get, and what reading gets where that is something else.
  std::int64_t code = fine;
  Text body = u"";
  std::optional<std::int64_t> readingCode = std::nullopt;
  URLLimits limits = {.receivedBytes = 1U << 20U};
};

constexpr URLLimits quick = {.totalTime = 300ms, .receivedBytes = 1U << 20U};
constexpr URLLimits impatient = {.idleTime = 1s, .receivedBytes = 1U << 20U};

// Reads a request, sends these bytes, and then others without an end, or nothing any more without closing.
RawServer::Behaviour says(std::string bytes, std::string more = "", bool stalls = false) {
  return [=](RawPeer& peer) {
    RawRequest request;
    if (!peer.read(request) || !peer.send(bytes)) return;
    if (!more.empty()) peer.sendForever(more);
    if (stalls) peer.stall();
  };
}

std::string redirect(const std::string& status, const std::string& to) {
  return answer(status, "moved", "Location: " + to + "\r\n");
}

// Redirects what asks for "/", and tells of the second request how it came: method and length of the body.
RawServer::Behaviour redirectsOnce(std::string status) {
  return [status = std::move(status)](RawPeer& peer) {
    RawRequest request;
    while (peer.read(request)) {
      const bool isFirst = request.head.find(" / HTTP") != std::string::npos;
      const std::string told = request.head.substr(0, 4) + (request.body.empty() ? "empty" : "whole");
      if (!peer.send(isFirst ? redirect(status, "/end") : answer("200 OK", told))) return;
    }
  };
}

RawServer::Behaviour redirectsAlways(std::string status, std::function<std::string(RawPeer&)> to) {
  return [=](RawPeer& peer) {
    RawRequest request;
    while (peer.read(request) && peer.send(redirect(status, to(peer)))) continue;
  };
}

const std::string head = "HTTP/1.1 200 OK\r\n";
const std::string chunked = head + "Transfer-Encoding: chunked\r\n\r\n";

std::vector<Row> unusualAnswers() {
  return {
      {"chunks with extensions and trailers", says(chunked + "2;x=\"y\"\r\nab\r\n0\r\nT: 1\r\n\r\n"), fine, u"ab"},
      {"ends by closing", says(head + "\r\nuntil the end"), fine, u"until the end"},
      {"tells to go on, again and again",
       says("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 100 Continue\r\n\r\n" + answer("200 OK", "x")), fine, u"x"},
      {"an error page", says(answer("500 Oops", "sorry")), fine, u"sorry", senseless},
      {"not UTF-8", says(answer("200 OK", "a\xFF\xE2\x82")), fine, u"a\xFFFD\xFFFD"},
      {"claims to be packed", says(answer("200 OK", "plain", "Content-Encoding: gzip\r\n")), fine, u"plain"},
      {"NUL bytes", says(answer("200 OK", "a\0b"s)), fine, Text(u"a\0b", 3)},
      {"moved, by another method", redirectsOnce("303 See Other"), fine, u"GET empty"},
      {"moved for good", redirectsOnce("301 Moved"), fine, u"GET empty"},
      {"redirect without a place", says(answer("302 Found", "where?")), fine, u"where?"},
      {"not changed", says("HTTP/1.1 304 Not Modified\r\n\r\n")},
  };
}

std::vector<Row> brokenAnswers() {
  std::string manyChunks;
  for (int i = 0; i < 1000; ++i) manyChunks += "3\r\nabc\r\n";
  const auto closes = [](RawPeer&) {};
  const auto resets = [](RawPeer& peer) {
    RawRequest request;
    peer.read(request);
    peer.reset();
  };
  return {
      {"closes at once", closes, lost},
      {"resets without a word", resets, lost},
      {"ends in the headers", says(head + "Content-Le"), lost},
      {"ends in the body", says(head + "Content-Length: 10\r\n\r\nabc"), lost},
      {"ends in a chunk", says(chunked + "a\r\nabc"), lost},
      {"a chunk's size is none", says(chunked + "size\r\nabc"), lost},
      {"a negative length", says(head + "Content-Length: -5\r\n\r\nabcde"), senseless},
      {"a length beyond all", says(head + "Content-Length: 99999999999999999999\r\n\r\nabc"), fine, u"abc"},
      {"noise", says("\x01\x02\x03\xFF\xFE noise\r\n\r\n"), senseless},
      {"no status", says("HTTP/1.1 OK\r\n\r\nx"), senseless},
      {"NUL in a header", says(head + "X: a\0b\r\n\r\nx"s), senseless},
      {"endless headers", says(head, "X-Header: once more\r\n"), tooMuch},
      {"one endless header", says(head + "X: ", std::string(1000, 'x')), tooMuch},
      {"tells to go on for ever", says("", "HTTP/1.1 100 Continue\r\n\r\n"), tooMuch},
      {"endless body", says(head + "\r\n", std::string(10000, 'x')), tooMuch},
      {"a huge length", says(head + "Content-Length: 9000000000000000000\r\n\r\n", std::string(10000, 'x')), tooMuch},
      {"endless trailers", says(chunked + "1\r\na\r\n0\r\n", "T: trailer\r\n"), tooMuch},
      {"an endless redirect", says("HTTP/1.1 302 Found\r\nLocation: /x\r\n\r\n", "moved"), tooManyRedirects},
      {"an endless redirect in chunks",
       says("HTTP/1.1 302 Found\r\nLocation: /x\r\nTransfer-Encoding: chunked\r\n\r\n", manyChunks), tooMuch},
  };
}

std::vector<Row> redirectsAstray() {
  const auto leadsTo = [](std::string to) {
    return redirectsAlways("302 Found", [to = std::move(to)](RawPeer&) { return to; });
  };
  const auto toItself = [](RawPeer& peer) { return peer.base() + "/"; };
  return {
      {"redirects to itself", redirectsAlways("302 Found", toItself), tooManyRedirects},
      {"redirects to itself with the body", redirectsAlways("307 Temporary", toItself), tooManyRedirects},
      {"redirects to ftp", leadsTo("ftp://127.0.0.1/x"), unsupported},
      {"redirects to a file", leadsTo("file:///etc/passwd"), unsupported},
      {"redirects to no protocol", leadsTo("javascript:alert(1)"), senseless},
      {"redirects to no address", leadsTo("http://[::1/"), NSURLErrorBadURL},
      {"redirects to a closed door", leadsTo(refusingBase()), NSURLErrorCannotConnectToHost},
      {"redirects to no host", leadsTo("http://name.invalid/"), NSURLErrorCannotFindHost},
      {"redirects where none is allowed",
       redirectsOnce("302 Found"),
       tooManyRedirects,
       u"",
       std::nullopt,
       {.redirects = 0}},
  };
}

std::vector<Row> slowAnswers() {
  const auto dripsForever = [](std::string bytes, std::string drops) {
    return [=](RawPeer& peer) {
      RawRequest request;
      if (!peer.read(request) || !peer.send(bytes)) return;
      while (peer.drip(drops, 20)) continue;
    };
  };
  const auto never = [](RawPeer& peer) { peer.stall(); };
  return {
      {"never reads", never, late, u"", late, impatient},
      {"never answers", says("", "", true), late, u"", late, impatient},
      {"stalls in the headers", says(head + "X: ", "", true), late, u"", late, impatient},
      {"stalls in the body", says(head + "Content-Length: 9\r\n\r\nabc", "", true), late, u"", late, impatient},
      {"drips headers for ever", dripsForever(head, "X: y\r\n"), late, u"", late, quick},
      {"drips a body for ever", dripsForever(head + "\r\n", "x"), late, u"", late, quick},
  };
}

struct Endings : QNHTTPPostDelegate {
  void postFinished(QNHTTPPost&) override { ++count; }
  void postFailed(QNHTTPPost&, const Ref<NSError>& withError) override {
    ++count;
    error = withError;
  }

  int count = 0;
  Ref<NSError> error;
};

struct MisbehavingServersTest : testing::Test {
  CapturedSystemLog log;
  Ref<NSDictionary> form = dictionaryOf({{u"name", box(u"Ann")}});

  void check(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
      SCOPED_TRACE(row.name);
      const RawServer server(row.behave);
      const Text address = textFromUTF8(server.base() + "/");
      checkPost(row, address);
      checkBackgroundPost(row, address);
      checkReading(row, address);
    }
  }

  void checkPost(const Row& row, TextView address) {
    QNHTTPPost post(address, nullptr);
    post.setLimits(row.limits);
    const auto body = post.post(form);
    const std::vector<Text> logged = log.take();
    if (row.code == fine) {
      EXPECT_EQ(body, row.body);
      EXPECT_TRUE(logged.empty());
      return;
    }
    EXPECT_EQ(body, std::nullopt);
    ASSERT_EQ(logged.size(), 1U);
    EXPECT_NE(logged[0].find(format(u"Post failed. Error: %ld, Description: ", row.code)), Text::npos)
        << utf8(logged[0]);
  }

  void checkBackgroundPost(const Row& row, TextView address) {
    Endings endings;
    QNHTTPPost post(address, &endings);
    post.setLimits(row.limits);
    post.postAndNotify(form);
    NSRunLoop::currentRunLoop().run();
    EXPECT_EQ(endings.count, 1);
    EXPECT_EQ(endings.error ? endings.error->code() : fine, row.code);
    EXPECT_TRUE(row.code != fine || post.response() == row.body) << utf8(post.response());
    log.take();
  }

  void checkReading(const Row& row, TextView address) {
    Ref<NSError> error;
    const Ref<NSData> data = dataWithContentsOfURL(NSURL::URLWithString(address), &error, row.limits);
    EXPECT_EQ(data == nullptr, error != nullptr);
    EXPECT_EQ(error ? error->code() : fine, row.readingCode.value_or(row.code)) << utf8(description(error));
  }
};

TEST_F(MisbehavingServersTest, UnusualAnswersAreAnswers) { check(unusualAnswers()); }
TEST_F(MisbehavingServersTest, BrokenOnesAreErrors) { check(brokenAnswers()); }
TEST_F(MisbehavingServersTest, RedirectsAreFollowedOnlySoFar) { check(redirectsAstray()); }

// All at once, since each takes its time; and one of each kind in the ways that wait.
TEST_F(MisbehavingServersTest, WhatIsTooSlowIsGivenUp) {
  const std::vector<Row> rows = slowAnswers();
  std::list<RawServer> servers;
  std::list<Endings> endings;
  std::list<QNHTTPPost> posts;
  for (const Row& row : rows) {
    QNHTTPPost& post =
        posts.emplace_back(textFromUTF8(servers.emplace_back(row.behave).base()), &endings.emplace_back());
    post.setLimits(row.limits);
    post.postAndNotify(form);
  }
  NSRunLoop::currentRunLoop().run();
  auto ending = endings.begin();
  for (const Row& row : rows) {
    EXPECT_EQ(ending->count, 1) << row.name;
    EXPECT_EQ(ending->error ? ending->error->code() : fine, late) << row.name;
    ++ending;
  }
  log.take();
  check({rows.front(), rows.back()});
}

TEST_F(MisbehavingServersTest, ConnectionsThatCannotBeMade) {
  const std::pair<std::string, std::int64_t> rows[] = {
      {refusingBase(), NSURLErrorCannotConnectToHost},
      {"http://name.invalid/", NSURLErrorCannotFindHost},
      {"ftp://127.0.0.1/", unsupported},
      {"http://127.0.0.1:99999/", NSURLErrorBadURL},
      {"http://[::1/", NSURLErrorBadURL},
      {"relative", NSURLErrorBadURL},
  };
  for (const auto& [address, code] : rows) {
    Ref<NSError> error;
    EXPECT_EQ(dataWithContentsOfURL(NSURL::URLWithString(textFromUTF8(address)), &error), nullptr);
    EXPECT_EQ(error->code(), code) << address;
  }
  EXPECT_EQ(dataWithContentsOfURL(nullptr), nullptr);
  const RawServer secretless([](RawPeer& peer) {
    if (peer.send("no secrets here\r\n")) peer.stall();
  });
  Ref<NSError> error;
  const Text secure = textFromUTF8("https" + secretless.base().substr(4));
  EXPECT_EQ(dataWithContentsOfURL(NSURL::URLWithString(secure), &error), nullptr);
  EXPECT_EQ(error->code(), NSURLErrorSecureConnectionFailed);
}

}  // namespace
