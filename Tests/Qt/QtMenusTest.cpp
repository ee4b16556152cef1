#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QTest>
#include <QToolBar>

#include "Extensions/NSMenu-QNExtensions.h"
#include "Platform/Desktop/Desktop.h"
#include "Qt/QtDesktop.h"
#include "Qt/QtMenus.h"
#include "Qt/Support/SyntheticUser.h"
#include "Support/Testing.h"

namespace {

std::string titles(const QWidget& widget) {
  std::string result;
  for (const QAction* action : widget.actions()) {
    result += result.empty() ? "" : " ";
    result += action->isSeparator() ? "-" : action->text().toStdString();
    if (action->menu()) result += "(" + titles(*action->menu()) + ")";
  }
  return result;
}

struct QtMenusTest : testing::Test {
  Ref<NSMenuItem> item(TextView title, TextView action, TextView key = {}) {
    auto made = std::make_shared<NSMenuItem>(Text(title), SEL(action), Text(key));
    made->setHandler([this](NSMenuItem& chosen) { heard += utf8(chosen.title()) + ";"; });
    return made;
  }

  QtMenusTest() {
    const auto file = item(u"File", u"");
    file->setSubmenu(std::make_shared<NSMenu>());
    main->addItem(file);
    for (const auto& each : {item(u"Open", u"open:", u"o"), item(u"Save & Send", u"save:", u"S"), item(u"", u"")})
      file->submenu()->addItem(each);
    attachMenu(*window.menuBar(), main);
    window.show();
    window.activateWindow();
  }

  Ref<NSMenu> main = std::make_shared<NSMenu>();
  QMainWindow window;
  std::string heard;
};

TEST_F(QtMenusTest, ShowWhatBecomesOfTheMenu) {
  EXPECT_EQ(titles(*window.menuBar()), "File(Open Save && Send -)");
  QMenu context;
  context.addAction(u"Mine"_qs);
  const Ref<NSMenu> file = main->items()[0]->submenu();
  attachMenu(context, file);
  QAction* const last = context.addAction(u"Last"_qs);
  changeItemTitle(*main, u"Öffnen\t&", SEL(u"open:"));
  file->addItem(item(u"Quit", u"quit:"));
  file->insertItem(item(u"New", u"new:"), 0);
  removeItemWithAction(*main, SEL(u"save:"));
  EXPECT_EQ(titles(*window.menuBar()), "File(New Öffnen && - Quit)");
  EXPECT_EQ(titles(context), "Mine New Öffnen && - Quit Last");
  // One action for each item, in all places.
  const Ref<NSMenuItem> open = itemWithAction(*main, SEL(u"open:"));
  QAction* const action = actionFor(*open);
  EXPECT_EQ(context.actions()[2], action);
  EXPECT_EQ(window.menuBar()->actions()[0]->menu()->actions()[1], action);
  EXPECT_EQ(menuItemFor(*action), open);
  EXPECT_EQ(action->objectName(), u"open:");
  EXPECT_EQ(menuItemFor(*last), nullptr);
  open->setSubmenu(std::make_shared<NSMenu>());
  open->submenu()->addItem(item(u"Recent", u"recent:"));
  EXPECT_EQ(titles(context), "Mine New Öffnen &&(Recent) - Quit Last");
  open->setSubmenu(nullptr);
  attachMenu(context, nullptr);
  EXPECT_EQ(titles(context), "Mine Last");
  attachMenu(*window.menuBar(), nullptr);
  EXPECT_EQ(actionFor(*open), nullptr);
}

TEST_F(QtMenusTest, ChoosingPerformsTheAction) {
  CapturedSystemLog log;
  const Ref<NSMenuItem> open = itemWithAction(*main, SEL(u"open:"));
  actionFor(*open)->trigger();
  // A handler may throw, and remove the very item.
  itemWithAction(*main, SEL(u"save:"))->setHandler([&](NSMenuItem& chosen) {
    chosen.menu()->removeItem(chosen);
    throw std::runtime_error("oh");
  });
  actionFor(*itemWithAction(*main, SEL(u"save:")))->trigger();
  EXPECT_EQ(heard, "Open;");
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"ERROR - Exception occurred: oh"));
  EXPECT_EQ(titles(*window.menuBar()), "File(Open -)");
}

