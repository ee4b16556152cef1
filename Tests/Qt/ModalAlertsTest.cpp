#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QThread>
#include <thread>

#include "Platform/Foundation/NSRunLoop.h"
#include "Qt/QtDesktop.h"
#include "Qt/Support/SyntheticUser.h"
#include "Qt/Widgets/ModalAlerts.h"
#include "Support/Testing.h"
#include "Utilities/QNLogger.h"

namespace {

using namespace std::chrono_literals;

struct AlertUser {
  explicit AlertUser(std::function<void(QMessageBox&)> whatToDo)
      : user([this, whatToDo = std::move(whatToDo)] {
          auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
          if (!box || !box->isVisible()) return;
          ++count;
          whatToDo(*box);
        }) {}

  int count = 0;
  SyntheticUser user;
};

void logFatal(TextView message) {
  QNLogger::sharedLogger().fatal(__LINE__, __FILE__, __func__, message, /*showDialog=*/true);
}

TEST(ModalAlerts, ShowPlainTextAndOneButtonThatKeysPress) {
  CapturedSystemLog log;
  Qt::Key key = Qt::Key_Return;
  AlertUser user([&](QMessageBox& box) {
    EXPECT_EQ(box.text(), u"A serious problem occurred");
    EXPECT_EQ(box.informativeText(), u"100% <b>full</b>");
    EXPECT_EQ(box.buttons().size(), 1);
    EXPECT_EQ(box.buttons()[0]->text().remove(u'&'), u"OK");
    for (const QLabel* label : box.findChildren<QLabel*>()) EXPECT_EQ(label->textFormat(), Qt::PlainText);
    QTest::keyClick(&box, key);
  });
  logFatal(u"100%% <b>full</b>");
  EXPECT_EQ(user.count, 1);
  key = Qt::Key_Escape;
  logFatal(u"100%% <b>full</b>");
  EXPECT_EQ(user.count, 2);
}

TEST(ModalAlerts, EndWithTheirParentAndStayWithinAScreen) {
  auto parent = std::make_unique<QWidget>();
  parent->show();
  parent->activateWindow();
  QApplication::setActiveWindow(parent.get());
  AlertUser user([&](QMessageBox& box) {
    EXPECT_EQ(box.parentWidget(), parent.get());
    EXPECT_LT(box.height(), 1000);
    parent.reset();
  });
  Text lines;
  for (int i = 0; i < 1000; ++i) lines += u"A line.\n";
  Desktop::current().runModalAlert({u"Title", lines, u"Save & Quit"});
  EXPECT_EQ(user.count, 1);
}

// DisplayServersTest has one that is answered in time.
TEST(ModalAlerts, OfOtherThreadsWaitForTheMainOneOnlySoLong) {
  AlertUser user([&](QMessageBox& box) {
    EXPECT_EQ(QThread::currentThread(), qApp->thread());
    QTest::keyClick(&box, Qt::Key_Return);
  });
  // The main thread waits for the other one, which would wait for it.
  NSRunLoop& mainLoop = NSRunLoop::currentRunLoop();
  std::thread([&] { runAlertOnMainThread(mainLoop, {u"1", u"2", u"3"}, 20ms); }).join();
  EXPECT_EQ(user.count, 0);
  mainLoop.run();
  EXPECT_EQ(user.count, 1);
}

}  // namespace
