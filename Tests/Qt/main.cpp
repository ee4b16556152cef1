#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <cstdlib>
#include <optional>

#include "Qt/QtDesktop.h"
#include "Qt/Support/XServer.h"

// Each test runs in a process of its own, with a desktop that is there from the start. Those whose suite's name begins
// with X11 have an X server with a window manager, when they are asked for by their names; the others run without.
int main(int argc, char* argv[]) {
  testing::InitGoogleMock(&argc, argv);
  // To list the tests takes no display.
  if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  std::optional<kelvane::test::XServer> server;
  if (kelvane::test::isForXServer(testing::GTEST_FLAG(filter)))
    server.emplace();
  else if (testing::GTEST_FLAG(filter) == "*")
    testing::GTEST_FLAG(filter) = "-X11*";
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication application(argc, argv);
  kelvane::installQtDesktop();
  return RUN_ALL_TESTS();
}
