#pragma once

#include <cstdint>

#include "Platform/Foundation/Export.h"

// The instruction sets that the library's vector loops may use, a bit for each, of which the lowest is the best. Hosts
// need none of this: the best one is chosen at the first call. It is for tests, which judge every loop on every set,
// and for measurements. Any thread.
namespace kelvane {

// All that the loops are compiled for and this machine has.
KELVANE_EXPORT std::int64_t supportedVectorTargets();

// From now on the loops use the best of `targets`, in the whole process. All of `targets` must be supported.
KELVANE_EXPORT void useVectorTargets(std::int64_t targets);

}  // namespace kelvane
