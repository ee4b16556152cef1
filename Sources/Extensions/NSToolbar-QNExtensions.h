#pragma once

#include <optional>

#include "Platform/Desktop/NSToolbar.h"
#include "Platform/Foundation/Export.h"

namespace kelvane {

// qn_itemForIdentifier:  The first item that has the identifier; nil when none has, and for a nil one. Main thread
// only.
KELVANE_EXPORT Ref<NSToolbarItem> qn_itemForIdentifier(const NSToolbar& receiver, std::optional<TextView> identifier);

}  // namespace kelvane
