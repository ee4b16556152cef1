#pragma once

#include <utility>
#include <vector>

#include "Platform/Foundation/NSLog.h"

namespace kelvane {

// Collects what goes to the system log for as long as it lives.
class CapturedSystemLog {
 public:
  CapturedSystemLog() {
    setSystemLogSink([this](TextView message) { myMessages.emplace_back(message); });
  }
  ~CapturedSystemLog() { setSystemLogSink(nullptr); }
  CapturedSystemLog(const CapturedSystemLog&) = delete;
  CapturedSystemLog& operator=(const CapturedSystemLog&) = delete;

  // The messages so far, which are forgotten.
  std::vector<Text> take() { return std::exchange(myMessages, {}); }

 private:
  std::vector<Text> myMessages;
};

}  // namespace kelvane
