#pragma once

#include <cstdint>
#include <span>

#include "Platform/Foundation/Export.h"

namespace kelvane {

// Fills `bytes` from the system's random source, which needs no seeding and is fit for secrets. Any thread.
KELVANE_EXPORT void fillWithRandomBytes(std::span<std::uint8_t> bytes);

// 32 bits from the same source. Each thread keeps a store of them, so that few calls reach the system; a forked process
// begins a store of its own. Any thread.
KELVANE_EXPORT std::uint32_t randomWord();

}  // namespace kelvane
