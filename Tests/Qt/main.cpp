#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "Qt/QtDesktop.h"
#include "Qt/Support/Compositor.h"
#include "Qt/Support/XServer.h"

// What the system's libraries keep to the end is no leak of ours.
extern "C" __attribute__((weak)) const char* __lsan_default_suppressions();
extern "C" __attribute__((weak)) const char* __lsan_default_suppressions() {
  return "leak:libdbus-1\nleak:libwayland-client\nleak:libfontconfig";
}

// Each test runs in a process of its own, with a desktop that is there from the start. Those whose suite's name begins
// with X11 or Wayland have a display server of their own, when they are asked for by their names; the others run
// without.
int main(int argc, char* argv[]) {
  testing::InitGoogleMock(&argc, argv);
  // To list the tests takes no display.
  if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  std::string& filter = testing::GTEST_FLAG(filter);
  std::optional<kelvane::XServer> server;
  std::optional<kelvane::Compositor> compositor;
  if (filter.starts_with("X11")) server.emplace();
  if (filter.starts_with("Wayland")) {
    if (!kelvane::Compositor::isInstalled()) {
      std::puts("[  SKIPPED ] weston is not installed");
      return 0;
    }
    compositor.emplace();
  }
  if (filter == "*") filter = "-X11*:Wayland*";
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  // No proxy stands between a test and its servers.
  setenv("no_proxy", "*", 1);
  QApplication application(argc, argv);
  kelvane::installQtDesktop();
  return RUN_ALL_TESTS();
}
