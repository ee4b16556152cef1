#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QMainWindow>
#include <QTextEdit>
#include <QToolBar>
#include <cstdlib>

#include "Extensions/NSWindow-QNExtensions.h"
#include "Platform/Desktop/Desktop.h"
#include "Qt/QtDesktop.h"
#include "Qt/Support/XServer.h"
#include "Support/TemporaryFolder.h"

namespace kelvane {
namespace {

TEST(WaylandWindows, KeepTheirSizes) {
  const TemporaryFolder folder;
  setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
  EXPECT_FALSE(Desktop::current().windowsHavePositions());
  EXPECT_EQ(Desktop::current().mainScreen()->frame(), CGRect(0, 0, 1280, 1024));
  QMainWindow window;
  window.setCentralWidget(new QTextEdit);
  window.addToolBar(QStringLiteral("Tools"))->addAction(QStringLiteral("Save"));
  const Ref<NSWindow> adapter = windowFor(window);
  const auto comesToSize = [&](const CGSize& size) {
    return test::comesTrue([&] { return adapter->frame().size == size; });
  };
  adapter->setFrame({100, 200, 500, 400}, true, false);
  test::showOnServer(window);
  EXPECT_TRUE(comesToSize({500, 400}));
  // The title bar is the window's own here, and counts all the same.
  EXPECT_LT(window.height(), 400);
  saveFrameToUserDefaultsForKey(*adapter, u"frame", true);

  adapter->setFrame({0, 0, 700, 300}, true, false);
  EXPECT_TRUE(comesToSize({700, 300}));
  positionAtGoldenMiddle(*adapter);
  positionAtGoldenMiddleToBottomRight(*adapter);
  orderBehindWindow(*adapter, nullptr);
  qn_sanitizePosition(*adapter);
  EXPECT_TRUE(loadFrameFromUserDefaultsForKey(*adapter, u"frame", true, NSWindowExtensions::goldenMiddle));
  EXPECT_TRUE(comesToSize({500, 400}));
  resizeWindowToSize(*adapter, {300, 100});
  EXPECT_TRUE(test::comesTrue([&] { return window.centralWidget()->size() == QSize(300, 100); }));
  EXPECT_THAT(Desktop::current().orderedWindows(), testing::ElementsAre(adapter));
}

}  // namespace
}  // namespace kelvane
