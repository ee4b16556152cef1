#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QWidget>

#include "Extensions/NSWindow-QNExtensions.h"
#include "Platform/Desktop/Desktop.h"
#include "Qt/QtDesktop.h"
#include "Qt/Support/XServer.h"
#include "Support/Process.h"

namespace kelvane {
namespace {

using test::comesTrue;

// Tells the X server how many monitors there are, and waits for Qt to hear of it.
void monitors(std::initializer_list<const char*> arguments, std::size_t count) {
  std::vector<std::string> command{"xrandr"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  ASSERT_EQ(test::runProcess(command).status, 0);
  ASSERT_TRUE(comesTrue([&] { return Desktop::current().screens().size() == count; }));
}

TEST(X11Screens, ComeAndGo) {
  const Desktop& desktop = Desktop::current();
  EXPECT_EQ(desktop.mainScreen()->frame(), CGRect(0, 0, 1280, 1024));
  QWidget window;
  const Ref<NSWindow> adapter = windowFor(window);
  test::showOnServer(window);
  // One that has its lower half for a screen of its own, below the primary one.
  monitors({"--setmonitor", "Upper", "1280/300x512/200+0+0", "screen"}, 1);
  ASSERT_TRUE(comesTrue([&] { return desktop.mainScreen()->frame() == CGRect(0, 0, 1280, 512); }));
  monitors({"--setmonitor", "Lower", "1280/300x512/200+0+512", "none"}, 2);
  const Ref<NSScreen> lower = desktop.screens().back();
  EXPECT_EQ(desktop.screens().front(), desktop.mainScreen());
  EXPECT_EQ(desktop.mainScreen()->frame(), CGRect(0, 0, 1280, 512));
  EXPECT_EQ(lower->frame(), CGRect(0, -512, 1280, 512));

  adapter->setFrame({100, -400, 300, 200}, true, false);
  EXPECT_TRUE(comesTrue([&] { return test::frameOnServer(window) == QRect(100, 712, 300, 200); }));
  EXPECT_TRUE(isFrameVisibleOnScreen(*adapter, adapter->frame()));

  monitors({"--delmonitor", "Lower"}, 1);
  EXPECT_EQ(lower->frame(), CGRect(0, -512, 1280, 512));
  EXPECT_EQ(lower->visibleFrame(), CGRect(0, -512, 1280, 512));
  EXPECT_THAT(desktop.screens(), testing::ElementsAre(desktop.mainScreen()));
  EXPECT_FALSE(isFrameVisibleOnScreen(*adapter, {100, -400, 300, 200}));
  qn_sanitizePosition(*adapter);
  EXPECT_TRUE(isFrameVisibleOnScreen(*adapter, adapter->frame()));
  // The next test has the whole screen again.
  monitors({"--delmonitor", "Upper"}, 1);
  EXPECT_TRUE(comesTrue([&] { return desktop.mainScreen()->frame() == CGRect(0, 0, 1280, 1024); }));
}

}  // namespace
}  // namespace kelvane
