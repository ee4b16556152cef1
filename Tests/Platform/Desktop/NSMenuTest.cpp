#include "Extensions/NSEvent-QNExtensions.h"
#include "Extensions/NSMenu-QNExtensions.h"
#include "Extensions/NSShadow-QNExtensions.h"
#include "Platform/Desktop/NSMenu.h"
#include "Support/Testing.h"

namespace {

Ref<NSMenuItem> item(TextView title) { return std::make_shared<NSMenuItem>(Text(title)); }

TEST(NSMenu, KnowsWhereItsItemsAre) {
  const auto submenu = std::make_shared<NSMenu>(u"below");
  const auto a = item(u"a");
  {
    NSMenu menu;
    menu.addItem(item(u"b"));
    menu.insertItem(a, 0);
    EXPECT_EQ(menu.indexOfItem(*a), 0U);
    EXPECT_EQ(submenu->indexOfItem(*a), NSNotFound);
    a->setSubmenu(submenu);
    EXPECT_EQ(submenu->supermenu(), &menu);
  }
  EXPECT_EQ(a->menu(), nullptr);
  a->setSubmenu(nullptr);
  item(u"short-lived")->setSubmenu(submenu);
  EXPECT_EQ(submenu->supermenu(), nullptr);
}

TEST(NSMenu, RefusesWhatIsNoTree) {
  const auto top = std::make_shared<NSMenu>(u"top");
  const auto middle = std::make_shared<NSMenu>(u"middle");
  const auto first = item(u"first");
  const auto second = item(u"second");
  const auto loose = item(u"loose");
  top->addItem(first);
  first->setSubmenu(middle);
  middle->addItem(second);
  const auto refused = [](auto work, const char* reason) { EXPECT_THAT(work, refuses(reason)); };
  refused([&] { second->setSubmenu(top); }, "setSubmenu: the menu would open within itself 'top'");
  refused([&] { loose->setSubmenu(middle); }, "another item has the menu already 'middle'");
  loose->setSubmenu(top);
  refused([&] { top->addItem(loose); }, "the menu would open within itself 'loose'");
  refused([&] { middle->addItem(loose); }, "the menu would open within itself 'loose'");
  refused([&] { middle->addItem(first); }, "the item is in a menu already 'first'");
  refused([&] { top->removeItem(*second); }, "the item is not in the menu 'second'");
  EXPECT_THROW(top->insertItem(item(u"x"), 2), std::out_of_range);
}

// Writes down what it hears, and goes away when it hears of a removal.
struct Listener : NSMenuObserver {
  void menuDidInsertItem(NSMenu& menu, std::size_t index) override { heard += u"+" + menu.itemAtIndex(index)->title(); }
  void menuDidRemoveItem(NSMenu& menu, NSMenuItem& removed, std::size_t index) override {
    heard += u"-" + removed.title() + Text(1, static_cast<char16_t>(u'0' + index));
    if (next) menu.removeMenuObserver(*next);
    menu.removeMenuObserver(*this);
  }
  void menuItemDidChange(NSMenu& menu, NSMenuItem& changed) override {
    heard += u"~" + changed.title();
    if (next) menu.addMenuObserver(*next);
  }

  Listener* next = nullptr;
  Text heard;
};

TEST(NSMenu, ObserversHearOfChanges) {
  NSMenu menu;
  Listener first, second;
  first.next = &second;
  menu.addMenuObserver(first);
  const auto a = item(u"a");
  menu.addItem(a);
  menu.addItem(item(u"b"));
  a->setTitle(u"A");  // the second listens from here on
  a->setSubmenu(std::make_shared<NSMenu>());
  a->submenu()->addItem(item(u"below"));
  menu.removeItemAtIndex(1);  // and no longer here, though it would be next
  a->setAction(SEL(u"x:"));
  EXPECT_EQ(first.heard, u"+a+b~A~A-b1");
  EXPECT_EQ(second.heard, u"~A");
}

const SEL actionX(u"x:");
const SEL actionY(u"y:");

Ref<NSMenuItem> addItem(NSMenu& menu, TextView title, SEL action, std::int64_t tag = 0) {
  menu.addItem(std::make_shared<NSMenuItem>(Text(title), action));
  menu.items().back()->setTag(tag);
  return menu.items().back();
}

// In the order in which searches go.
Text titles(const NSMenu& menu) {
  Text all;
  for (const Ref<NSMenuItem>& each : menu.items())
    all += each->title() + (each->submenu() ? u"(" + titles(*each->submenu()) + u")" : u"");
  return all;
}

TEST(NSMenuExtensions, SearchGoesDownBeforeItGoesOn) {
  NSMenu menu;
  const auto submenu = std::make_shared<NSMenu>();
  const auto holder = addItem(menu, u"a", SEL());
  addItem(*submenu, u"b", actionX, 1);
  addItem(*submenu, u"c", actionY);
  holder->setSubmenu(submenu);
  const auto last = addItem(menu, u"d", actionX, 2);

  EXPECT_EQ(itemWithAction(menu, actionX)->title(), u"b");
  EXPECT_EQ(itemWithAction(menu, SEL(u"x:"), 2), last);
  EXPECT_EQ(itemWithAction(menu, actionX, 3), nullptr);
  EXPECT_EQ(itemWithAction(menu, SEL()), holder);
  EXPECT_TRUE(hasItemWithAction(menu, actionY));

  changeItemTitle(menu, u"B", actionX);  // every one
  EXPECT_EQ(titles(menu), u"a(Bc)B");
  holder->setAction(actionY);
  EXPECT_EQ(itemWithAction(menu, actionY), holder);  // before those that it opens
  removeItemWithAction(menu, actionX);               // from the menu that holds it
  EXPECT_EQ(titles(menu), u"a(c)B");
  EXPECT_EQ(submenu->numberOfItems(), 1U);
}

TEST(NSShadow, FallsWhereTheAngleSays) {
  OSShadow shadow;
  setShadowAngle(shadow, 0, 4);
  EXPECT_EQ(shadow.shadowOffset(), (CGSize{0, 4}));
  EXPECT_EQ(shadow.shadowBlurRadius(), 4);
  // A quarter turn is a little more than half of pi here.
  setShadowAngle(shadow, 90, 4);
  EXPECT_DOUBLE_EQ(shadow.shadowOffset().width, 4);
  EXPECT_NEAR(shadow.shadowOffset().height, -9.282041333256967e-08, 1e-15);
}

TEST(NSEvent, KeysThatChangeCommands) {
  for (unsigned bit = 0; bit < 64; ++bit) {
    const bool changes = bit >= 17 && bit <= 23 && bit != 21 && bit != 22;
    EXPECT_EQ(isAnyCommandModificationKeyPressed(NSEvent(std::uint64_t{1} << bit)), changes) << bit;
  }
}

}  // namespace
