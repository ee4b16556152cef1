#pragma once

#include <sys/types.h>

#include <QRect>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kelvane::test {

// An X server of the test's own, which shows its screen to nobody, with a window manager. While it lives it is the
// process's display. What goes wrong at its start is an exception.
class XServer {
 public:
  XServer();
  ~XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

 private:
  pid_t myServer = 0;
  pid_t myWindowManager = 0;
};

// Whether the test's name says that it is one for an X server: that of its suite begins with "X11".
bool isForXServer(const std::string& testFilter);

// What another program hears from the X server: a window's outer frame, as Qt counts, and the application's windows
// from front to back.
QRect frameOnServer(const QWidget& window);
std::vector<WId> windowsOnServer();

// Lets Qt's events happen until it holds, or until the time is over; returns whether it does.
bool comesTrue(const std::function<bool()>& condition, int milliseconds = 5000);
// Shows the window and waits until the X server does.
void showOnServer(QWidget& window);

}  // namespace kelvane::test
