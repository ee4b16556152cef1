#pragma once

#include <array>
#include <optional>
#include <span>

#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// A colour: its components, from 0.0 to 1.0 each, in a colour space. Components beyond that are kept as they were
// given; who writes or draws them clamps. A copyable value. Immutable.
class KELVANE_EXPORT NSColor : public NSObject {
 public:
  // Red, green, blue and alpha, or white and alpha. The calibrated spaces are sRGB and its greys; the device spaces are
  // the screen's, which is taken to show sRGB.
  enum class Space { CalibratedRGB, DeviceRGB, CalibratedWhite, DeviceWhite };

  // From components as `components` gives them: a white space takes the first two.
  NSColor(Space space, double first, double second, double third = 0, double fourth = 0)
      : mySpace(space), myComponents{first, second, third, fourth} {}
  // colorWithCalibratedRed:green:blue:alpha:
  static NSColor colorWithCalibratedRed(double red, double green, double blue, double alpha) {
    return NSColor(Space::CalibratedRGB, red, green, blue, alpha);
  }
  // colorWithDeviceRed:green:blue:alpha:
  static NSColor colorWithDeviceRed(double red, double green, double blue, double alpha) {
    return NSColor(Space::DeviceRGB, red, green, blue, alpha);
  }
  // colorWithCalibratedWhite:alpha:
  static NSColor colorWithCalibratedWhite(double white, double alpha) {
    return NSColor(Space::CalibratedWhite, white, alpha);
  }
  // colorWithDeviceWhite:alpha:
  static NSColor colorWithDeviceWhite(double white, double alpha) { return NSColor(Space::DeviceWhite, white, alpha); }

  // The plain colours. The greys are calibrated white, the others calibrated RGB.
  static NSColor blackColor() { return colorWithCalibratedWhite(0, 1); }
  static NSColor darkGrayColor() { return colorWithCalibratedWhite(1.0 / 3, 1); }
  static NSColor grayColor() { return colorWithCalibratedWhite(0.5, 1); }
  static NSColor lightGrayColor() { return colorWithCalibratedWhite(2.0 / 3, 1); }
  static NSColor whiteColor() { return colorWithCalibratedWhite(1, 1); }
  static NSColor clearColor() { return colorWithCalibratedWhite(0, 0); }
  static NSColor redColor() { return colorWithCalibratedRed(1, 0, 0, 1); }
  static NSColor greenColor() { return colorWithCalibratedRed(0, 1, 0, 1); }
  static NSColor blueColor() { return colorWithCalibratedRed(0, 0, 1, 1); }
  static NSColor cyanColor() { return colorWithCalibratedRed(0, 1, 1, 1); }
  static NSColor magentaColor() { return colorWithCalibratedRed(1, 0, 1, 1); }
  static NSColor yellowColor() { return colorWithCalibratedRed(1, 1, 0, 1); }
  static NSColor orangeColor() { return colorWithCalibratedRed(1, 0.5, 0, 1); }
  static NSColor purpleColor() { return colorWithCalibratedRed(0.5, 0, 0.5, 1); }
  static NSColor brownColor() { return colorWithCalibratedRed(0.6, 0.4, 0.2, 1); }

  Space space() const { return mySpace; }
  bool isWhite() const { return mySpace == Space::CalibratedWhite || mySpace == Space::DeviceWhite; }
  // Four in an RGB space, two in a white one; alpha is the last.
  std::span<const double> components() const { return {myComponents.data(), isWhite() ? 2U : 4U}; }
  // In a white space all three are the white.
  double redComponent() const { return myComponents[0]; }
  double greenComponent() const { return myComponents[isWhite() ? 0 : 1]; }
  double blueComponent() const { return myComponents[isWhite() ? 0 : 2]; }
  double alphaComponent() const { return myComponents[isWhite() ? 1 : 3]; }

  // colorUsingColorSpace:  The colour as it looks in another space; grey is 0.30 red + 0.59 green + 0.11 blue. Nothing
  // when a component is not a number.
  std::optional<NSColor> colorUsingColorSpace(Space space) const;

  // Equal when space and components are.
  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // "NSCalibratedRGBColorSpace 1 0.5 0 1".
  Text description() const override;
  Ref<NSObject> copy() const override;

 private:
  Space mySpace;
  std::array<double, 4> myComponents;
};

}  // namespace kelvane
