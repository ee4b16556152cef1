#include "Window/MainMenu.h"

#include <memory>
#include <span>

namespace notebook {
namespace {

using kelvane::NSMenu;
using kelvane::NSMenuItem;
using kelvane::Ref;
using kelvane::SEL;
using kelvane::Text;
using kelvane::TextView;

struct Line {
  TextView title;
  TextView action;
  TextView keyEquivalent = u"";
};

// Without title and action it is a separator.
constexpr Line separator{u"", u""};

constexpr Line fileLines[] = {{u"New Note", u"newNote:", u"n"},
                              {u"New Folder", u"newFolder:", u"N"},
                              separator,
                              {u"Save", u"save:", u"s"},
                              {u"Revert to Saved", u"revertNote:"},
                              separator,
                              {u"Import…", u"importNote:", u"o"},
                              {u"Export…", u"exportNote:", u"e"},
                              {u"Page as JPEG…", u"exportPage:"},
                              separator,
                              {u"Move to Folder…", u"moveToFolder:", u"M"},
                              {u"Move to Trash", u"moveToTrash:", u"\xF728"},
                              separator,
                              {u"Preferences…", u"showPreferences:", u","},
                              {u"Quit", u"quit:", u"q"}};
constexpr Line editLines[] = {{u"Undo", u"undo:", u"z"},
                              {u"Redo", u"redo:", u"Z"},
                              separator,
                              {u"Cut", u"cut:", u"x"},
                              {u"Copy", u"copy:", u"c"},
                              {u"Paste", u"paste:", u"v"},
                              {u"Select All", u"selectAll:", u"a"},
                              separator,
                              {u"Rename", u"renameEntry:", u"r"},
                              {u"Search Notes", u"searchNotes:", u"F"},
                              {u"Find in Note", u"findInNote:", u"f"}};
constexpr Line formatLines[] = {{u"Bold", u"bold:", u"b"},
                                {u"Italic", u"italic:", u"i"},
                                {u"Underline", u"underline:", u"u"},
                                separator,
                                {u"Bigger", u"bigger:", u"+"},
                                {u"Smaller", u"smaller:", u"-"},
                                separator,
                                {u"Link…", u"setLink:", u"k"}};
constexpr Line colorLines[] = {{u"Black", u"color:"},    {u"Firebrick", u"color:"}, {u"DarkOrange", u"color:"},
                               {u"SeaGreen", u"color:"}, {u"RoyalBlue", u"color:"}, {u"Purple", u"color:"},
                               {u"Gray", u"color:"}};
constexpr Line viewLines[] = {{u"Zoom In", u"zoomIn:", u"="},
                              {u"Zoom Out", u"zoomOut:", u"_"},
                              {u"Actual Size", u"actualSize:", u"0"},
                              separator,
                              {u"Use Dark Theme", u"toggleTheme:", u"T"},
                              {u"Hide Toolbar", u"toggleToolbar:"},
                              separator,
                              {u"Go to Outline", u"goToOutline:", u"1"},
                              {u"Go to Note", u"goToNote:", u"2"}};

Ref<NSMenuItem> itemOf(const Line& line, const Commands& commands) {
  auto item = std::make_shared<NSMenuItem>(Text(line.title), SEL(line.action), Text(line.keyEquivalent));
  if (!line.action.empty()) item->setHandler(commands.at(line.action));
  return item;
}

Ref<NSMenu> menuOf(TextView title, std::span<const Line> lines, const Commands& commands) {
  auto menu = std::make_shared<NSMenu>(Text(title));
  for (const Line& line : lines) menu->addItem(itemOf(line, commands));
  return menu;
}

void addSubmenu(NSMenu& menu, const Ref<NSMenu>& submenu) {
  auto item = std::make_shared<NSMenuItem>(submenu->title());
  item->setSubmenu(submenu);
  menu.addItem(item);
}

Ref<NSMenu> helpMenu(const Commands& commands) {
  auto menu = std::make_shared<NSMenu>(u"Help");
  std::int64_t tag = 0;
  for (const PageLink& link : pageLinks()) {
    auto item = std::make_shared<NSMenuItem>(link.title, SEL(u"openPage:"));
    item->setTag(tag++);
    item->setHandler(commands.at(u"openPage:"));
    menu->addItem(item);
  }
  menu->addItem(std::make_shared<NSMenuItem>());
  menu->addItem(itemOf({u"Send Feedback…", u"sendFeedback:"}, commands));
  menu->addItem(itemOf({u"About Notebook", u"showAbout:"}, commands));
  return menu;
}

}  // namespace

std::vector<PageLink> pageLinks() {
  return {{u"Notebook Web Site", u"home"}, {u"Questions and Answers", u"faq"}, {u"Known Faults", u"bugs"}};
}

Ref<NSMenu> mainMenu(const Commands& commands) {
  auto menu = std::make_shared<NSMenu>();
  addSubmenu(*menu, menuOf(u"File", fileLines, commands));
  addSubmenu(*menu, menuOf(u"Edit", editLines, commands));
  const Ref<NSMenu> format = menuOf(u"Format", formatLines, commands);
  addSubmenu(*format, menuOf(u"Colour", colorLines, commands));
  addSubmenu(*menu, format);
  addSubmenu(*menu, menuOf(u"View", viewLines, commands));
  addSubmenu(*menu, helpMenu(commands));
  return menu;
}

}  // namespace notebook
