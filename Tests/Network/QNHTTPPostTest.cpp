#include <sys/resource.h>
#include <unistd.h>

#include <thread>

#include "Network/QNHTTPPost.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSRunLoop.h"
#include "Platform/Foundation/NSURLError.h"
#include "Support/Process.h"
#include "Support/RawServer.h"
#include "Support/Testing.h"

namespace {

using namespace std::string_literals;

// A multipart parser that is not ours, which prints a line for each part and writes its bytes to a file.
constexpr const char* judge = R"(
import email.parser, email.policy, os, sys
os.chdir(sys.argv[1])
head, _, body = open('request', 'rb').read().partition(b'\r\n\r\n')
kind = [line for line in head.split(b'\r\n') if line.lower().startswith(b'content-type:')][0]
message = email.parser.BytesParser(policy=email.policy.HTTP).parsebytes(kind + b'\r\n\r\n' + body)
assert message.is_multipart() and not message.defects, message.defects
for part in message.iter_parts():
    name = part.get_param('name', header='content-disposition')
    print(name, part.get_filename(), part.get_content_type())
    open('part-' + name, 'wb').write(part.get_payload(decode=True) or b'')
)";

struct CustomURL : NSURL {
  explicit CustomURL(const NSURL& url) : NSURL(url) {}
};

struct Recorder : QNHTTPPostDelegate {
  void postStarted(QNHTTPPost& post) override {
    sent = 0;
    note("started", post);
  }
  void postProgressed(QNHTTPPost&, std::uint64_t sentBytes, std::uint64_t bytesToSend) override {
    EXPECT_TRUE(sentBytes > sent && sentBytes <= bytesToSend);
    sent = sentBytes;
  }
  void postFinished(QNHTTPPost& post) override { note("finished", post); }
  void postFailed(QNHTTPPost& post, const Ref<NSError>& withError) override {
    error = withError;
    note("failed", post);
  }

  std::vector<std::string> heard;
  std::uint64_t sent = 0;
  Ref<NSError> error;
  std::function<void(const std::string&, QNHTTPPost&)> then;

  void note(const std::string& what, QNHTTPPost& post) {
    heard.push_back(what);
    if (then) then(what, post);
  }
};

struct QNHTTPPostTest : testing::Test {
  Ref<NSURL> file(const std::string& name, std::string_view bytes) {
    folder.write(name, bytes);
    return NSURL::fileURLWithPath(folder.text(name));
  }

  RawServer keeping{[this](RawPeer& peer) {
    RawRequest request;
    while (peer.read(request)) {
      std::unique_lock lock(mutex);
      requests.push_back(request);
      lock.unlock();
      if (!peer.send(answer("200 OK", "got " + std::to_string(request.body.size())))) return;
    }
  }};
  Text address = textFromUTF8(keeping.base() + "/feedback?x=1");
  std::mutex mutex;
  std::vector<RawRequest> requests;
  TemporaryFolder folder;
  CapturedSystemLog log;
  Recorder recorder;
};

TEST_F(QNHTTPPostTest, WritesTheFormAsBytes) {
  const QNHTTPPost post(u"", nullptr);
  const auto bytes = [&](std::initializer_list<NSDictionary::Entries::value_type> fields) {
    const auto data = post.generateFormData(dictionaryOf(fields), u"B\xE9");
    return std::string(data->bytes().begin(), data->bytes().end());
  };
  const auto page = NSURL::URLWithString(u"http://example.org/x");
  const std::string type = "\r\nContent-Type: application/octet-stream\r\n\r\n";
  const std::string field = "--B\xC3\xA9\r\nContent-Disposition: form-data; name=\"a\"";
  const std::string end = "--B\xC3\xA9--\r\n";
  EXPECT_EQ(bytes({}), end);
  EXPECT_EQ(bytes({{u"a", box(u"\x20AC\r\n\"")}}), field + "\r\n\r\n\xE2\x82\xAC\r\n\"\r\n" + end);
  EXPECT_EQ(bytes({{u"a", page}}), "--B\xC3\xA9\r\n\r\n" + end);
  EXPECT_EQ(bytes({{u"a", std::make_shared<CustomURL>(*page)}}), field + "\r\n\r\nhttp://example.org/x\r\n" + end);
  EXPECT_EQ(bytes({{u"a", file("x y.bin", "1\0\r\n2"s)}}),
            field + "; filename=\"x y.bin\"" + type + "1\0\r\n2\r\n"s + end);
  EXPECT_EQ(bytes({{u"a", file("e", "")}}), field + "; filename=\"e\"" + type + "\r\n" + end);
  EXPECT_EQ(bytes({{u"a", NSURL::fileURLWithPath(u"/proc/sys/kernel/ostype")}}),
            field + "; filename=\"ostype\"" + type + "Linux\n\r\n" + end);
  EXPECT_EQ(bytes({{u"a", NSURL::fileURLWithPath(u"/missing/m")}}), field + "; filename=\"m\"" + type + "\r\n" + end);
  EXPECT_EQ(post.generateFormData(nullptr, u"")->length(), 6U);
}

