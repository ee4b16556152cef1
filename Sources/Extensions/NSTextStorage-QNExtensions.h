#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSAttributedString.h"

// The fonts of styled text. Runs without a font stay as they are, the other attributes of all runs too. Both return the
// receiver, and take time for its runs. One thread at a time.
//
// ```cpp
// NSTextStorage page(attributedStringWithHTML(u"Read <b>this</b>"));
// scaleAttributedStringUsingFactor(page, 1.5);
// ```
namespace kelvane {

// scaleAttributedStringUsingFactor:  Each font in its own face at the size times the factor, rounded down to whole
// points. A factor of 0 changes nothing, and a font whose size would become 0 or less stays.
//   13 points by 1.5 => 19 points
KELVANE_EXPORT NSTextStorage& scaleAttributedStringUsingFactor(NSTextStorage& receiver, double factor);

// setFontSize:  Each font replaced by the plain face of its family at that very size, bold and italic ones too. A size
// of 0 changes nothing.
KELVANE_EXPORT NSTextStorage& setFontSize(NSTextStorage& receiver, double size);

}  // namespace kelvane
