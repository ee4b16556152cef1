#include <mutex>
#include <utility>

#include "Support/RawServer.h"
#include "Support/Testing.h"
#include "Utilities/QNEnvironment.h"

namespace {

std::string plist(const std::string& root) { return "<plist version=\"1.0\">" + root + "</plist>"; }

struct SitemapTest : testing::Test {
  // What the server gives: to each request the next one, and the last one again and again.
  void answerWith(std::vector<std::string> contents) {
    const std::lock_guard lock(mutex);
    answers = std::move(contents);
  }
  std::vector<std::string> requests() {
    const std::lock_guard lock(mutex);
    return heads;
  }
  std::string answerTo(const RawRequest& request) {
    const std::lock_guard lock(mutex);
    heads.push_back(request.head);
    const std::string answer = answers.front();
    if (answers.size() > 1) answers.erase(answers.begin());
    return answer;
  }

  std::mutex mutex;  // each connection has a thread
  std::vector<std::string> answers;
  std::vector<std::string> heads;
  RawServer server{[this](RawPeer& peer) {
    RawRequest request;
    while (peer.read(request)) peer.send(answerTo(request));
  }};
  CapturedSystemLog log;
  QNEnvironment environment;
  const Ref<NSObject> fallback = box(u"fallback");
};

TEST_F(SitemapTest, LooksKeysUpInWhatItFetchesOnce) {
  answerWith({answer("500 Oops", plist("<dict><key>home</key><string>wrong</string></dict>")),
              answer("200 OK", plist("<array/>")), answer("200 OK", "no property list"),
              answer("200 OK", plist(std::string(7 * 1000, 'x'))), "nonsense",
              answer("200 OK", plist("<dict><key>home</key><string>http://h/</string><key>empty</key><string/>"
                                     "<key>number</key><integer>3</integer></dict>"))});
  environment.setAppName(u"My App");
  EXPECT_EQ(environment.linkFromSitemapForKey(u"home", fallback), u"fallback") << "no server";
  environment.setSitemapServer(textFromUTF8(server.base().substr(7)));
  EXPECT_EQ(environment.linkFromSitemapForKey(std::nullopt, fallback), std::nullopt);
  EXPECT_TRUE(requests().empty());
  for (int i = 0; i < 5; ++i) EXPECT_EQ(environment.linkFromSitemapForKey(u"home", fallback), u"fallback") << i;
  const std::tuple<Text, Ref<NSObject>, std::optional<Text>> rows[] = {
      {u"home", fallback, u"http://h/"},   {u"empty", fallback, u"fallback"},  {u"missing", fallback, u"fallback"},
      {u"number", fallback, std::nullopt}, {u"missing", box(3), std::nullopt}, {u"empty", nullptr, std::nullopt}};
  for (const auto& [key, defaultTo, link] : rows) EXPECT_EQ(environment.linkFromSitemapForKey(key, defaultTo), link);
  EXPECT_EQ(environment.linkFromSitemapForKey(u"missing"), std::nullopt);
  EXPECT_EQ(QNEnvironment().linkFromSitemapForKey(u"home"), u"http://h/") << "of the process";
  ASSERT_EQ(requests().size(), 6U);
  EXPECT_THAT(requests()[0], StartsWith("GET /sitemap/application.xml?product=MyApp&version=(null)&revision=(null) "));
  EXPECT_TRUE(log.take().empty());
}

TEST_F(SitemapTest, HugeAndSlowOnesGiveTheDefault) {
  const RawServer slow([&](RawPeer& peer) { peer.stall(); });
  answerWith({answer("200 OK", plist("<string>" + std::string(200000, 'x') + "</string>"))});
  const URLLimits patient = {.idleTime = std::chrono::seconds(1), .receivedBytes = 5U << 20U};
  const std::pair<std::string, URLLimits> rows[] = {
      {slow.base(), patient},      {server.base(), patient}, {server.base(), {.receivedBytes = 100000}},
      {"http://no host", patient}, {"http://%", patient},    {"http://", patient}};
  for (const auto& [base, limits] : rows) {
    environment.setSitemapLimits(limits);
    environment.setSitemapServer(textFromUTF8(base.substr(7)));
    EXPECT_EQ(environment.linkFromSitemapForKey(u"home", fallback), u"fallback") << base;
  }
  EXPECT_EQ(requests().size(), 2U);
  EXPECT_TRUE(log.take().empty());
}

}  // namespace