TEST_F(QNHTTPPostTest, OthersReadWhatIsSent) {
  std::string long_;
  for (unsigned i = 0; i < 300000; ++i) long_ += static_cast<char>(i * i / 7);
  const auto form = dictionaryOf({{u"b", box(u"gr\xFC\xDF\r\n--x")},
                                  {u"f", file("data", long_)},
                                  {u"none", file("empty", "")},
                                  {u"null", NSNull::null()}});
  QNHTTPPost post(address, &recorder);
  const auto first = post.post(form);
  EXPECT_TRUE(recorder.heard.empty() && post.response().empty());
  post.postAndNotify(form);
  EXPECT_THAT(recorder.heard, ElementsAre("started"));
  NSRunLoop::currentRunLoop().run();
  EXPECT_THAT(recorder.heard, ElementsAre("started", "finished"));
  EXPECT_EQ(post.response(), first);
  EXPECT_GT(recorder.sent, 300000U);
  ASSERT_EQ(requests.size(), 2U);
  for (const RawRequest& request : requests) {
    EXPECT_THAT(request.head, StartsWith("POST /feedback?x=1 HTTP/1.1\r\n"));
    EXPECT_THAT(request.head, Not(HasSubstr("Expect")));
    folder.write("request", request.head + request.body);
    const auto judged = runProcess({"/usr/bin/env", "python3", "-c", judge, folder.path()});
    EXPECT_EQ(judged.err, "");
    EXPECT_EQ(judged.out,
              "b None text/plain\nf data application/octet-stream\nnone empty application/octet-stream\n"
              "null None text/plain\n");
    const std::pair<const char*, std::string> parts[] = {
        {"b", "gr\xC3\xBC\xC3\x9F\r\n--x"}, {"f", long_}, {"none", ""}, {"null", "<null>"}};
    for (const auto& [name, bytes] : parts) EXPECT_TRUE(folder.bytes(std::string("part-") + name) == bytes) << name;
  }
  EXPECT_THAT(utf8(log.take().at(0)), HasSubstr("INFO -[QNHTTPPost postAndNotify:]:"));
  post.postAndNotify(nullptr);
  NSRunLoop::currentRunLoop().run();
  const std::string size = std::to_string(requests.at(2).body.size());
  EXPECT_EQ(utf8(post.response()), utf8(*first) + "got " + size);
  EXPECT_THAT(utf8(log.take().at(0)), EndsWith("Posting " + size + " bytes to " + utf8(address)));
  EXPECT_EQ(keeping.connections(), 2) << "one for each way";
}

TEST_F(QNHTTPPostTest, AddressesThatCannotBeUsedFailAtOnce) {
  for (const std::optional<TextView> target :
       {std::optional<TextView>(), std::optional<TextView>(u"http://h:99999/"), std::optional<TextView>(u"x")}) {
    Recorder one;
    QNHTTPPost post(target, &one);
    post.postAndNotify(nullptr);
    EXPECT_THAT(one.heard, ElementsAre("failed"));
    EXPECT_EQ(one.error->domain(), u"Failed to establish connection");
    EXPECT_EQ(post.post(nullptr), std::nullopt);
  }
}

// Whatever a delegate does to its post while it is called, it hears no more than it should.
TEST_F(QNHTTPPostTest, PostsMayBeCancelledAndDestroyedAtAnyTime) {
  for (const std::string moment : {"started", "finished", "failed"}) {
    for (const bool destroys : {false, true}) {
      Recorder one;
      auto post = std::make_unique<QNHTTPPost>(
          moment == "failed" ? TextView(u"http://name.invalid/") : TextView(address), &one);
      one.then = [&](const std::string& what, QNHTTPPost& itself) {
        if (what != moment) return;
        if (destroys)
          post.reset();
        else
          itself.cancel();
      };
      post->postAndNotify(nullptr);
      NSRunLoop::currentRunLoop().run();
      EXPECT_EQ(one.heard.back(), moment);
      EXPECT_EQ(one.heard.size(), moment == "started" ? 1U : 2U);
    }
  }
  QNHTTPPost twice(address, &recorder);
  recorder.then = [&, again = true](const std::string& what, QNHTTPPost& itself) mutable {
    if (what == "finished" && std::exchange(again, false)) itself.postAndNotify(nullptr);
  };
  twice.postAndNotify(nullptr);
  twice.postAndNotify(nullptr);
  NSRunLoop::currentRunLoop().run();
  EXPECT_THAT(recorder.heard, ElementsAre("started", "started", "finished", "started", "finished"));
}

