#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTextEdit>
#include <QToolBar>
#include <QWidget>
#include <QWindow>
#include <thread>

#include "Extensions/NSWindow-QNExtensions.h"
#include "Platform/Desktop/Desktop.h"
#include "Qt/QtDesktop.h"
#include "Qt/QtEvents.h"
#include "Qt/QtMenus.h"
#include "Qt/Support/SyntheticUser.h"
#include "Qt/Support/XServer.h"
#include "Support/PreferencesTest.h"
#include "Support/Process.h"
#include "Support/Testing.h"
#include "Utilities/QNLogger.h"

namespace {

CGRect serverFrame(const QWidget& window) {
  const QRect frame = frameOnServer(window);
  return CGRect(frame.x(), 1024 - frame.y() - frame.height(), frame.width(), frame.height());
}

// A window with all that one can have around its content, in a screen of 1280 x 1024 with preferences of its own.
struct X11Windows : PreferencesTest {
  X11Windows() {
    myWindow.menuBar()->addMenu(QStringLiteral("File"))->addAction(QStringLiteral("Open"));
    myWindow.addToolBar(QStringLiteral("Tools"))->addAction(QStringLiteral("Save"));
    myWindow.setCentralWidget(new QTextEdit);
    myWindow.statusBar()->showMessage(QStringLiteral("Ready"));
  }

  // Whether the window, and the adapter with it, comes to have the frame.
  static testing::AssertionResult comesTo(const QWidget& window, const Ref<NSWindow>& adapter, const CGRect& frame) {
    if (comesTrue([&] { return serverFrame(window) == frame && adapter->frame() == frame; }))
      return testing::AssertionSuccess();
    return testing::AssertionFailure() << utf8(NSStringFromRect(serverFrame(window))) << " on the server, "
                                       << utf8(NSStringFromRect(adapter->frame())) << " here";
  }
  testing::AssertionResult comesTo(const CGRect& frame) const { return comesTo(myWindow, myAdapter, frame); }

