#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// The shadow that something casts when it is drawn. A copyable value. One thread at a time.
class KELVANE_EXPORT NSShadow : public NSObject {
 public:
  // How far the shadow lies to the right of what casts it, and above it.
  const CGSize& shadowOffset() const { return myOffset; }
  void setShadowOffset(const CGSize& offset) { myOffset = offset; }
  // How far its edge is smeared; 0 for a sharp one.
  double shadowBlurRadius() const { return myBlurRadius; }
  void setShadowBlurRadius(double radius) { myBlurRadius = radius; }
  // Black of one third, until another one is set.
  const NSColor& shadowColor() const { return myColor; }
  void setShadowColor(const NSColor& color) { myColor = color; }

  // Equal when offset, radius and colour are.
  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  Ref<NSObject> copy() const override;

 private:
  CGSize myOffset;
  double myBlurRadius = 0;
  NSColor myColor = NSColor::colorWithCalibratedWhite(0, 1.0 / 3);
};

// The same under the name that hosts use.
class KELVANE_EXPORT OSShadow : public NSShadow {};

}  // namespace kelvane