TEST_F(QNHTTPPostTest, FilesKeepTheLengthThatTheyHadAtTheStart) {
  const std::string path = folder.path("changing");
  const auto form = dictionaryOf({{u"f", file("changing", std::string(1000, 'x'))}});
  const std::pair<std::size_t, const char*> rows[] = {{2000, "finished"}, {10, "failed"}};
  for (const auto& [size, ending] : rows) {
    fs::resize_file(path, 1000);
    Recorder one;
    QNHTTPPost post(address, &one);
    post.postAndNotify(form);
    fs::resize_file(path, size);
    NSRunLoop::currentRunLoop().run();
    EXPECT_THAT(one.heard, ElementsAre("started", ending)) << size;
    EXPECT_TRUE(!one.error || one.error->code() == NSURLErrorRequestBodyStreamExhausted);
  }
  EXPECT_THAT(requests.at(0).body, HasSubstr("\r\n\r\n" + std::string(1000, 'x') + "\r\n--"));
}

// A body that is sent once more, since the server has moved, or has closed the connection that was kept.
TEST_F(QNHTTPPostTest, FilesAreSentOnceMoreWhereTheServerWantsIt) {
  std::vector<RawRequest> seen;
  const RawServer moving([&](RawPeer& peer) {
    RawRequest request;
    while (peer.read(request)) {
      seen.push_back(request);
      const bool isFirst = request.head.find(" / ") != std::string::npos;
      peer.send(isFirst ? answer("308 Moved", "", "Location: /there\r\n") : answer("200 OK", "there"));
    }
  });
  QNHTTPPost post(textFromUTF8(moving.base() + "/"), nullptr);
  const auto form = dictionaryOf({{u"f", file("f", std::string(300000, 'y'))}});
  for (std::size_t round = 1; round <= 3; ++round) {
    EXPECT_EQ(post.post(form), u"there");
    ASSERT_EQ(seen.size(), 2 * round);
    EXPECT_EQ(seen[2 * round - 1].body, seen[2 * round - 2].body);
    EXPECT_GT(seen.back().body.size(), 300000U);
  }
}

TEST_F(QNHTTPPostTest, HugeFilesTakeLittleMemory) {
  const auto hole = file("hole", "");
  fs::resize_file(folder.path("hole"), std::uintmax_t{1} << 30U);
  const RawServer discarding([](RawPeer& peer) {
    RawRequest request;
    std::uint64_t size = 0;
    if (peer.read(request, &size)) peer.send(answer("200 OK", std::to_string(size >> 20U)));
  });
  rusage before = {}, after = {};
  getrusage(RUSAGE_SELF, &before);
  QNHTTPPost post(textFromUTF8(discarding.base()), nullptr);
  EXPECT_EQ(post.post(dictionaryOf({{u"f", hole}})), u"1024");
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 32 << 10);
}

TEST_F(QNHTTPPostTest, EachThreadPostsOnItsOwnLoop) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&, i] {
      const auto form = dictionaryOf({{u"thread", box(i)}, {u"f", NSURL::fileURLWithPath(u"/etc/passwd")}});
      Recorder one;
      for (std::size_t round = 1; round <= 5; ++round) {
        QNHTTPPost post(address, &one);
        const auto thread = std::this_thread::get_id();
        one.then = [thread](const std::string&, QNHTTPPost&) { EXPECT_EQ(std::this_thread::get_id(), thread); };
        EXPECT_TRUE(post.post(form));
        post.postAndNotify(form);
        NSRunLoop::currentRunLoop().run();
        EXPECT_EQ(one.heard.size(), 2 * round);
        EXPECT_EQ(one.heard.back(), "finished");
      }
      // A thread that ends in the midst of a post drops it.
      Recorder never;
      QNHTTPPost dropped(address, &never);
      dropped.postAndNotify(form);
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(requests.size(), 40U);
}

}  // namespace
