#pragma once

#include <cstddef>
#include <string_view>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// The part of transcoding that nearly all text consists of, by vectors. Pure functions, any thread.
namespace kelvane {

// Writes the ASCII bytes that `bytes` begin with to `out` as code units, and returns how many they are. `out` must have
// room for as many units as there are bytes: what lies behind the returned length may be overwritten.
KELVANE_EXPORT std::size_t widenASCII(std::string_view bytes, char16_t* out);

// Writes the ASCII code units that `text` begins with to `out` as bytes, likewise.
KELVANE_EXPORT std::size_t narrowASCII(TextView text, char* out);

}  // namespace kelvane
