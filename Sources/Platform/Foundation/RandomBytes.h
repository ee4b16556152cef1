#pragma once

#include <cstdint>
#include <span>

#include "Platform/Foundation/Export.h"

namespace kelvane {

// Fills `bytes` from the system's random source, which needs no seeding and is fit for secrets. Any thread.
KELVANE_EXPORT void fillWithRandomBytes(std::span<std::uint8_t> bytes);

}  // namespace kelvane
