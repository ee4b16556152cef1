#pragma once

#include <cstdint>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/Text.h"

// Measuring and drawing text, by the installed desktop. Of the attributes (NSAttributedString.h) count the font, the
// foreground colour and the underline; without a font it is the system font of the ordinary size, without a colour
// black. Nil stands for no attributes. Main thread only.
namespace kelvane {

// Bits of the drawing options. With NSStringDrawingUsesLineFragmentOrigin the text is broken into lines that fill the
// rectangle from its top; without, it is one line, whose base line begins at the rectangle's origin. Others are the
// desktop's own.
inline constexpr std::int64_t NSStringDrawingUsesLineFragmentOrigin = 1;

// sizeWithAttributes:  What the text takes, broken at its line ends only. Without a desktop that knows fonts, 0 by 0.
KELVANE_EXPORT CGSize sizeWithAttributes(TextView text, const Ref<NSDictionary>& attributes);

// These draw in the current context; nothing where there is none.

// drawAtPoint:withAttributes:  The lines broken at their ends only, with the lower left corner of all at the point, or
// the upper left one where the context is flipped.
KELVANE_EXPORT void drawAtPoint(TextView text, const CGPoint& point, const Ref<NSDictionary>& withAttributes);
// drawInRect:withAttributes:  Lines that fill the rectangle from its top, clipped to it.
KELVANE_EXPORT void drawInRect(TextView text, const CGRect& rect, const Ref<NSDictionary>& withAttributes);
// drawWithRect:options:attributes:
KELVANE_EXPORT void drawWithRect(TextView text, const CGRect& rect, std::int64_t options,
                                 const Ref<NSDictionary>& attributes);

}  // namespace kelvane
