#pragma once

#include <cstdint>
#include <limits>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Points, sizes and rectangles in a plane whose y grows upwards: a rectangle's origin is its lower left corner. Plain
// values; pure functions for any thread.
namespace kelvane {

namespace detail {

// From 2^52 on, all numbers are whole; NaN is taken for one.
constexpr bool isSurelyWhole(double number) { return !(number > -4503599627370496.0 && number < 4503599627370496.0); }

}  // namespace detail

// Arithmetic that the standard library has not for constant expressions. A NaN among the numbers makes NaN; rounding
// leaves infinities as they are.
constexpr double CGMin(double a, double b) { return a != a || a < b ? a : b; }
constexpr double CGMax(double a, double b) { return a != a || a > b ? a : b; }
constexpr double CGFloor(double number) {
  if (detail::isSurelyWhole(number)) return number;
  const auto cut = static_cast<std::int64_t>(number);
  // Counted in integers, it needs no branch that half of all numbers would take.
  return static_cast<double>(cut - (static_cast<double>(cut) > number));
}
constexpr double CGCeil(double number) {
  if (detail::isSurelyWhole(number)) return number;
  const auto cut = static_cast<std::int64_t>(number);
  return static_cast<double>(cut + (static_cast<double>(cut) < number));
}

struct CGPoint {
  double x = 0;
  double y = 0;
  friend constexpr bool operator==(const CGPoint&, const CGPoint&) = default;
};

struct CGSize {
  double width = 0;
  double height = 0;
  friend constexpr bool operator==(const CGSize&, const CGSize&) = default;
};

struct CGRect {
  CGPoint origin;
  CGSize size;

  constexpr CGRect() = default;
  constexpr CGRect(CGPoint theOrigin, CGSize theSize) : origin(theOrigin), size(theSize) {}
  constexpr CGRect(double x, double y, double width, double height) : origin{x, y}, size{width, height} {}
  friend constexpr bool operator==(const CGRect&, const CGRect&) = default;
};

// The zero rectangle, and the rectangle that is nowhere: the union with it is the other one.
inline constexpr CGRect CGRectZero;
inline constexpr CGRect CGRectNull{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(), 0,
                                   0};

constexpr bool CGRectIsNull(const CGRect& rect) {
  return rect.origin.x == CGRectNull.origin.x || rect.origin.y == CGRectNull.origin.y;
}

// The same area with a width and height that are not negative. The functions below take rectangles as if standardised.
constexpr CGRect CGRectStandardize(CGRect rect) {
  if (rect.size.width < 0) {
    rect.origin.x += rect.size.width;
    rect.size.width = -rect.size.width;
  }
  if (rect.size.height < 0) {
    rect.origin.y += rect.size.height;
    rect.size.height = -rect.size.height;
  }
  return rect;
}

constexpr double CGRectGetMinX(const CGRect& rect) { return CGRectStandardize(rect).origin.x; }
constexpr double CGRectGetMinY(const CGRect& rect) { return CGRectStandardize(rect).origin.y; }
constexpr double CGRectGetMaxX(const CGRect& rect) {
  const CGRect r = CGRectStandardize(rect);
  return r.origin.x + r.size.width;
}
constexpr double CGRectGetMaxY(const CGRect& rect) {
  const CGRect r = CGRectStandardize(rect);
  return r.origin.y + r.size.height;
}
constexpr double CGRectGetMidX(const CGRect& rect) { return rect.origin.x + rect.size.width / 2; }
constexpr double CGRectGetMidY(const CGRect& rect) { return rect.origin.y + rect.size.height / 2; }

// No area: null, or a width or height of 0 or NaN.
constexpr bool CGRectIsEmpty(const CGRect& rect) {
  const CGRect r = CGRectStandardize(rect);
  return CGRectIsNull(r) || !(r.size.width > 0) || !(r.size.height > 0);
}

// Whether the point lies in the rectangle. The left and lower edges belong to it, the right and upper ones do not; a
// NaN lies nowhere.
//   {{0, 0}, {2, 2}} with {0, 0} => true      with {2, 1} => false
constexpr bool CGRectContainsPoint(const CGRect& rect, const CGPoint& point) {
  return !CGRectIsEmpty(rect) && point.x >= CGRectGetMinX(rect) && point.x < CGRectGetMaxX(rect) &&
         point.y >= CGRectGetMinY(rect) && point.y < CGRectGetMaxY(rect);
}

// Whether two rectangles have an area in common: those that only touch, and empty ones, do not.
constexpr bool CGRectIntersectsRect(const CGRect& a, const CGRect& b) {
  return !CGRectIsEmpty(a) && !CGRectIsEmpty(b) && CGRectGetMinX(a) < CGRectGetMaxX(b) &&
         CGRectGetMinX(b) < CGRectGetMaxX(a) && CGRectGetMinY(a) < CGRectGetMaxY(b) &&
         CGRectGetMinY(b) < CGRectGetMaxY(a);
}

// The area in common; CGRectNull when there is none.
KELVANE_EXPORT CGRect CGRectIntersection(const CGRect& a, const CGRect& b);

// The smallest rectangle around both. Empty rectangles count with their place, only null ones do not; a NaN in either
// makes NaN.
//   {{0, 0}, {1, 1}} and {{3, 4}, {0, 0}} => {{0, 0}, {3, 4}}
KELVANE_EXPORT CGRect CGRectUnion(const CGRect& a, const CGRect& b);

// The smallest rectangle with whole coordinates around `rect`: floor of the origin, ceiling of the far edges, whatever
// the signs. A null rectangle stays null.
//   {{0.5, -0.5}, {1, 1}} => {{0, -1}, {2, 2}}
constexpr CGRect CGRectIntegral(const CGRect& rect) {
  if (CGRectIsNull(rect)) return rect;
  const CGRect r = CGRectStandardize(rect);
  const CGPoint origin{CGFloor(r.origin.x), CGFloor(r.origin.y)};
  return {origin, {CGCeil(r.origin.x + r.size.width) - origin.x, CGCeil(r.origin.y + r.size.height) - origin.y}};
}

// Text forms: "{x, y}", "{w, h}", "{{x, y}, {w, h}}", each number in the shortest decimal that reads back.
KELVANE_EXPORT Text NSStringFromPoint(const CGPoint& point);
KELVANE_EXPORT Text NSStringFromSize(const CGSize& size);
KELVANE_EXPORT Text NSStringFromRect(const CGRect& rect);

// The values of these texts, with any white space between their elements; zero when a text does not read whole. Reads
// "inf", "-inf" and "nan" as they are written.
KELVANE_EXPORT CGPoint NSPointFromString(TextView text);
KELVANE_EXPORT CGSize NSSizeFromString(TextView text);
KELVANE_EXPORT CGRect NSRectFromString(TextView text);

}  // namespace kelvane
