#pragma once

#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// A core image: what is known of it is the rectangle that it covers, in pixels. Immutable.
class KELVANE_EXPORT CIImage : public NSObject {
 public:
  explicit CIImage(const CGRect& extent) : myExtent(extent) {}

  const CGRect& extent() const { return myExtent; }

 private:
  CGRect myExtent;
};

}  // namespace kelvane
