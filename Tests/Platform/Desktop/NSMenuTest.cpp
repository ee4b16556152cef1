#include "Platform/Desktop/NSMenu.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

Ref<NSMenuItem> item(TextView title) { return std::make_shared<NSMenuItem>(Text(title)); }

TEST(SEL, NamesAreKeptOnce) {
  const SEL open(Text(u"open:"));
  EXPECT_EQ(open.name(), u"open:");
  EXPECT_TRUE(open == SEL(u"open:") && !(open == SEL(u"Open:")) && SEL(u"") == SEL());
}

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
  const auto refused = [](auto work, const char* reason) {
    EXPECT_THAT(work, ThrowsMessage<std::invalid_argument>(HasSubstr(reason)));
  };
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

}  // namespace
}  // namespace kelvane
