#pragma once

#include <QTimer>
#include <chrono>
#include <functional>
#include <utility>

namespace kelvane {

// Acts as a user who sees to it again and again, while somebody else waits.
class SyntheticUser {
 public:
  explicit SyntheticUser(std::function<void()> act) {
    QObject::connect(&myTimer, &QTimer::timeout, std::move(act));
    myTimer.start(std::chrono::milliseconds(1));
  }

 private:
  QTimer myTimer;
};

}  // namespace kelvane
