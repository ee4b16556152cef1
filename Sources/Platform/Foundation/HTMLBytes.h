#pragma once

#include <string_view>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// The text of an HTML file, in the encoding that its bytes say: a byte-order mark (UTF-8 or UTF-16, which is left out),
// else the `charset` that a `meta` tag in the first 1,024 bytes declares (13.2.3.2), else windows-1252, as the standard
// has it for pages that say nothing. Declarations of encodings that ICU does not know do not count; "iso-8859-1" and
// "us-ascii" mean windows-1252 as they do everywhere, and a declared UTF-16 must be UTF-8. Bytes that make no character
// become U+FFFD. Linear, any thread.
KELVANE_EXPORT Text textOfHTMLBytes(std::string_view bytes);

}  // namespace kelvane
