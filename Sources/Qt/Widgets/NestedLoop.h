#pragma once

#include <QEventLoop>

namespace kelvane {

// Lets Qt handle events within a call, until it is told to leave. Main thread only.
class NestedLoop {
 public:
  // True when it was left; false when the application was told to quit meanwhile. Where it had been told so before,
  // whoever waits now means to: it waits all the same, which QEventLoop would not.
  bool run();
  // Makes `run` return; the next one, where none runs. From within what it handles.
  void leave();

 private:
  QEventLoop myLoop;
  bool myIsLeft = false;
  // Whether the loop has handled anything.
  bool myHasRun = false;
};

}  // namespace kelvane
