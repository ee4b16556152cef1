#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// The numbers of a transform: x' = m11 x + m21 y + tX, y' = m12 x + m22 y + tY.
struct NSAffineTransformStruct {
  double m11 = 1;
  double m12 = 0;
  double m21 = 0;
  double m22 = 1;
  double tX = 0;
  double tY = 0;
  friend constexpr bool operator==(const NSAffineTransformStruct&, const NSAffineTransformStruct&) = default;
};

// Takes points from one coordinate system to another by moving, scaling, turning and shearing. A copyable value. One
// thread at a time.
class KELVANE_EXPORT NSAffineTransform : public NSObject {
 public:
  // The identity.
  NSAffineTransform() = default;
  explicit NSAffineTransform(const NSAffineTransformStruct& numbers) : myNumbers(numbers) {}

  const NSAffineTransformStruct& transformStruct() const { return myNumbers; }
  void setTransformStruct(const NSAffineTransformStruct& numbers) { myNumbers = numbers; }

  // translateXBy:yBy:, scaleXBy:yBy:, scaleBy:, rotateByDegrees:, rotateByRadians:  The new step comes before all that
  // the transform does so far. Angles turn from the positive x axis towards the positive y axis.
  void translateXBy(double x, double yBy);
  void scaleXBy(double x, double yBy);
  void scaleBy(double factor) { scaleXBy(factor, factor); }
  void rotateByDegrees(double angle);
  void rotateByRadians(double angle);

  // appendTransform:, prependTransform:  The other transform comes after this one, or before it.
  void appendTransform(const NSAffineTransform& transform);
  void prependTransform(const NSAffineTransform& transform);
  // Turns the transform round. std::invalid_argument, and no change, when it cannot be: it maps the plane to a line or
  // a point, or its numbers are not finite.
  void invert();

  CGPoint transformPoint(const CGPoint& point) const;
  // transformSize:  By the linear part alone; the result may be negative.
  CGSize transformSize(const CGSize& size) const;
  // The smallest rectangle around what becomes of the rectangle.
  CGRect transformRect(const CGRect& rect) const;

  // Equal when the numbers are.
  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // "[m11, m12, m21, m22, tX, tY]".
  Text description() const override;
  Ref<NSObject> copy() const override;

 private:
  NSAffineTransformStruct myNumbers;
};

// The same under the name that hosts use.
class KELVANE_EXPORT OSAffineTransform : public NSAffineTransform {
 public:
  using NSAffineTransform::NSAffineTransform;
};

}  // namespace kelvane
