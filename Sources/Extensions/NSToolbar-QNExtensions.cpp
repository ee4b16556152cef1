#include "Extensions/NSToolbar-QNExtensions.h"

namespace kelvane {

Ref<NSToolbarItem> qn_itemForIdentifier(const NSToolbar& receiver, std::optional<TextView> identifier) {
  if (!identifier) return nullptr;
  for (const Ref<NSToolbarItem>& item : receiver.items())
    if (item->itemIdentifier() == *identifier) return item;
  return nullptr;
}

}  // namespace kelvane
