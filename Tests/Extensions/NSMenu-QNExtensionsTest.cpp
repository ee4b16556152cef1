#include "Extensions/NSEvent-QNExtensions.h"
#include "Extensions/NSMenu-QNExtensions.h"
#include "Extensions/NSPopUpButton-QNExtensions.h"
#include "Extensions/NSShadow-QNExtensions.h"
#include "Extensions/NSToolbar-QNExtensions.h"
#include "Support/FakeDesktop.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

const SEL actionX(u"x:");
const SEL actionY(u"y:");

// Titles in the order in which searches go.
std::vector<Text> titles(const NSMenu& menu) {
  std::vector<Text> all;
  for (const Ref<NSMenuItem>& item : menu.items()) {
    all.push_back(item->title());
    if (!item->submenu()) continue;
    const std::vector<Text> below = titles(*item->submenu());
    all.insert(all.end(), below.begin(), below.end());
  }
  return all;
}

Ref<NSMenuItem> addItem(NSMenu& menu, TextView title, SEL action, std::int64_t tag = 0) {
  const auto item = std::make_shared<NSMenuItem>(Text(title), action);
  item->setTag(tag);
  menu.addItem(item);
  return item;
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

  changeItemTitle(menu, u"new", actionX);  // every one
  EXPECT_THAT(titles(menu), ElementsAre(u"a", u"new", u"c", u"new"));
  holder->setAction(actionY);
  EXPECT_EQ(itemWithAction(menu, actionY), holder);  // before those that it opens
  removeItemWithAction(menu, actionX);               // from the menu that holds it
  EXPECT_THAT(titles(menu), ElementsAre(u"a", u"c", u"new"));
  EXPECT_EQ(submenu->numberOfItems(), 1U);
}

TEST(NSMenuExtensions, PopsUpOverAView) {
  const auto desktop = FakeDesktop::install();
  const auto menu = std::make_shared<NSMenu>();
  const auto view = std::make_shared<FakeView>(CGRect{10, 20, 30, 40});
  addItem(*menu, u"a", actionX);
  NSMenuExtensions::popUpMenu(menu, view, false);
  NSMenuExtensions::popUpMenu(menu, view, true);
  NSMenuExtensions::popUpMenu(menu, nullptr, true);
  Desktop::install(nullptr);

  ASSERT_EQ(desktop->myPopUps.size(), 3U);
  EXPECT_EQ(desktop->myPopUps[0].frame, CGRect(0, 0, 30, 40));
  EXPECT_EQ(desktop->myPopUps[0].view, view);
  EXPECT_FALSE(desktop->myPopUps[0].pullsDown);
  EXPECT_TRUE(desktop->myPopUps[1].pullsDown);
  EXPECT_EQ(desktop->myPopUps[2].frame, CGRectZero);
  // What stands for the title stays, one for each time.
  EXPECT_THAT(titles(*menu), ElementsAre(u"", u"", u"a"));
}

TEST(NSPopUpButton, TheLastOfSeveralStaysSelected) {
  struct Button : FakeViewOf<NSPopUpButton> {
    std::size_t numberOfItems() const override { return titles.size(); }
    Text itemTitleAtIndex(std::size_t index) const override { return titles[index]; }
    void selectItemAtIndex(std::size_t index) override { selections.push_back(index); }
    std::size_t indexOfSelectedItem() const override { return selections.empty() ? NSNotFound : selections.back(); }
    std::vector<Text> titles{u"Open", u"Save", u"OPEN", u"Straße"};
    std::vector<std::size_t> selections;
  } button;
  selectItemWithTitleIgnoreCase(button, u"open");
  EXPECT_THAT(button.selections, ElementsAre(0, 2));
  selectItemWithTitleIgnoreCase(button, u"STRASSE");
  EXPECT_EQ(button.indexOfSelectedItem(), 3U);
}

TEST(NSToolbar, FirstItemOfThatIdentifier) {
  FakeToolbar toolbar;
  for (const TextView identifier : {u"a", u"b", u"b", u""})
    toolbar.myItems.push_back(std::make_shared<NSToolbarItem>(Text(identifier)));
  EXPECT_EQ(qn_itemForIdentifier(toolbar, u"b"), toolbar.myItems[1]);
  EXPECT_EQ(qn_itemForIdentifier(toolbar, u"B"), nullptr);
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
}  // namespace kelvane
