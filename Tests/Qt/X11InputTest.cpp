#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QWindow>
#include <thread>

#include "Extensions/NSEvent-QNExtensions.h"
#include "Extensions/NSMenu-QNExtensions.h"
#include "Qt/QtDesktop.h"
#include "Qt/QtEvents.h"
#include "Qt/QtMenus.h"
#include "Qt/Support/SyntheticUser.h"
#include "Qt/Support/XServer.h"
#include "Support/CapturedSystemLog.h"
#include "Support/Process.h"
#include "Utilities/QNLogger.h"

namespace kelvane {
namespace {

// What another program sends to the X server as the user's doing.
void xdotool(std::vector<std::string> words) {
  words.insert(words.begin(), "xdotool");
  const auto done = test::runProcess(words);
  EXPECT_EQ(done.err, "");
}

struct X11Input : testing::Test {
  X11Input() {
    auto file = std::make_shared<NSMenuItem>(u"File");
    file->setSubmenu(std::make_shared<NSMenu>());
    open->setHandler([this](NSMenuItem&) { ++opened; });
    file->submenu()->addItem(open);
    menu->addItem(file);
    window.setGeometry(200, 200, 400, 300);
    test::showOnServer(window);
    EXPECT_TRUE(test::comesTrue([&] { return window.isActiveWindow(); }));
  }

  QMainWindow window;
  Ref<NSMenu> menu = std::make_shared<NSMenu>();
  Ref<NSMenuItem> open = std::make_shared<NSMenuItem>(u"Open", SEL(u"open:"), u"o");
  int opened = 0;
};

TEST_F(X11Input, TypedKeysChooseFromMenus) {
  attachMenu(*window.menuBar(), menu);
  xdotool({"key", "ctrl+o"});
  EXPECT_TRUE(test::comesTrue([&] { return opened == 1; }));
  xdotool({"keydown", "ctrl", "keydown", "shift"});
  EXPECT_TRUE(test::comesTrue([] { return currentEvent()->modifierFlags() == (NSCommandKeyMask | NSShiftKeyMask); }));
  xdotool({"keyup", "shift", "keyup", "ctrl"});
}

TEST_F(X11Input, ClicksChooseFromMenusAndDismissThem) {
  const auto clickAt = [](const QPoint& place) {
    xdotool({"mousemove", std::to_string(place.x()), std::to_string(place.y()), "click", "1"});
  };
  const Ref<NSMenu> files = menu->items()[0]->submenu();
  bool chooses = true;
  QMenu* clicked = nullptr;
  SyntheticUser user([&] {
    auto* const popUp = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!popUp || !popUp->windowHandle()->isExposed() || std::exchange(clicked, popUp) == popUp) return;
    clickAt(chooses ? popUp->mapToGlobal(popUp->actionGeometry(actionFor(*open)).center()) : QPoint(1000, 900));
  });
  NSMenuExtensions::popUpMenu(files, viewFor(window), false);
  EXPECT_EQ(opened, 1);
  chooses = false;
  clicked = nullptr;
  NSMenuExtensions::popUpMenu(files, viewFor(window), false);
  EXPECT_EQ(opened, 1);
}

TEST_F(X11Input, AFatalAlertOfAnotherThreadIsAnsweredByAKeyPress) {
  CapturedSystemLog log;
  int typed = 0;
  SyntheticUser user([&] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box && box->isActiveWindow() && typed++ == 0) xdotool({"key", "Return"});
  });
  std::thread thread([&] {
    QNLogger::sharedLogger().fatal(__LINE__, __FILE__, __func__, u"lost", /*showDialog=*/true);
    QCoreApplication::quit();
  });
  EXPECT_EQ(QApplication::exec(), 0);
  thread.join();
  EXPECT_EQ(typed, 1);
}

}  // namespace
}  // namespace kelvane