TEST_F(QtMenusTest, KeyEquivalentsAreShortcuts) {
  const std::pair<TextView, const char*> rows[] = {{u"", ""},
                                                   {u"s", "Ctrl+S"},
                                                   {u"S", "Ctrl+Shift+S"},
                                                   {u",", "Ctrl+,"},
                                                   {u"\x7F", "Ctrl+Backspace"},
                                                   {u"\uF700", "Ctrl+Up"},
                                                   {u"\uF704", "F1"},
                                                   {u"\uF726", "F35"},
                                                   {u"\uF746", "Help"},
                                                   {u"ab", ""}};
  for (const auto& [key, shortcut] : rows) {
    const auto each = item(u"x", u"x:", key);
    main->addItem(each);
    EXPECT_EQ(actionFor(*each)->shortcut().toString(QKeySequence::PortableText).toStdString(), shortcut);
  }
  // The one item is shown twice, and still the only one with these keys.
  QMenu context(&window);
  attachMenu(context, main->items()[0]->submenu());
  QApplication::setActiveWindow(&window);
  QTest::keyClick(&window, Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(heard, "Open;");
}

TEST_F(QtMenusTest, AnActionMayStandInAToolbarToo) {
  QToolBar* const bar = window.addToolBar(u"Bar"_qs);
  bar->addAction(actionFor(*itemWithAction(*main, SEL(u"open:"))));
  const std::weak_ptr<NSToolbarItem> shown = toolbarFor(*bar)->items()[0];
  removeItemWithAction(*main, SEL(u"open:"));
  EXPECT_TRUE(bar->actions().isEmpty());
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(shown.expired());
}

TEST_F(QtMenusTest, PopUpOverAViewAndReturnWhenClosed) {
  const Ref<NSMenu> menu = std::make_shared<NSMenu>();
  menu->addItem(item(u"First", u"first:"));
  menu->addItem(item(u"Second", u"second:"));
  QWidget anchor(&window);
  anchor.setGeometry(20, 60, 300, 30);
  anchor.show();
  window.setGeometry(100, 100, 500, 400);
  enum { Choose, Dismiss, OddFrame, Delete } what = Choose;
  bool pullsDown = false;
  int shown = 0;
  auto doomed = std::make_unique<QWidget>(&window);
  SyntheticUser user([&] {
    auto* const popUp = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!popUp) return;
    ++shown;
    if (what == Delete) return doomed.reset();
    if (what == OddFrame) {
      EXPECT_LE(popUp->width(), popUp->screen()->geometry().width());
      return void(popUp->close());
    }
    EXPECT_EQ(popUp->activeAction(), nullptr);
    EXPECT_GE(popUp->width(), 300);
    EXPECT_EQ(popUp->pos(), anchor.mapToGlobal(QPoint(0, pullsDown ? 30 : 0)));
    if (what == Choose)
      QTest::mouseClick(popUp, Qt::LeftButton, {}, popUp->actionGeometry(actionFor(*menu->items().back())).center());
    else
      QTest::mouseClick(popUp, Qt::LeftButton, {}, QPoint(-50, -50));
  });
  NSMenuExtensions::popUpMenu(menu, viewFor(anchor), false);
  EXPECT_EQ(heard, "Second;");
  what = Dismiss;
  pullsDown = true;
  NSMenuExtensions::popUpMenu(menu, viewFor(anchor), true);
  EXPECT_EQ(heard, "Second;");
  EXPECT_EQ(menu->numberOfItems(), 3U) << "what stands for the title is put in once more for a menu that pulls down";
  for (const double odd : {NaN, infinity, -infinity, 1e300}) {
    what = OddFrame;
    Desktop::current().popUpMenu({menu, {odd, odd, odd, odd}, viewFor(window), true});
  }
  what = Delete;
  NSMenuExtensions::popUpMenu(menu, viewFor(*doomed), false);
  EXPECT_EQ(shown, 7);
  NSMenuExtensions::popUpMenu(std::make_shared<NSMenu>(), viewFor(anchor), true);
}

}  // namespace
