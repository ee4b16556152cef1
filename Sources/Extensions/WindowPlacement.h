#pragma once

#include "Platform/Foundation/Geometry.h"

// Where windows go: the geometry behind the operations on them, apart from any window system. `visible` is what panels
// and docks leave of the screen, `frame` the window's outer rectangle; sizes never change. Nothing is guarded: NaN and
// sizes of 0 or less flow through. Pure functions for any thread.
namespace kelvane::WindowPlacement {

// The distance from the right and the lower edge of the screen.
inline constexpr double margin = 30;
// Shares of a length in single precision, as they always were: 0.30000001192092896 and 0.699999988079071.
inline constexpr double smallerShare = 0.3F;
inline constexpr double largerShare = 0.7F;

// The middle of the screen, rounded down.
//   {{0, 0}, {1001, 800}} => {500, 400}
constexpr CGPoint center(const CGRect& visible) {
  return {CGFloor(visible.origin.x + visible.size.width / 2), CGFloor(visible.origin.y + visible.size.height / 2)};
}

// Centred from left to right, one third of the free height above and two thirds below; not rounded.
//   200 x 100 on {{0, 0}, {1000, 800}} => {400, 466.6666666666667}
constexpr CGRect atGoldenMiddle(const CGRect& frame, const CGRect& visible) {
  return {{(visible.size.width - frame.size.width) * 0.5 + visible.origin.x,
           2 * ((visible.size.height - frame.size.height) / 3) + visible.origin.y},
          frame.size};
}

// Centred on the point from left to right, with the lower edge 0.3 of the window's width (the width it is) below it;
// rounded down.
//   200 x 100 on {500, 400} => {400, 339}
constexpr CGRect onPoint(const CGRect& frame, const CGPoint& point) {
  return {{CGFloor(point.x - 0.5 * frame.size.width), CGFloor(point.y - smallerShare * frame.size.width)}, frame.size};
}

// In the lower right corner, at the margin.
//   200 x 100 on {{0, 0}, {1000, 800}} => {770, 30}
constexpr CGRect atBottomRight(const CGRect& frame, const CGRect& visible) {
  return {{visible.origin.x + visible.size.width - frame.size.width - margin, visible.origin.y + margin}, frame.size};
}

// Moved to the left and up as far as it takes to keep the margin on the right and below. The left and the upper edge of
// the screen do not count.
//   {{900, 10}, {200, 100}} on {{0, 0}, {1000, 800}} => {{770, 30}, {200, 100}}
constexpr CGRect stayingOnScreen(const CGRect& frame, const CGRect& visible) {
  return {{CGMin(visible.origin.x + visible.size.width - frame.size.width - margin, frame.origin.x),
           CGMax(visible.origin.y + margin, frame.origin.y)},
          frame.size};
}

// To the lower right of the middle, 0.3 of the way to the corner; 0.7 of it where the window would otherwise lie over
// `others`. Keeps the margin on the right and below, even so.
constexpr CGRect atGoldenMiddleToBottomRight(const CGRect& frame, const CGRect& visible, const CGRect& others) {
  const CGPoint middle = center(visible);
  const double halfWidth = visible.size.width * 0.5;
  const double halfHeight = visible.size.height * 0.5;
  const auto outAt = [&](double share) {
    return onPoint(frame, {CGFloor(halfWidth * share) + middle.x, middle.y - CGFloor(halfHeight * share)});
  };
  CGRect candidate = outAt(smallerShare);
  if (CGRectIntersectsRect(candidate, others)) candidate = outAt(largerShare);
  return stayingOnScreen(candidate, visible);
}

}  // namespace kelvane::WindowPlacement
