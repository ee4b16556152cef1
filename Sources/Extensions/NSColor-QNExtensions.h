#pragma once

#include <optional>

#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/Text.h"

// Colours as a host meets them: written in HTML, and behind text. Any thread.
//
// ```cpp
// if (const auto colour = NSColorExtensions::colorWithHtmlDefinition(u"navy")) {
//   const NSColor label = contrastingColor(*colour);  // white
//   const Text definition = htmlDefinition(*colour);  // "#000080"
// }
// ```
namespace kelvane {

// htmlDefinition  "#" and six hexadecimal digits; QNColorPalette.h tells the rules.
KELVANE_EXPORT Text htmlDefinition(const NSColor& receiver);

// contrastingColor  Black or white, whichever can be read on this colour: black when the mean of red, green and blue in
// generic RGB is 0.5 or more, and when one of them is not a number.
KELVANE_EXPORT NSColor contrastingColor(const NSColor& receiver);

namespace NSColorExtensions {

// colorWithHtmlDefinition:  The colour of an HTML name or definition; nothing for nil and empty text.
KELVANE_EXPORT std::optional<NSColor> colorWithHtmlDefinition(std::optional<TextView> definition);

}  // namespace NSColorExtensions

}  // namespace kelvane
