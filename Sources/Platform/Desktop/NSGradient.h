#pragma once

#include <cstddef>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// Colours that flow into one another along a line from 0 to 1. A copyable value. Immutable.
class KELVANE_EXPORT NSGradient : public NSObject {
 public:
  struct Stop {
    NSColor color;
    double location;
  };

  // initWithColors:  The colours at equal distances. Here and below, std::invalid_argument when there is none.
  explicit NSGradient(const std::vector<NSColor>& colors);
  // initWithStartingColor:endingColor:
  NSGradient(const NSColor& startingColor, const NSColor& endingColor)
      : NSGradient(std::vector<NSColor>{startingColor, endingColor}) {}
  // initWithColorsAndLocations:  The colours at these locations, which are held within 0 and 1; NaN counts as 0. Those
  // at the same location stay in the order in which they are given.
  explicit NSGradient(std::vector<Stop> stops);

  std::size_t numberOfColorStops() const { return myStops.size(); }
  // By ascending location.
  const std::vector<Stop>& colorStops() const { return myStops; }
  // interpolatedColorAtLocation:  The colour at that place, in calibrated RGB: mixed from its neighbours, and before
  // the first stop and behind the last one as there. NaN counts as 0, and a colour with a component that is not a
  // number as clear.
  NSColor interpolatedColorAtLocation(double location) const;

 private:
  std::vector<Stop> myStops;
};

// The same under the name that hosts use.
class KELVANE_EXPORT OSGradient : public NSGradient {
 public:
  using NSGradient::NSGradient;
};

}  // namespace kelvane
