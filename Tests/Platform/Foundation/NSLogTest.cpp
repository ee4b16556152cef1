#include <errno.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include "Platform/Foundation/NSLog.h"
#include "Support/Testing.h"

namespace {

TEST(NSLog, DefaultWritesALineToStandardError) {
  testing::internal::CaptureStderr();
  NSLog(u"%@ costs %d%%", Text(u"caf\xE9 \xD800"), 5);
  systemLog(u"100%d %@");
  const std::string output = testing::internal::GetCapturedStderr();

  const std::string place = std::string(program_invocation_short_name) + "[" + std::to_string(getpid()) + ":" +
                            std::to_string(syscall(SYS_gettid)) + "] ";
  EXPECT_THAT(output, MatchesRegex("([0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:]{8}\\.[0-9]{3} [^\n]*\n){2}"));
  EXPECT_EQ(output.substr(24, output.find('\n') - 23), place + "caf\xC3\xA9 \xEF\xBF\xBD costs 5%\n");
  EXPECT_THAT(output, EndsWith(place + "100%d %@\n")) << "a message is no format";

  tm local{};
  ASSERT_NE(strptime(output.c_str(), "%Y-%m-%d %H:%M:%S", &local), nullptr);
  local.tm_isdst = -1;
  EXPECT_NEAR(static_cast<double>(mktime(&local)), static_cast<double>(time(nullptr)), 5) << "local time";
}

TEST(NSLog, SinksAreReplacedAndHandedBack) {
  std::vector<Text> first;
  std::vector<Text> second;
  EXPECT_FALSE(setSystemLogSink([&](TextView message) { first.emplace_back(message); }))
      << "the default is an empty one";
  NSLog(u"%d", 1);
  const SystemLogSink before = setSystemLogSink([&](TextView message) {
    second.emplace_back(message);
    throw std::runtime_error("a sink in trouble");
  });
  NSLog(u"%d", 2);
  systemLog(u"3");
  EXPECT_TRUE(setSystemLogSink(before));
  systemLog(u"");
  setSystemLogSink(nullptr);
  testing::internal::CaptureStderr();
  systemLog(u"default again");
  EXPECT_THAT(testing::internal::GetCapturedStderr(), EndsWith("] default again\n"));
  EXPECT_THAT(first, ElementsAre(u"1", u""));
  EXPECT_THAT(second, ElementsAre(u"2", u"3"));
}

// Only the outer message goes to the sink, and a sink that is replaced while it runs lives until it returns.
TEST(NSLog, SinksMayLogAndReplaceThemselves) {
  std::vector<Text> messages;
  const Text name = u"a name that is kept in the sink";
  setSystemLogSink([&messages, name](TextView message) {
    setSystemLogSink(nullptr);
    systemLog(u"from within");
    messages.push_back(name + u": " + Text(message));
  });
  testing::internal::CaptureStderr();
  systemLog(u"outer");
  systemLog(u"later");
  EXPECT_THAT(testing::internal::GetCapturedStderr(), MatchesRegex(".*] from within\n.*] later\n"));
  EXPECT_THAT(messages, ElementsAre(name + u": outer"));
}

}  // namespace
