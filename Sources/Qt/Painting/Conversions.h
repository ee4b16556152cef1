#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QTransform>
#include <algorithm>
#include <cmath>

#include "Platform/Desktop/NSAffineTransform.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSColor.h"

// The library's plain values as Qt's, number for number: which way y goes is left to who draws.
namespace kelvane {

inline QPointF qtPoint(const CGPoint& point) { return {point.x, point.y}; }
inline QRectF qtRect(const CGRect& rect) { return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height}; }

inline QTransform qtTransform(const NSAffineTransform& transform) {
  const auto& m = transform.transformStruct();
  return {m.m11, m.m12, m.m21, m.m22, m.tX, m.tY};
}

// Clear when a component is not a number.
inline QColor qtColor(const NSColor& color) {
  const auto rgb = color.colorUsingColorSpace(NSColor::Space::CalibratedRGB);
  if (!rgb) return QColor(0, 0, 0, 0);
  const auto part = [](double component) { return static_cast<float>(std::clamp(component, 0.0, 1.0)); };
  return QColor::fromRgbF(part(rgb->redComponent()), part(rgb->greenComponent()), part(rgb->blueComponent()),
                          part(rgb->alphaComponent()));
}

// The far edges, too.
inline bool hasFiniteEdges(const CGRect& rect) {
  return std::isfinite(std::abs(rect.origin.x) + std::abs(rect.size.width)) &&
         std::isfinite(std::abs(rect.origin.y) + std::abs(rect.size.height));
}

inline bool hasArea(const CGRect& rect) { return hasFiniteEdges(rect) && rect.size.width > 0 && rect.size.height > 0; }

}  // namespace kelvane
