#pragma once

#include <functional>
#include <map>

#include "Platform/Desktop/NSMenu.h"
#include "Platform/Foundation/SEL.h"
#include "Platform/Foundation/Text.h"

namespace notebook {

// What the menus ask for, by the names of their actions, and what is done then.
using Commands = std::map<kelvane::TextView, std::function<void(kelvane::NSMenuItem&)>>;

// The application's menus. Every item has its command in `commands`.
kelvane::Ref<kelvane::NSMenu> mainMenu(const Commands& commands);

// A link to a page of the maker's web site, under the key that the sitemap has it by.
struct PageLink {
  kelvane::Text title;
  kelvane::TextView key;
};
std::vector<PageLink> pageLinks();

}  // namespace notebook
