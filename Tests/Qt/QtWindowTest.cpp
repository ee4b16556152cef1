#include <QApplication>
#include <QDialog>
#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

#include "Extensions/NSScreen-QNExtensions.h"
#include "Extensions/NSToolbar-QNExtensions.h"
#include "Extensions/NSWindow-QNExtensions.h"
#include "Platform/Desktop/Desktop.h"
#include "Qt/QtDesktop.h"
#include "Support/Testing.h"

namespace {

std::vector<Ref<NSWindow>> orderedWindows() { return Desktop::current().orderedWindows(); }

TEST(QtWindows, ShareTheirContentWithTheToolbar) {
  QMainWindow window;
  const Ref<NSWindow> adapter = windowFor(window);
  EXPECT_EQ(adapter->contentView(), nullptr);
  EXPECT_EQ(adapter->toolbar(), nullptr);
  EXPECT_EQ(adapter->contentRectForFrameRect({10, 20, 300, 400}), CGRect(10, 20, 300, 400));

  auto* const content = new QLabel;
  window.setCentralWidget(content);
  window.menuBar()->addMenu(QStringLiteral("File"));
  window.statusBar()->showMessage(QStringLiteral("Ready"));
  window.addToolBar(Qt::LeftToolBarArea, new QToolBar);
  auto* const toolBar = window.addToolBar(QStringLiteral("Tools"));
  toolBar->addAction(QStringLiteral("Save"));
  window.addDockWidget(Qt::RightDockWidgetArea, new QDockWidget(QStringLiteral("Dock")));
  for (const bool isShown : {false, true}) {
    if (isShown) window.show();
    EXPECT_EQ(adapter->contentView(), viewFor(*content));
    EXPECT_EQ(adapter->toolbar(), toolbarFor(*toolBar));
    for (const bool hasToolBar : {true, false}) {
      toolBar->setVisible(hasToolBar);
      EXPECT_EQ(toolbarHeight(*adapter), hasToolBar ? toolBar->height() : 0);
      resizeWindowToSize(*adapter, {500, 300});
      if (isShown) QApplication::sendPostedEvents();
      const CGRect rect = adapter->contentRectForFrameRect(adapter->frame());
      EXPECT_EQ(content->size(), QSize(500, 300));
      EXPECT_EQ(rect.size, CGSize(500, 300 + toolbarHeight(*adapter)));
      EXPECT_EQ(adapter->frameRectForContentRect(rect), adapter->frame());
    }
  }
}

TEST(QtWindows, TakeNoFrameThatIsNone) {
  QWidget window;
  window.setMinimumSize(50, 60);
  const Ref<NSWindow> adapter = windowFor(window);
  adapter->setFrame({10, 20, 300, 200}, false, false);
  for (const double number : {NaN, infinity}) {
    adapter->setFrame({number, 0, 10, 10}, true, true);
    adapter->setFrame({0, 0, 10, number}, true, true);
  }
  adapter->setMinSize({NaN, 1000});
  EXPECT_EQ(adapter->frame(), CGRect(10, 20, 300, 200));
  adapter->setFrame({-0.5, 466.6666666666667, 300.4, 200.5}, true, false);
  EXPECT_EQ(adapter->frame(), CGRect(0, 467, 300, 201));
  // Held within the limits, with the lower left corner where it was told.
  adapter->setFrame({10, 20, -5, 1e300}, true, false);
  EXPECT_EQ(adapter->frame().origin, CGPoint(10, 20));
  EXPECT_EQ(window.width(), 50);
}

TEST(QtWindows, AreWhatAUserCallsSo) {
  QWidget window;
  window.show();
  QDialog dialog(&window);
  dialog.show();
  QWidget palette(&window, Qt::Tool);
  palette.show();
  QMenu menu(&window);
  menu.popup({});
  QWidget tip(&window, Qt::ToolTip);
  tip.show();
  QWidget splash(nullptr, Qt::SplashScreen);
  splash.show();
  const QLabel notYetInAnyWindow;
  EXPECT_THAT(orderedWindows(), ElementsAre(windowFor(palette), windowFor(dialog), windowFor(window)));
  // A window keeps its dialogs before it; one that is to stay on top does so.
  window.activateWindow();
  EXPECT_THAT(orderedWindows(), ElementsAre(windowFor(palette), windowFor(dialog), windowFor(window)));
  QWidget onTop(nullptr, Qt::WindowStaysOnTopHint);
  onTop.show();
  dialog.raise();
  EXPECT_THAT(orderedWindows(),
              ElementsAre(windowFor(onTop), windowFor(dialog), windowFor(palette), windowFor(window)));

  const Ref<NSWindow> minimised = windowFor(dialog);
  EXPECT_TRUE(minimised->isVisible());
  dialog.showMinimized();
  EXPECT_FALSE(minimised->isVisible());
  palette.hide();
  EXPECT_FALSE(windowFor(palette)->isVisible());
  EXPECT_GT(windowFor(palette)->windowNumber(), 0);
  EXPECT_NE(windowFor(palette)->windowNumber(), windowFor(window)->windowNumber());
}

TEST(QtWindows, OutliveTheirOriginals) {
  auto window = std::make_unique<QMainWindow>();
  window->setCentralWidget(new QLabel);
  window->addToolBar(QStringLiteral("Tools"))->addAction(QStringLiteral("Save"));
  window->show();
  const Ref<NSWindow> adapter = windowFor(*window);
  const Ref<NSToolbar> toolbar = adapter->toolbar();
  const Ref<NSToolbarItem> item = toolbar->items().front();
  const std::int64_t number = adapter->windowNumber();
  window.reset();
  EXPECT_TRUE(orderedWindows().empty());
  adapter->setFrame({10, 20, 300, 200}, true, true);
  adapter->orderWindow(NSWindowOrderingMode::Below, 0);
  lockWindowToCurrentSize(*adapter);
  EXPECT_EQ(adapter->frame(), CGRect());
  EXPECT_EQ(adapter->contentRectForFrameRect({1, 2, 3, 4}), CGRect());
  EXPECT_TRUE(!adapter->contentView() && !adapter->toolbar() && !adapter->isVisible());
  EXPECT_TRUE(toolbar->items().empty() && !toolbar->isVisible());
  EXPECT_EQ(actionFor(item.get()), nullptr);
  QWidget next;
  EXPECT_GT(windowFor(next)->windowNumber(), number) << "somebody else got its number";
}

TEST(QtWindows, GoAtTheEndOfTheirEvent) {
  auto* const window = new QWidget;
  window->show();
  const Ref<NSWindow> adapter = windowFor(*window);
  window->deleteLater();
  EXPECT_THAT(orderedWindows(), ElementsAre(adapter));
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(orderedWindows().empty());
}

TEST(QtToolbars, HaveItems) {
  QToolBar toolBar;
  QAction* const save = toolBar.addAction(QStringLiteral("Save"));
  save->setObjectName(QStringLiteral("save"));
  toolBar.addSeparator();
  toolBar.addWidget(new QLabel)->setObjectName(QStringLiteral("zoom"));
  auto* const search = new QLabel;
  search->setObjectName(QStringLiteral("search"));
  toolBar.addWidget(search);
  toolBar.addAction(QStringLiteral("Hidden"))->setVisible(false);
  const Ref<NSToolbar> toolbar = toolbarFor(toolBar);
  std::vector<Text> identifiers;
  for (const Ref<NSToolbarItem>& item : toolbar->items()) identifiers.push_back(item->itemIdentifier());
  EXPECT_THAT(identifiers, ElementsAre(u"save", u"zoom", u"search"));
  EXPECT_EQ(qn_itemForIdentifier(*toolbar, u"save"), toolbar->items().front());
  EXPECT_EQ(qn_itemForIdentifier(*toolbar, u"Save"), nullptr);
  EXPECT_EQ(actionFor(qn_itemForIdentifier(*toolbar, u"save").get()), save);
}

}  // namespace
