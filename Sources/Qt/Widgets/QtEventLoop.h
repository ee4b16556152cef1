#pragma once

#include <exception>
#include <map>
#include <memory>

#include "Platform/Foundation/PollLoop.h"

class QSocketNotifier;

namespace kelvane {

class NestedLoop;

// The main thread's event loop, driven by Qt's: while Qt handles events, in QApplication::exec(), in a dialog, or in
// `wait`, the calls are made. What is watched and when calls are due a PollLoop keeps; Qt wakes it.
//
// - `wait` handles Qt's events too, so that windows live meanwhile. It returns false when the application is told to
//   quit, so that whoever runs the loop comes to an end; what is left stays, and may be waited for after that.
// - What a call throws comes out of the innermost `wait`. When there is none, Qt has no place for it: it is logged.
// - When the application goes, the loop goes on by itself, without Qt: nothing that was scheduled is lost, and a host
//   may still run it to the end.
class KELVANE_EXPORT QtEventLoop final : public EventLoop {
 public:
  QtEventLoop();
  ~QtEventLoop() override;

  // Lets Qt drive it, and no longer. Descriptors and timers stay.
  void attach();
  void detach();

  void watch(int descriptor, unsigned events, ReadyCall ready) override;
  void unwatch(int descriptor) override;
  Timer callAt(Clock::time_point time, Call call) override;
  void cancel(Timer timer) override;
  void callSoon(Call call) override;
  bool wait(Clock::time_point limit) override;

 private:
  // What wakes the loop when a descriptor is ready; null where nothing does.
  struct Watched {
    unsigned events = 0;
    QSocketNotifier* readableRef = nullptr;
    QSocketNotifier* writableRef = nullptr;
  };
  struct Drive;

  void notify(int descriptor, Watched& watched);
  // Makes the calls that are due.
  void turn();
  void setAlarm();
  void keepThrown(std::exception_ptr thrown);

  PollLoop myCalls;
  std::map<int, Watched> myWatched;
  // Null while Qt does not drive the loop.
  std::unique_ptr<Drive> myDrive;
  // The innermost `wait`; null when there is none.
  NestedLoop* myWaitRef = nullptr;
  std::exception_ptr myThrown;
};

}  // namespace kelvane
