#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

#include "Platform/Foundation/Export.h"

namespace kelvane {

// What the library needs from a loop that waits for events: to watch descriptors, to be called at a time, to be called
// soon. A host whose thread has a loop of its own (a toolkit's, say) implements this on it and gives it to the thread's
// NSRunLoop; everywhere else NSRunLoop brings its own.
//
// For the thread that the loop belongs to, except where said otherwise. Calls are made on that thread while it waits,
// never from within the functions below; a call may use all of them, and wait itself.
class KELVANE_EXPORT EventLoop {
 public:
  using Clock = std::chrono::steady_clock;
  using Call = std::function<void()>;
  // Numbers of timers, none of which is 0 or comes twice.
  using Timer = std::uint64_t;

  // What a descriptor can be ready for, one bit each.
  static constexpr unsigned Readable = 1;
  static constexpr unsigned Writable = 2;
  using ReadyCall = std::function<void(unsigned events)>;

  EventLoop() = default;
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;
  virtual ~EventLoop();

  // Calls `ready` again and again as long as the descriptor is ready for some of `events`, with those that it is ready
  // for; with all of them when it is broken or closed. Replaces what was said about the descriptor before.
  virtual void watch(int descriptor, unsigned events, ReadyCall ready) = 0;
  // Ends that. Nothing for a descriptor that is not watched. No call comes afterwards. Call it before the descriptor is
  // closed.
  virtual void unwatch(int descriptor) = 0;

  // Calls `call` once, at `time` or as soon afterwards as the loop gets to it; at the next turn for a time that is
  // past.
  virtual Timer callAt(Clock::time_point time, Call call) = 0;
  // Takes that back. Nothing when it has been called.
  virtual void cancel(Timer timer) = 0;

  // Calls `call` once at the next turn, in the order in which these came. Any thread may ask for it, and wakes the
  // loop.
  virtual void callSoon(Call call) = 0;

  // One turn: waits until there is something to call, or until `limit`, and makes the calls. False, at once, when there
  // is nothing that could ever happen: no descriptor watched, no timer, no call.
  virtual bool wait(Clock::time_point limit) = 0;
};

}  // namespace kelvane
