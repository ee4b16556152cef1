#pragma once

#include "Platform/Foundation/Export.h"

namespace kelvane {

// Registers the library's own classes for archives; later calls do nothing. Archiving and unarchiving call it.
KELVANE_EXPORT void registerArchivedValues();

}  // namespace kelvane
