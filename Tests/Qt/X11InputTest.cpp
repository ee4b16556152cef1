#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <thread>

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
  test::showOnServer(window);
  ASSERT_TRUE(test::comesTrue([&] { return window.isActiveWindow(); }));
  xdotool({"key", "ctrl+o"});
  EXPECT_TRUE(test::comesTrue([&] { return opened == 1; }));
  xdotool({"keydown", "ctrl", "keydown", "shift"});
  EXPECT_EQ(currentEvent()->modifierFlags(), NSCommandKeyMask | NSShiftKeyMask);
}

TEST(X11Input, AFatalAlertOfAnotherThreadIsAnsweredByAKeyPress) {
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
