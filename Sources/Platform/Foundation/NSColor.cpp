#include "Platform/Foundation/NSColor.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>

#include "Platform/Foundation/TextNumbers.h"

namespace kelvane {
namespace {

TextView nameOf(NSColor::Space space) {
  switch (space) {
    case NSColor::Space::CalibratedRGB:
      return u"NSCalibratedRGBColorSpace";
    case NSColor::Space::DeviceRGB:
      return u"NSDeviceRGBColorSpace";
    case NSColor::Space::CalibratedWhite:
      return u"NSCalibratedWhiteColorSpace";
    case NSColor::Space::DeviceWhite:
      break;
  }
  return u"NSDeviceWhiteColorSpace";
}

}  // namespace

std::optional<NSColor> NSColor::colorUsingColorSpace(Space space) const {
  if (std::ranges::any_of(components(), [](double component) { return std::isnan(component); })) return std::nullopt;
  if (space == Space::CalibratedRGB || space == Space::DeviceRGB)
    return NSColor(space, redComponent(), greenComponent(), blueComponent(), alphaComponent());
  const double white =
      isWhite() ? myComponents[0] : 0.30 * redComponent() + 0.59 * greenComponent() + 0.11 * blueComponent();
  return NSColor(space, white, alphaComponent());
}

bool NSColor::isEqual(const NSObject& other) const {
  const NSColor* color = as<NSColor>(&other);
  return color && color->mySpace == mySpace && color->myComponents == myComponents;
}

std::size_t NSColor::hash() const {
  std::size_t hash = static_cast<std::size_t>(mySpace);
  for (const double component : components()) hash = hash * 31 + std::hash<double>()(component);
  return hash;
}

Text NSColor::description() const {
  Text text(nameOf(mySpace));
  for (const double component : components()) {
    text += u' ';
    text += shortestDecimal(component);
  }
  return text;
}

Ref<NSObject> NSColor::copy() const {
  return selfOr([this] { return std::make_shared<NSColor>(*this); });
}

}  // namespace kelvane
