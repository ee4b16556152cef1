#pragma once

#include <exception>

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

}  // namespace kelvane
