#pragma once

#include "Platform/Desktop/NSGraphicsContext.h"
#include "Platform/Desktop/NSImageRep.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"

namespace kelvane {

// A picture in memory to draw into, transparent at first. One thread at a time.
class KELVANE_EXPORT OffscreenImage {
 public:
  OffscreenImage() = default;
  OffscreenImage(const OffscreenImage&) = delete;
  OffscreenImage& operator=(const OffscreenImage&) = delete;
  virtual ~OffscreenImage();

  // Not flipped. Lives as long as this.
  virtual NSGraphicsContext& context() = 0;
  // What has been drawn, of the size that was asked for. The drawing is over: called once, and last.
  virtual Ref<NSBitmapImageRep> takeBitmap() = 0;
};

}  // namespace kelvane
