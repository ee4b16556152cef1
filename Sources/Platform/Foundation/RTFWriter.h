#pragma once

#include <cstdint>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSAttributedString.h"

namespace kelvane {

// Styled text as a document in RTF 1.9, in ASCII, which word processors open.
//
//   font               its family by name, its size to the half point, bold, italic; without one, Helvetica at 12
//   underline style    a single line, for any number but 0
//   foreground colour  in sRGB, without its alpha; without one, the reader's own
//   link               a HYPERLINK field around the runs that have equal links, with the link's description
//
// A line end of any kind (LF, CR, CR LF, NEL, U+2029) is a paragraph's end, U+2028 and vertical tab a line break, form
// feed a page break. Other control characters and U+0000 are left out, as RTF has none. Everything beyond ASCII is
// written as the numbers of its code units, with "?" for readers that know no Unicode. Linear, any thread.
KELVANE_EXPORT std::vector<std::uint8_t> rtfOfStyledText(const NSAttributedString& text);

}  // namespace kelvane
