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
  // The same without method and line, for those of a logger: u"WARN - message".
  std::vector<Text> takeWithoutPlaces() {
    std::vector<Text> messages = take();
    for (Text& message : messages) {
      const std::size_t place = message.find(u' ');
      message.erase(place, message.find(u" - ") - place);
    }
    return messages;
  }

 private:
  std::vector<Text> myMessages;
};

}  // namespace kelvane
