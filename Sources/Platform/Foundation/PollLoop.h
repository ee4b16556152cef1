#pragma once

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "Platform/Foundation/EventLoop.h"

namespace kelvane {

// An event loop on the system's poll: what a thread has that brings no loop of its own. A turn costs time linear in the
// number of watched descriptors.
//
// Another loop may drive this one: it waits for the watched descriptors, for `wakeUpDescriptor` and for `nextTime`, and
// has a turn made that does not wait itself when one of them has come.
class KELVANE_EXPORT PollLoop final : public EventLoop {
 public:
  PollLoop();
  ~PollLoop() override;

  void watch(int descriptor, unsigned events, ReadyCall ready) override;
  void unwatch(int descriptor) override;
  Timer callAt(Clock::time_point time, Call call) override;
  void cancel(Timer timer) override;
  void callSoon(Call call) override;
  bool wait(Clock::time_point limit) override;

  // Readable when there are calls to be made soon.
  int wakeUpDescriptor() const { return myWakeUp; }
  // When the first timer is due; nothing when there is none.
  std::optional<Clock::time_point> nextTime() const;
  // Whether there is nothing that could ever happen.
  bool isIdle() const;

 private:
  struct Watch {
    unsigned events = 0;
    // Tells the watch from an older one of the same descriptor, whose events may still be on their way.
    std::uint64_t number = 0;
    std::shared_ptr<ReadyCall> ready;
  };
  struct Happened;

  void wakeUp() const;
  bool callThoseOfSoon();
  std::vector<Happened> waitForDescriptors(Clock::time_point limit);
  void callTimers();

  std::uint64_t myLastNumber = 0;
  std::map<int, Watch> myWatches;
  std::map<std::pair<Clock::time_point, Timer>, Call> myTimers;
  std::map<Timer, Clock::time_point> myTimes;
  // Readable as soon as another thread has asked for a call.
  int myWakeUp;
  mutable std::mutex mySoonMutex;
  std::deque<Call> mySoon;
};

}  // namespace kelvane
