#pragma once

#include "Platform/Foundation/Geometry.h"

namespace kelvane {

// The size with width and height each raised to the minimum and then lowered to the maximum, which therefore counts
// when the two contradict. A limit of 0 is none; a NaN among the numbers makes NaN.
//   50 x 500 within 100 x 0 and 0 x 400 => 100 x 400
constexpr CGSize sizeWithinLimits(const CGSize& size, const CGSize& minSize, const CGSize& maxSize) {
  constexpr auto limited = [](double length, double minimum, double maximum) {
    const double raised = minimum != 0 ? CGMax(minimum, length) : length;
    return maximum != 0 ? CGMin(maximum, raised) : raised;
  };
  return {limited(size.width, minSize.width, maxSize.width), limited(size.height, minSize.height, maxSize.height)};
}

}  // namespace kelvane
