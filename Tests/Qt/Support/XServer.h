#pragma once

#include <QRect>
#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "Qt/Support/BackgroundProcess.h"

namespace kelvane {

// An X server of the test's own, which shows its screen to nobody, with a window manager. While it lives it is the
// process's display. What goes wrong at its start is an exception.
class XServer {
 public:
  XServer();

 private:
  std::optional<BackgroundProcess> myServer;
  std::optional<BackgroundProcess> myWindowManager;
};

// What another program hears from the X server: a window's outer frame, as Qt counts, and the application's windows
// from front to back.
QRect frameOnServer(const QWidget& window);
std::vector<WId> windowsOnServer();

// Lets Qt's events happen until it holds, or until the time is over; returns whether it does.
bool comesTrue(const std::function<bool()>& condition, int milliseconds = 5000);
// Shows the window and waits until the X server does.
void showOnServer(QWidget& window);

}  // namespace kelvane
