#include <unistd.h>

#include <thread>

#include "Platform/Foundation/NSRunLoop.h"
#include "Support/Testing.h"

namespace {

using namespace std::chrono_literals;
using Clock = EventLoop::Clock;

struct NSRunLoopTest : testing::Test {
  NSRunLoopTest() {
    EXPECT_EQ(pipe(one), 0);
    EXPECT_EQ(pipe(other), 0);
  }
  ~NSRunLoopTest() override {
    for (const int end : {one[0], one[1], other[0], other[1]}) close(end);
  }

  std::function<void()> note(char what) {
    return [this, what] { heard += what; };
  }

  NSRunLoop& loop = NSRunLoop::currentRunLoop();
  EventLoop& events = loop.eventLoop();
  std::string heard;
  int one[2];
  int other[2];
};

TEST_F(NSRunLoopTest, CallsInOrderAndReturnsWhenNothingIsLeft) {
  EXPECT_FALSE(events.wait(Clock::time_point::max()));
  loop.run();
  const auto now = Clock::now();
  events.callAt(now + 20ms, note('4'));
  events.callAt(now + 10ms, note('3'));
  events.cancel(events.callAt(now, note('x')));
  loop.performBlock(note('1'));
  loop.performBlock([this] {
    note('2')();
    loop.performBlock(note('6'));
    events.wait(Clock::time_point::max());
  });
  loop.performBlock(note('5'));
  loop.run();
  EXPECT_EQ(heard, "125634");
  loop.performBlock([] { throw std::runtime_error("out"); });
  loop.performBlock(note('7'));
  EXPECT_THROW(loop.run(), std::runtime_error);
  loop.run();
  EXPECT_EQ(heard, "1256347");
}

TEST_F(NSRunLoopTest, WatchesDescriptors) {
  const auto take = [this](int end, char what) {
    return [this, end, what](unsigned happened) {
      EXPECT_EQ(happened, EventLoop::Readable);
      char byte = 0;
      if (read(end, &byte, 1) != 1) byte = '-';
      heard += {what, byte};
      if (byte == '-') events.unwatch(end);
    };
  };
  events.watch(one[0], EventLoop::Writable, [](unsigned) { FAIL() << "replaced below"; });
  events.watch(one[0], EventLoop::Readable, take(one[0], '1'));
  events.watch(one[1], EventLoop::Writable, [this](unsigned happened) {
    EXPECT_EQ(happened, EventLoop::Writable);
    EXPECT_EQ(write(one[1], "ab", 2), 2);
    events.unwatch(one[1]);
    close(std::exchange(one[1], -1));
  });
  loop.run();
  EXPECT_EQ(heard, "1a1b1-");
}

TEST_F(NSRunLoopTest, OfTwoThatAreReadyOneMayEndTheOther) {
  int calls = 0;
  for (const auto& pair : {one, other}) {
    EXPECT_EQ(write(pair[1], "x", 1), 1);
    events.watch(pair[0], EventLoop::Readable, [&](unsigned) {
      ++calls;
      events.unwatch(one[0]);
      events.unwatch(other[0]);
    });
  }
  loop.run();
  EXPECT_EQ(calls, 1);
}

TEST_F(NSRunLoopTest, TimersThatSetThemselvesAgainLetOthersIn) {
  std::function<void()> again = [&] {
    heard += 't';
    if (heard.size() < 1000) events.callAt(Clock::time_point(), again);
  };
  events.callAt(Clock::time_point(), again);
  events.watch(one[1], EventLoop::Writable, [&](unsigned) {
    heard += 'w';
    events.unwatch(one[1]);
  });
  loop.run();
  EXPECT_EQ(heard.find('w'), 0U);
  EXPECT_EQ(heard.size(), 1000U);
}

TEST_F(NSRunLoopTest, OtherThreadsWakeAndStopIt) {
  events.watch(one[0], EventLoop::Readable, [](unsigned) { FAIL(); });
  std::thread thread([&] {
    EXPECT_NE(&NSRunLoop::currentRunLoop(), &loop);
    loop.performBlock(note('a'));
    loop.stop();
  });
  loop.run();
  thread.join();
  EXPECT_EQ(heard, "a");
  loop.runUntilDate(NSDate::dateWithTimeIntervalSince1970(0));
  loop.runUntilDate(NSDate::dateWithTimeIntervalSinceReferenceDate(NaN));
  events.unwatch(one[0]);
}

}  // namespace
