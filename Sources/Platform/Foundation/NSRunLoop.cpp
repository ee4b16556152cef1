#include "Platform/Foundation/NSRunLoop.h"

#include <algorithm>
#include <utility>

#include "Platform/Foundation/PollLoop.h"

namespace kelvane {
namespace {

using Clock = EventLoop::Clock;

// A date counts from a clock that may be set, and waiting goes by one that is not.
Clock::time_point timePointOf(const NSDate& date) {
  // A year at a time is enough, and cannot overflow.
  constexpr double longest = 366.0 * 86400;
  const double wait = date.timeIntervalSinceReferenceDate() - NSDate().timeIntervalSinceReferenceDate();
  // "Not greater" takes NaN too.
  if (!(wait > 0)) return Clock::now();
  const std::chrono::duration<double> seconds(std::min(wait, longest));
  return Clock::now() + std::chrono::ceil<Clock::duration>(seconds);
}

}  // namespace

NSRunLoop& NSRunLoop::currentRunLoop() {
  thread_local NSRunLoop loop;
  return loop;
}

NSRunLoop::NSRunLoop() : myEventLoop(std::make_unique<PollLoop>()) {}

NSRunLoop::~NSRunLoop() = default;

void NSRunLoop::run() { runUntil(Clock::time_point::max()); }

void NSRunLoop::runUntilDate(const NSDate& limitDate) { runUntil(timePointOf(limitDate)); }

bool NSRunLoop::runBeforeDate(const NSDate& limitDate) { return myEventLoop->wait(timePointOf(limitDate)); }

void NSRunLoop::stop() {
  performBlock([this] { myIsToStop = true; });
}

void NSRunLoop::setEventLoop(std::unique_ptr<EventLoop> eventLoop) { myEventLoop = std::move(eventLoop); }

void NSRunLoop::runUntil(Clock::time_point limit) {
  while (!std::exchange(myIsToStop, false)) {
    if (!myEventLoop->wait(limit) || Clock::now() >= limit) return;
  }
}

}  // namespace kelvane
