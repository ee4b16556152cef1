#include "Platform/Desktop/NSAffineTransform.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <numbers>

#include "Platform/Foundation/Raise.h"
#include "Platform/Foundation/TextNumbers.h"

namespace kelvane {
namespace {

using Numbers = NSAffineTransformStruct;

Numbers oneAfterTheOther(const Numbers& first, const Numbers& then) {
  return {first.m11 * then.m11 + first.m12 * then.m21,         first.m11 * then.m12 + first.m12 * then.m22,
          first.m21 * then.m11 + first.m22 * then.m21,         first.m21 * then.m12 + first.m22 * then.m22,
          first.tX * then.m11 + first.tY * then.m21 + then.tX, first.tX * then.m12 + first.tY * then.m22 + then.tY};
}

}  // namespace

void NSAffineTransform::translateXBy(double x, double yBy) {
  myNumbers = oneAfterTheOther({1, 0, 0, 1, x, yBy}, myNumbers);
}

void NSAffineTransform::scaleXBy(double x, double yBy) {
  myNumbers = oneAfterTheOther({x, 0, 0, yBy, 0, 0}, myNumbers);
}

void NSAffineTransform::rotateByDegrees(double angle) {
  // Right angles are met exactly, so that what they turn stays on whole pixels.
  const double quarters = std::remainder(angle, 360.0) / 90;
  if (quarters != std::round(quarters)) return rotateByRadians(angle * std::numbers::pi / 180);
  const double cosine = quarters == 0 ? 1 : std::abs(quarters) == 2 ? -1 : 0;
  const double sine = std::abs(quarters) == 1 ? quarters : 0;
  myNumbers = oneAfterTheOther({cosine, sine, -sine, cosine, 0, 0}, myNumbers);
}

void NSAffineTransform::rotateByRadians(double angle) {
  const double cosine = std::cos(angle);
  const double sine = std::sin(angle);
  myNumbers = oneAfterTheOther({cosine, sine, -sine, cosine, 0, 0}, myNumbers);
}

void NSAffineTransform::appendTransform(const NSAffineTransform& transform) {
  myNumbers = oneAfterTheOther(myNumbers, transform.myNumbers);
}

void NSAffineTransform::prependTransform(const NSAffineTransform& transform) {
  myNumbers = oneAfterTheOther(transform.myNumbers, myNumbers);
}

void NSAffineTransform::invert() {
  const auto& [m11, m12, m21, m22, tX, tY] = myNumbers;
  const double determinant = m11 * m22 - m12 * m21;
  const Numbers inverse{m22 / determinant,
                        -m12 / determinant,
                        -m21 / determinant,
                        m11 / determinant,
                        (m21 * tY - m22 * tX) / determinant,
                        (m12 * tX - m11 * tY) / determinant};
  const double numbers[] = {inverse.m11, inverse.m12, inverse.m21, inverse.m22, inverse.tX, inverse.tY};
  if (determinant == 0 || !std::ranges::all_of(numbers, [](double number) { return std::isfinite(number); }))
    raiseInvalidArgument("invert", "there is no inverse of", description());
  myNumbers = inverse;
}

CGPoint NSAffineTransform::transformPoint(const CGPoint& point) const {
  const auto& [m11, m12, m21, m22, tX, tY] = myNumbers;
  return {m11 * point.x + m21 * point.y + tX, m12 * point.x + m22 * point.y + tY};
}

CGSize NSAffineTransform::transformSize(const CGSize& size) const {
  const auto& [m11, m12, m21, m22, tX, tY] = myNumbers;
  return {m11 * size.width + m21 * size.height, m12 * size.width + m22 * size.height};
}

CGRect NSAffineTransform::transformRect(const CGRect& rect) const {
  const CGPoint origin = transformPoint(rect.origin);
  const CGSize along = transformSize({rect.size.width, 0});
  const CGSize up = transformSize({0, rect.size.height});
  const CGPoint low{origin.x + CGMin(0, along.width) + CGMin(0, up.width),
                    origin.y + CGMin(0, along.height) + CGMin(0, up.height)};
  return {low, {std::abs(along.width) + std::abs(up.width), std::abs(along.height) + std::abs(up.height)}};
}

bool NSAffineTransform::isEqual(const NSObject& other) const {
  const auto* transform = as<NSAffineTransform>(&other);
  return transform && transform->myNumbers == myNumbers;
}

std::size_t NSAffineTransform::hash() const {
  const auto& [m11, m12, m21, m22, tX, tY] = myNumbers;
  std::size_t hash = 0;
  for (const double number : {m11, m12, m21, m22, tX, tY}) hash = hash * 31 + std::hash<double>()(number);
  return hash;
}

Text NSAffineTransform::description() const {
  const auto& [m11, m12, m21, m22, tX, tY] = myNumbers;
  Text text = u"[";
  for (const double number : {m11, m12, m21, m22, tX, tY}) {
    if (text.size() > 1) text += u", ";
    text += shortestDecimal(number);
  }
  return text + u"]";
}

Ref<NSObject> NSAffineTransform::copy() const { return std::make_shared<NSAffineTransform>(*this); }

}  // namespace kelvane
