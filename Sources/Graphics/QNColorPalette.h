#pragma once

#include <optional>

#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// Colours from HTML's notation and back: names ("red", "Navy") and hexadecimal definitions ("#ff8000", "#f80"). The
// names are those of CSS, from the library's resource "QNColorPalette.plist"; it is read when a name is first asked
// for, and without it there are no names. Thread-safe.
//
// ```cpp
// const NSColor colour = QNColorPalette::colorForString(u"Orange").value_or(NSColor::blackColor());
// const Text definition = QNColorPalette::stringForColor(colour);  // "#ffa500"
// ```
//
// A gamma other than 1.0 stands between the notation and the components: each component is raised to it on the way in,
// and to its inverse on the way out. A gamma that is not above 0 counts as 1.0.
class KELVANE_EXPORT QNColorPalette {
 public:
  QNColorPalette() = delete;

  // colorForString:  The colour of that name, in any case of its letters; else the one that `colorForHexString` makes
  // of the text. What begins with "#" is never a name. Nothing for nil and empty text.
  //   u"Navy" => 0, 0, 128/255      u"fff" => white      u"#red" => black      u"navyy" => black
  static std::optional<NSColor> colorForString(std::optional<TextView> string) { return colorForString(string, 1.0); }
  // colorForString:andGamma:
  static std::optional<NSColor> colorForString(std::optional<TextView> string, double gamma);

  // stringForColor:  "#" and two lower-case hexadecimal digits each for red, green and blue as they are in calibrated
  // RGB. Components are held within 0...1 and rounded to the nearest step, ties to even; one that is not a number gives
  // 00. Nil gives nothing.
  static Text stringForColor(const NSColor& color) { return stringForColor(color, 1.0); }
  static std::optional<Text> stringForColor(const NSColor* color) { return stringForColor(color, 1.0); }
  // stringForColor:andGamma:
  static Text stringForColor(const NSColor& color, double gamma);
  static std::optional<Text> stringForColor(const NSColor* color, double gamma);
};

// The colour that a hexadecimal definition stands for, which is always one, with alpha 1.0. Reads 40 code units at
// most. White space and "#" at the start are skipped, white space among the digits too, and "o" and "O" are taken for
// 0; any other character ends the reading. The last three groups of digits are red, green and blue: one digit each for
// up to five digits, and wherever a character ended the reading; two for six to eight; three for more.
//   u" # 12 34 56" => #123456      u"#1o1o1o" => #101010      u"#12g456" => 0, 1/15, 2/15
KELVANE_EXPORT NSColor colorForHexString(TextView string, double gamma = 1.0);

}  // namespace kelvane
