#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <cstdlib>

#include "Qt/QtDesktop.h"

// Each test runs in a process of its own, with a desktop that is there from the start.
int main(int argc, char* argv[]) {
  testing::InitGoogleMock(&argc, argv);
  // To list the tests takes no display.
  if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication application(argc, argv);
  kelvane::installQtDesktop();
  return RUN_ALL_TESTS();
}
