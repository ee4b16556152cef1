#include "Extensions/NSColor-QNExtensions.h"

#include "Graphics/QNColorPalette.h"

namespace kelvane {

Text htmlDefinition(const NSColor& receiver) { return QNColorPalette::stringForColor(receiver); }

NSColor contrastingColor(const NSColor& receiver) {
  const auto color = receiver.colorUsingColorSpace(NSColor::Space::CalibratedRGB);
  if (!color) return NSColor::blackColor();
  const double mean = (color->redComponent() + color->greenComponent() + color->blueComponent()) / 3.0;
  return mean >= 0.5 ? NSColor::blackColor() : NSColor::whiteColor();
}

std::optional<NSColor> NSColorExtensions::colorWithHtmlDefinition(std::optional<TextView> definition) {
  return QNColorPalette::colorForString(definition);
}

}  // namespace kelvane