  QMainWindow myWindow;
  const Ref<NSWindow> myAdapter = windowFor(myWindow);
};

TEST_F(X11Windows, TakeTheFrameThatTheyHadBeforeTheyWereShown) {
  const CGRect frame(100, 200, 500, 400);
  myAdapter->setFrame(frame, true, false);
  EXPECT_EQ(myAdapter->frame(), frame);
  showOnServer(myWindow);
  EXPECT_TRUE(comesTo(frame));
  EXPECT_LT(myWindow.height(), 400);
  myWindow.hide();
  myAdapter->setFrame({300, 100, 400, 300}, true, false);
  showOnServer(myWindow);
  EXPECT_TRUE(comesTo({300, 100, 400, 300}));
  // The first window's decoration is expected of the next.
  QWidget next;
  windowFor(next)->setFrame(frame, true, false);
  EXPECT_EQ(next.height(), 400 - (300 - myWindow.height()));
}

TEST_F(X11Windows, LeaveWhatTheHostHasSetSince) {
  myAdapter->setFrame({100, 200, 500, 400}, true, false);
  myWindow.setGeometry(10, 50, 600, 450);
  showOnServer(myWindow);
  EXPECT_TRUE(comesTrue([&] { return frameOnServer(myWindow).contains(QRect(10, 50, 600, 450)); }));
  EXPECT_EQ(myWindow.geometry(), QRect(10, 50, 600, 450));
}

TEST_F(X11Windows, ComeBackToWhereTheyWere) {
  showOnServer(myWindow);
  positionAtGoldenMiddle(*myAdapter);
  myAdapter->setFrame({myAdapter->frame().origin, {500, 400}}, true, false);
  positionAtGoldenMiddle(*myAdapter);
  EXPECT_TRUE(comesTo({390, 416, 500, 400}));
  saveFrameToUserDefaultsForKey(*myAdapter, u"frame", true);
  saveFrameToUserDefaultsForKey(*myAdapter, u"size", false);
  const QSize content = myWindow.centralWidget()->size();

  myAdapter->setFrame({10, 20, 300, 250}, true, false);
  EXPECT_TRUE(comesTo({10, 20, 300, 250}));
  EXPECT_TRUE(loadFrameFromUserDefaultsForKey(*myAdapter, u"frame", true, NSWindowExtensions::noPosition));
  EXPECT_TRUE(comesTo({390, 416, 500, 400}));

  // The size alone: the upper left corner stays where it is.
  resizeWindowToSize(*myAdapter, {300, 100});
  EXPECT_TRUE(comesTrue([&] { return myWindow.centralWidget()->size() == QSize(300, 100); }));
  EXPECT_EQ(frameOnServer(myWindow).topLeft(), QPoint(390, 208));
  resizeWindowBySizingView(*myAdapter, viewFor(*myWindow.centralWidget()), {content.width() * 1.0, 200});
  EXPECT_TRUE(comesTrue([&] { return myWindow.centralWidget()->size() == QSize(content.width(), 200); }));
  EXPECT_EQ(frameOnServer(myWindow).topLeft(), QPoint(390, 208));
}

TEST_F(X11Windows, AreHeldWithinTheirLimits) {
  showOnServer(myWindow);
  myAdapter->setFrame({100, 200, 500, 400}, true, false);
  lockWindowToCurrentSize(*myAdapter);
  myAdapter->setFrame({150, 250, 900, 100}, true, false);
  EXPECT_TRUE(comesTo({150, 250, 500, 400}));
  myAdapter->setMinSize({200, 300});
  myAdapter->setMaxSize({infinity, 0});
  myAdapter->setFrame({150, 250, 900, 100}, true, false);
  EXPECT_TRUE(comesTo({150, 250, 900, 300}));
}

TEST_F(X11Windows, FillTheScreenUntilTheyAreGivenAFrame) {
  const auto fillsScreen = [&] { return frameOnServer(myWindow) == QRect(0, 0, 1280, 1024); };
  myAdapter->setFrame({10, 20, 300, 250}, true, false);
  myWindow.showMaximized();
  EXPECT_TRUE(comesTrue([&] { return myWindow.windowHandle()->isExposed() && fillsScreen(); }));
  EXPECT_FALSE(comesTrue([&] { return !fillsScreen(); }, 300));
  myAdapter->setFrame({100, 200, 500, 400}, true, false);
  EXPECT_TRUE(comesTo({100, 200, 500, 400}));
  EXPECT_FALSE(myWindow.isMaximized());
}

TEST_F(X11Windows, GoThereInSteps) {
  showOnServer(myWindow);
  myAdapter->setFrame({100, 200, 400, 300}, true, false);
  EXPECT_TRUE(comesTo({100, 200, 400, 300}));
  myAdapter->setFrame({500, 400, 600, 500}, true, true);
  EXPECT_EQ(myAdapter->frame(), CGRect(100, 200, 400, 300));
  // A second way replaces the first, from where the window is by then.
  EXPECT_TRUE(comesTrue([&] { return myAdapter->frame().origin.x > 110; }));
  EXPECT_LT(myAdapter->frame().origin.x, 500);
  myAdapter->setFrame({50, 60, 450, 350}, true, true);
  EXPECT_TRUE(comesTo({50, 60, 450, 350}));
  // One who closes the window on its way finds it at its end.
  myAdapter->setFrame({500, 400, 600, 500}, true, true);
  myWindow.close();
  EXPECT_EQ(myAdapter->frame(), CGRect(500, 400, 600, 500));
  EXPECT_FALSE(comesTrue([&] { return myAdapter->frame() != CGRect(500, 400, 600, 500); }, 300));
}

TEST_F(X11Windows, AreStackedAsTheyAreTold) {
  std::vector<std::unique_ptr<QWidget>> windows;
  const auto adapter = [&](std::size_t index) { return windowFor(*windows[index]); };
  for (int i = 0; i < 3; ++i) {
    windows.push_back(std::make_unique<QWidget>());
    showOnServer(*windows.back());
    ASSERT_TRUE(comesTrue([&] { return windows.back()->isActiveWindow(); }));
  }
  const auto isOrder = [&](std::vector<std::size_t> order) {
    std::vector<WId> ids;
    std::vector<Ref<NSWindow>> adapters;
    for (const std::size_t index : order) {
      ids.push_back(windows[index]->winId());
      adapters.push_back(adapter(index));
    }
    return comesTrue([&] { return windowsOnServer() == ids && Desktop::current().orderedWindows() == adapters; });
  };
  // The main window of this test was never shown, and comes last.
  myWindow.setAttribute(Qt::WA_DontShowOnScreen);
  EXPECT_TRUE(isOrder({2, 1, 0}));
  orderBehindWindow(*adapter(2), adapter(1));
  EXPECT_TRUE(isOrder({1, 2, 0}));
  orderBehindWindow(*adapter(1), nullptr);
  EXPECT_TRUE(isOrder({2, 0, 1}));
  adapter(1)->orderWindow(NSWindowOrderingMode::Above, adapter(0)->windowNumber());
  EXPECT_TRUE(isOrder({2, 1, 0}));
  adapter(0)->orderWindow(NSWindowOrderingMode::Above, 0);
  EXPECT_TRUE(isOrder({0, 2, 1}));
  windows[1]->raise();
  EXPECT_TRUE(isOrder({1, 0, 2}));
  adapter(1)->orderWindow(NSWindowOrderingMode::Below, adapter(1)->windowNumber());
  adapter(1)->orderWindow(NSWindowOrderingMode::Below, 4711);
  EXPECT_TRUE(isOrder({1, 0, 2}));
}

// Tells the X server how many monitors there are, and waits for Qt to hear of it.
void monitors(std::initializer_list<const char*> arguments, std::size_t count) {
  std::vector<std::string> command{"xrandr"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  ASSERT_EQ(runProcess(command).status, 0);
  ASSERT_TRUE(comesTrue([&] { return Desktop::current().screens().size() == count; }));
}

TEST(X11Screens, ComeAndGo) {
  const Desktop& desktop = Desktop::current();
  EXPECT_EQ(desktop.mainScreen()->frame(), CGRect(0, 0, 1280, 1024));
  QWidget window;
  const Ref<NSWindow> adapter = windowFor(window);
  showOnServer(window);
  // One that has its lower half for a screen of its own, below the primary one.
  monitors({"--setmonitor", "Upper", "1280/300x512/200+0+0", "screen"}, 1);
  ASSERT_TRUE(comesTrue([&] { return desktop.mainScreen()->frame() == CGRect(0, 0, 1280, 512); }));
  monitors({"--setmonitor", "Lower", "1280/300x512/200+0+512", "none"}, 2);
  const Ref<NSScreen> lower = desktop.screens().back();
  EXPECT_EQ(desktop.screens().front(), desktop.mainScreen());
  EXPECT_EQ(desktop.mainScreen()->frame(), CGRect(0, 0, 1280, 512));
  EXPECT_EQ(lower->frame(), CGRect(0, -512, 1280, 512));

  adapter->setFrame({100, -400, 300, 200}, true, false);
  EXPECT_TRUE(comesTrue([&] { return frameOnServer(window) == QRect(100, 712, 300, 200); }));
  EXPECT_TRUE(isFrameVisibleOnScreen(*adapter, adapter->frame()));

  monitors({"--delmonitor", "Lower"}, 1);
  EXPECT_EQ(lower->frame(), CGRect(0, -512, 1280, 512));
  EXPECT_EQ(lower->visibleFrame(), CGRect(0, -512, 1280, 512));
  EXPECT_THAT(desktop.screens(), ElementsAre(desktop.mainScreen()));
  EXPECT_FALSE(isFrameVisibleOnScreen(*adapter, {100, -400, 300, 200}));
  qn_sanitizePosition(*adapter);
  EXPECT_TRUE(isFrameVisibleOnScreen(*adapter, adapter->frame()));
  // The next test has the whole screen again.
  monitors({"--delmonitor", "Upper"}, 1);
  EXPECT_TRUE(comesTrue([&] { return desktop.mainScreen()->frame() == CGRect(0, 0, 1280, 1024); }));
}

// What another program sends to the X server as the user's doing.
void xdotool(std::vector<std::string> words) {
  words.insert(words.begin(), "xdotool");
  const auto done = runProcess(words);
  EXPECT_EQ(done.err, "");
}

TEST(X11Input, TypedKeysChooseFromMenus) {
  const auto open = std::make_shared<NSMenuItem>(u"Open", SEL(u"open:"), u"o");
  int opened = 0;
  open->setHandler([&](NSMenuItem&) { ++opened; });
  const auto file = std::make_shared<NSMenuItem>(u"File");
  file->setSubmenu(std::make_shared<NSMenu>());
  file->submenu()->addItem(open);
  const auto menu = std::make_shared<NSMenu>();
  menu->addItem(file);
  QMainWindow window;
  attachMenu(*window.menuBar(), menu);
  showOnServer(window);
  ASSERT_TRUE(comesTrue([&] { return window.isActiveWindow(); }));
  xdotool({"key", "ctrl+o"});
  EXPECT_TRUE(comesTrue([&] { return opened == 1; }));
  xdotool({"keydown", "ctrl", "keydown", "shift"});
  EXPECT_EQ(currentEvent()->modifierFlags(), NSCommandKeyMask | NSShiftKeyMask);
}

TEST(X11Input, AFatalAlertOfAnotherThreadIsAnsweredByAKeyPress) {
  CapturedSystemLog log;
  bool isTyped = false;
  SyntheticUser user([&] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box && box->isActiveWindow() && !std::exchange(isTyped, true)) xdotool({"key", "Return"});
  });
  std::thread thread([&] {
    QNLogger::sharedLogger().fatal(__LINE__, __FILE__, __func__, u"lost", /*showDialog=*/true);
    // Asked from here, Qt waits for the main thread, which may have left its loop with the last window.
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
  });
  EXPECT_EQ(QApplication::exec(), 0);
  thread.join();
  EXPECT_TRUE(isTyped);
}

TEST(WaylandWindows, KeepTheirSizes) {
  const TemporaryFolder folder;
  setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
  EXPECT_FALSE(Desktop::current().windowsHavePositions());
  EXPECT_EQ(Desktop::current().mainScreen()->frame(), CGRect(0, 0, 1280, 1024));
  QMainWindow window;
  window.setCentralWidget(new QTextEdit);
  window.addToolBar(QStringLiteral("Tools"))->addAction(QStringLiteral("Save"));
  const Ref<NSWindow> adapter = windowFor(window);
  const auto comesToSize = [&](const CGSize& size) { return comesTrue([&] { return adapter->frame().size == size; }); };
  adapter->setFrame({100, 200, 500, 400}, true, false);
  showOnServer(window);
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
  EXPECT_TRUE(comesTrue([&] { return window.centralWidget()->size() == QSize(300, 100); }));
  EXPECT_THAT(Desktop::current().orderedWindows(), ElementsAre(adapter));
}

}  // namespace
