#pragma once

#include <QPointF>
#include <QRect>
#include <QRectF>
#include <algorithm>
#include <cmath>

#include "Platform/Foundation/Geometry.h"

// The one place where y is turned round: in Qt it grows downwards and a rectangle's origin is its upper left corner, in
// the library it grows upwards and the origin is the lower left one. `lowerLeft` is the corner, in Qt's coordinates,
// that the library calls (0, 0): of the primary screen for windows, of the widget for what is in it.
namespace kelvane {

inline CGRect rectFromQt(const QRectF& rect, const QPointF& lowerLeft) {
  return {rect.x() - lowerLeft.x(), lowerLeft.y() - rect.y() - rect.height(), rect.width(), rect.height()};
}

inline QRectF rectToQt(const CGRect& rect, const QPointF& lowerLeft) {
  return {rect.origin.x + lowerLeft.x(), lowerLeft.y() - rect.origin.y - rect.size.height, rect.size.width,
          rect.size.height};
}

// Whether the window system can make anything of the numbers.
inline bool isFinite(const CGSize& size) { return std::isfinite(size.width) && std::isfinite(size.height); }
inline bool isFinite(const CGRect& rect) {
  return std::isfinite(rect.origin.x) && std::isfinite(rect.origin.y) && isFinite(rect.size);
}

// The whole unit that is nearest, the greater of two; within what windows and widgets can be at all. 0 for what is no
// number.
inline int wholeUnit(double number) {
  if (std::isnan(number)) return 0;
  return static_cast<int>(std::floor(std::clamp(number, -16777215.0, 16777215.0) + 0.5));
}

// The nearest rectangle of whole units. Origin and size are rounded each for itself, so that a rectangle has the same
// size wherever it is.
inline CGRect wholeUnits(const CGRect& rect) {
  return {1.0 * wholeUnit(rect.origin.x), 1.0 * wholeUnit(rect.origin.y), 1.0 * wholeUnit(rect.size.width),
          1.0 * wholeUnit(rect.size.height)};
}
inline QRect wholeUnits(const QRectF& rect) {
  return {wholeUnit(rect.x()), wholeUnit(rect.y()), wholeUnit(rect.width()), wholeUnit(rect.height())};
}

}  // namespace kelvane
