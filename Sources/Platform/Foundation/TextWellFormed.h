#pragma once

#include <optional>
#include <string_view>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Decoding that tells what was well-formed, for readers that have another encoding to fall back on or must refuse. Pure
// functions in linear time, any thread.
namespace kelvane {

// Whether each surrogate of the text is half of a pair.
KELVANE_EXPORT bool isWellFormed(TextView text);

// The text that `bytes` hold as UTF-8 (Unicode Standard, table 3-7); nothing when any part of them is ill-formed. A
// byte-order mark is kept as U+FEFF. `textFromUTF8` is the same for those who take U+FFFD for the ill-formed.
KELVANE_EXPORT std::optional<Text> textFromWellFormedUTF8(std::string_view bytes);

}  // namespace kelvane
