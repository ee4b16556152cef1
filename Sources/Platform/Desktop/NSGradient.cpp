#include "Platform/Desktop/NSGradient.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Platform/Foundation/Raise.h"

namespace kelvane {
namespace {

double withinLine(double location) { return std::isnan(location) ? 0 : std::clamp(location, 0.0, 1.0); }

std::vector<NSGradient::Stop> atEqualDistances(const std::vector<NSColor>& colors) {
  std::vector<NSGradient::Stop> stops;
  stops.reserve(colors.size());
  const auto last = static_cast<double>(std::max<std::size_t>(colors.size(), 2) - 1);
  for (const NSColor& color : colors) stops.push_back({color, static_cast<double>(stops.size()) / last});
  return stops;
}

NSColor calibrated(const NSColor& color) {
  const NSColor clear = NSColor::colorWithCalibratedRed(0, 0, 0, 0);
  return color.colorUsingColorSpace(NSColor::Space::CalibratedRGB).value_or(clear);
}

}  // namespace

NSGradient::NSGradient(const std::vector<NSColor>& colors) : NSGradient(atEqualDistances(colors)) {}

NSGradient::NSGradient(std::vector<Stop> stops) : myStops(std::move(stops)) {
  if (myStops.empty()) raiseInvalidArgument("initWithColorsAndLocations:", "there are no colours");
  for (Stop& stop : myStops) stop.location = withinLine(stop.location);
  std::ranges::stable_sort(myStops, {}, &Stop::location);
}

NSColor NSGradient::interpolatedColorAtLocation(double location) const {
  const double place = withinLine(location);
  const auto next = std::ranges::upper_bound(myStops, place, {}, &Stop::location);
  if (next == myStops.begin()) return calibrated(next->color);
  const Stop& before = *std::prev(next);
  if (next == myStops.end()) return calibrated(before.color);
  const double share = (place - before.location) / (next->location - before.location);
  const NSColor from = calibrated(before.color);
  const NSColor to = calibrated(next->color);
  return NSColor::colorWithCalibratedRed(std::lerp(from.redComponent(), to.redComponent(), share),
                                         std::lerp(from.greenComponent(), to.greenComponent(), share),
                                         std::lerp(from.blueComponent(), to.blueComponent(), share),
                                         std::lerp(from.alphaComponent(), to.alphaComponent(), share));
}

}  // namespace kelvane
