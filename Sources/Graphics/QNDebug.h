#pragma once

#include <concepts>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSColor.h"

namespace kelvane {

// Makes rectangles visible while a layout is being worked on. Draws in the current context, whose state is the same
// afterwards; nothing where there is none.
//
// ```cpp
// QNDebug::drawRect({20, 20, 100, 40}, NSColor::redColor());
// ```
class KELVANE_EXPORT QNDebug {
 public:
  // drawRect:usingColor:fillBackground:  The outline and both diagonals in the colour, two units wide (one of which is
  // outside of the rectangle), on grey where the background is to be filled.
  static void drawRect(const CGRect& rect, const NSColor& usingColor, std::same_as<bool> auto fillBackground) {
    draw(rect, usingColor, fillBackground);
  }
  // drawRect:usingColor:  On grey.
  static void drawRect(const CGRect& rect, const NSColor& usingColor) { draw(rect, usingColor, true); }

 private:
  static void draw(const CGRect& rect, const NSColor& color, bool fillBackground);
};

}  // namespace kelvane
