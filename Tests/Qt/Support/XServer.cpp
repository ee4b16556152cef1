#include "Qt/Support/XServer.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWindow>
#include <cstdlib>
#include <regex>
#include <stdexcept>

#include "Support/Process.h"

namespace kelvane {
namespace {

constexpr int patience = 20'000;

// The line that the server writes when it is ready, or what there is of it when it ends or takes too long.
std::string lineFrom(int descriptor) {
  std::string line;
  pollfd source{descriptor, POLLIN, 0};
  char byte = 0;
  while (poll(&source, 1, patience) > 0 && read(descriptor, &byte, 1) == 1 && byte != '\n') line += byte;
  return byte == '\n' ? line : std::string();
}

std::string answer(const std::vector<std::string>& arguments) { return runProcess(arguments).out; }

// The number that the pattern's group has found.
long numberIn(const std::string& text, const char* pattern) {
  std::smatch found;
  return std::regex_search(text, found, std::regex(pattern)) ? std::stol(found[1], nullptr, 0) : -1;
}

// The window manager leaves the mark when it has started. It is there before that, but loses the windows that appear.
const std::string mark = "_TEST_HAS_STARTED";

bool hasWindowManager() { return answer({"xprop", "-root", mark}).find(" = ") != std::string::npos; }

}  // namespace

XServer::XServer() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  const std::vector<std::string> server{
      "Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0", "1280x1024x24", "-nolisten", "tcp", "-noreset"};
  myServer.emplace(server, ends[1]);
  close(ends[1]);
  const std::string number = lineFrom(ends[0]);
  close(ends[0]);
  if (number.empty()) throw std::runtime_error("Xvfb does not start");
  setenv("DISPLAY", (":" + number).c_str(), 1);
  setenv("QT_QPA_PLATFORM", "xcb", 1);
  unsetenv("XAUTHORITY");
  const std::vector<std::string> windowManager{"openbox", "--sm-disable", "--startup",
                                               "xprop -root -format " + mark + " 32c -set " + mark + " 1"};
  myWindowManager.emplace(windowManager);
  const QDeadlineTimer deadline(patience);
  while (!hasWindowManager())
    if (deadline.hasExpired()) throw std::runtime_error("openbox does not start");
}

QRect frameOnServer(const QWidget& window) {
  // The window manager puts the window into one of its own, or into several; the outermost one is in the root.
  std::string id = std::to_string(window.internalWinId());
  std::string tree = answer({"xwininfo", "-children", "-id", id});
  const std::string parent = "Parent window id: (0x[0-9a-f]+)";
  while (numberIn(tree, parent.c_str()) > 0 &&
         numberIn(tree, parent.c_str()) != numberIn(tree, "Root window id: (0x[0-9a-f]+)")) {
    id = std::to_string(numberIn(tree, parent.c_str()));
    tree = answer({"xwininfo", "-children", "-id", id});
  }
  const std::string place = answer({"xwininfo", "-stats", "-id", id});
  const auto number = [&](const char* name) {
    return static_cast<int>(numberIn(place, (std::string(name) + ": +(-?[0-9]+)").c_str()));
  };
  return {number("Absolute upper-left X"), number("Absolute upper-left Y"), number("Width"), number("Height")};
}

std::vector<WId> windowsOnServer() {
  const std::string list = answer({"xprop", "-root", "_NET_CLIENT_LIST_STACKING"});
  const std::regex number("0x[0-9a-f]+");
  std::vector<WId> result;
  for (auto found = std::sregex_iterator(list.begin(), list.end(), number); found != std::sregex_iterator(); ++found)
    result.insert(result.begin(), std::stoul(found->str(), nullptr, 16));
  return result;
}

bool comesTrue(const std::function<bool()>& condition, int milliseconds) {
  const QDeadlineTimer deadline(milliseconds);
  while (!condition()) {
    if (deadline.hasExpired()) return false;
    QEventLoop loop;
    QTimer::singleShot(10, &loop, &QEventLoop::quit);
    loop.exec();
  }
  return true;
}

void showOnServer(QWidget& window) {
  window.show();
  if (!comesTrue([&] { return window.windowHandle()->isExposed(); })) throw std::runtime_error("no window is shown");
}

}  // namespace kelvane
