#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>

#include "Extensions/NSWindow-QNExtensions.h"
#include "Qt/QtDesktop.h"
#include "Qt/Support/XServer.h"

namespace kelvane {
namespace {

using test::comesTrue;
using test::frameOnServer;
using test::showOnServer;

// The frame on the server, counted upwards.
CGRect serverFrame(const QWidget& window) {
  const QRect frame = frameOnServer(window);
  return CGRect(frame.x(), 1024 - frame.y() - frame.height(), frame.width(), frame.height());
}

TEST(X11Windows, FramesAreTheServers) {
  QWidget window;
  const Ref<NSWindow> adapter = windowFor(window);
  adapter->setFrame({100, 200, 500, 400}, true, false);
  EXPECT_EQ(adapter->frame(), CGRect(100, 200, 500, 400));
  showOnServer(window);
  EXPECT_TRUE(comesTrue([&] { return serverFrame(window) == CGRect(100, 200, 500, 400); }));
  EXPECT_EQ(serverFrame(window), CGRect(100, 200, 500, 400));
  EXPECT_EQ(adapter->frame(), CGRect(100, 200, 500, 400));
  positionAtGoldenMiddle(*adapter);
  EXPECT_TRUE(comesTrue([&] { return serverFrame(window) == CGRect(390, 416, 500, 400); }));
  EXPECT_EQ(serverFrame(window), CGRect(390, 416, 500, 400));
  EXPECT_EQ(adapter->frame(), CGRect(390, 416, 500, 400));
}

}  // namespace
}  // namespace kelvane
