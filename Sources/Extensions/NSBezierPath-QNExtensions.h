#pragma once

#include <cstdint>

#include "Platform/Desktop/NSBezierPath.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"

// Outlines that interfaces draw again and again: plates, whose short ends are half circles, and rectangles with round
// corners. Rectangles are taken as they are given, not standardised: one of negative width or height is no area. Any
// thread, a path being used by one at a time.
//
// ```cpp
// NSBezierPath outline = NSBezierPathExtensions::bezierPathWithRoundedRect({0, 0, 120, 24}, 6);
// if (NSGraphicsContext* context = NSGraphicsContext::currentContext()) {
//   context->setFillColor(NSColor::lightGrayColor());
//   outline.fill();
//   strokeInside(outline);
// }
// ```
namespace kelvane {

// Bits of a corner mask; others count for nothing.
inline constexpr std::uint32_t QNTopLeftCorner = 1;
inline constexpr std::uint32_t QNTopRightCorner = 2;
inline constexpr std::uint32_t QNBottomLeftCorner = 4;
inline constexpr std::uint32_t QNBottomRightCorner = 8;

// Plates. Both ends, or only one, are round, by half the height, also where the rectangle is narrower than high;
// nothing is appended when the height is not above 0.

// appendBezierPathWithPlateInRect:
KELVANE_EXPORT void appendBezierPathWithPlateInRect(NSBezierPath& receiver, const CGRect& rect);
// appendBezierPathWithLeftPlateInRect:  The left end is round.
KELVANE_EXPORT void appendBezierPathWithLeftPlateInRect(NSBezierPath& receiver, const CGRect& rect);
// appendBezierPathWithRightPlateInRect:  The right end is round.
KELVANE_EXPORT void appendBezierPathWithRightPlateInRect(NSBezierPath& receiver, const CGRect& rect);

// Rounded rectangles. Nothing is appended when width or height is not above 0, a plain rectangle when the radius is
// not; a radius of more than half the shorter side is taken for that half.

// appendBezierPathWithRoundedRect:cornerRadius:  All four corners are round.
KELVANE_EXPORT void appendBezierPathWithRoundedRect(NSBezierPath& receiver, const CGRect& rect, double cornerRadius);
// appendBezierPathWithRoundedRect:cornerRadius:corners:  The corners of the mask are round. Drawn shapes rely on two
// peculiarities: where the top left corner is round, the bottom right one is too and the bottom left one is not, the
// outline cuts the latter off; and where the bottom left corner is round and the bottom right one is not, it goes back
// into the former's point on its way.
KELVANE_EXPORT void appendBezierPathWithRoundedRect(NSBezierPath& receiver, const CGRect& rect, double cornerRadius,
                                                    std::uint32_t corners);

// strokeInside  Strokes the path in the current context (nothing is drawn where there is none), with its whole line
// width inside of the outline. The path's line width is doubled for that and stays so: a second call strokes twice as
// wide.
KELVANE_EXPORT void strokeInside(NSBezierPath& receiver);
// strokeInsideWithinRect:  The same, and only within the rectangle, unless its width or height is not above 0.
KELVANE_EXPORT void strokeInsideWithinRect(NSBezierPath& receiver, const CGRect& rect);

namespace NSBezierPathExtensions {

// New paths with that alone.

// bezierPathWithPlateInRect:
KELVANE_EXPORT NSBezierPath bezierPathWithPlateInRect(const CGRect& rect);
// bezierPathWithLeftPlateInRect:
KELVANE_EXPORT NSBezierPath bezierPathWithLeftPlateInRect(const CGRect& rect);
// bezierPathWithRightPlateInRect:
KELVANE_EXPORT NSBezierPath bezierPathWithRightPlateInRect(const CGRect& rect);
// bezierPathWithRoundedRect:cornerRadius:
KELVANE_EXPORT NSBezierPath bezierPathWithRoundedRect(const CGRect& rect, double cornerRadius);
// bezierPathWithRoundedRect:cornerRadius:corners:
KELVANE_EXPORT NSBezierPath bezierPathWithRoundedRect(const CGRect& rect, double cornerRadius, std::uint32_t corners);

}  // namespace NSBezierPathExtensions

}  // namespace kelvane
