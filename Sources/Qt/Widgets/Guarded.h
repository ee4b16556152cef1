#pragma once

#include <exception>
#include <utility>

namespace kelvane {

// Writes to the log what was thrown, with where.
void reportThrown(const char* where, const std::exception_ptr& thrown);

// Makes a call into the host's code from one of Qt's, which has no way for exceptions: they are logged and end here.
// False when there was one.
template <class Call>
bool guarded(const char* where, Call call) {
  try {
    call();
    return true;
  } catch (...) {
    reportThrown(where, std::current_exception());
    return false;
  }
}

// The same for what Qt asks again and again, as long as it paints: only the first exception is logged.
class GuardedOnce {
 public:
  template <class Call>
  void operator()(const char* where, Call call) {
    try {
      call();
    } catch (...) {
      if (!std::exchange(myHasReported, true)) reportThrown(where, std::current_exception());
    }
  }

 private:
  bool myHasReported = false;
};

}  // namespace kelvane
