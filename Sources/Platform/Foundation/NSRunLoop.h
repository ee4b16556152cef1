#pragma once

#include <memory>

#include "Platform/Foundation/EventLoop.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSDate.h"

namespace kelvane {

// The loop of a thread, on which background work calls back. Each thread has one; the library runs none of them: a host
// does, where it has time to wait.
//
// ```cpp
// post.postAndNotify(form);
// NSRunLoop::currentRunLoop().run();  // returns when the post, and whatever else was going on, has come to its end
// ```
//
// A host with an event loop of its own gives that to `setEventLoop`, and need not run this one.
//
// For its own thread, except `performBlock` and `stop`, which any thread may call as long as the loop's thread lives.
class KELVANE_EXPORT NSRunLoop {
 public:
  // currentRunLoop  The calling thread's loop, which lives as long as the thread.
  static NSRunLoop& currentRunLoop();

  NSRunLoop();
  ~NSRunLoop();
  NSRunLoop(const NSRunLoop&) = delete;
  NSRunLoop& operator=(const NSRunLoop&) = delete;

  // run  Waits and calls until nothing is left that could happen, or `stop` is called. What a call throws comes out
  // here, and the loop can be run again.
  void run();
  // runUntilDate:  The same, but at most until that date. A loop may be run from within a call.
  void runUntilDate(const NSDate& limitDate);
  // runMode:beforeDate:  One turn, which waits at most until that date; false when there is nothing to wait for.
  bool runBeforeDate(const NSDate& limitDate);
  // Ends the innermost `run` or `runUntilDate` after the turn that it is in; where none runs, the next one before its
  // first.
  void stop();

  // performBlock:  Calls `block` once, soon, on the loop's thread; nothing runs it while nobody runs the loop.
  void performBlock(std::function<void()> block) { myEventLoop->callSoon(std::move(block)); }

  // What does the waiting.
  EventLoop& eventLoop() { return *myEventLoop; }
  // Lets the host's own loop do it. At the thread's start: what was scheduled before is lost.
  void setEventLoop(std::unique_ptr<EventLoop> eventLoop);

 private:
  void runUntil(EventLoop::Clock::time_point limit);

  std::unique_ptr<EventLoop> myEventLoop;
  bool myIsToStop = false;
};

}  // namespace kelvane
