#pragma once

#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "Platform/Desktop/NSGraphicsContext.h"
#include "Platform/Desktop/NSImageRep.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// A picture of a nominal size in points, in one or several representations, in order. One thread at a time.
//
// ```cpp
// const Ref<NSImage> dot = NSImage::imageWithSize({16, 16}, [] {
//   NSBezierPathExtensions::bezierPathWithRoundedRect({0, 0, 16, 16}, 8).fill();
// });
// ```
class KELVANE_EXPORT NSImage : public NSObject {
 public:
  // Without representations, of the size of the first one that is added.
  NSImage() = default;
  // initWithSize:  Without representations.
  explicit NSImage(const CGSize& size) : mySize(size) {}
  // initWithContentsOfFile:  All representations that the file holds, their sizes by its resolution: a pixel is a point
  // at 72 to an inch, and 0.75 points at 96 (normalizeSize makes it a point whatever the file says). Nil when there is
  // no such file, when it is no image, damaged, or larger than 1 GB or than the desktop is willing to unpack, and
  // always on a desktop without a codec.
  static Ref<NSImage> imageWithContentsOfFile(TextView path);
  // A new image of `size` with what `draw` draws, in a current context that is made for it and not flipped, with as
  // many pixels to a point as the main screen has. Where there is no drawing offscreen (there is none without a
  // desktop, and none of a size that is not above 0 or exceeds the memory), `draw` is not called and the image has no
  // representations.
  static Ref<NSImage> imageWithSize(const CGSize& size, const std::function<void()>& draw);

  // size  What was set last; else that of the first representation, or zero.
  CGSize size() const;
  // setSize:
  void setSize(const CGSize& size) { mySize = size; }

  std::span<const Ref<NSImageRep>> representations() const { return myRepresentations; }
  // addRepresentation:  At the end; nil is not added.
  void addRepresentation(Ref<NSImageRep> representation);
  // removeRepresentation:
  void removeRepresentation(const Ref<NSImageRep>& representation);

  // The representation that is drawn where a point takes `pixelsPerPoint` pixels: of the bitmaps, the smallest with as
  // many pixels as are needed across, else the largest; nil when there are no representations. What is no bitmap knows
  // no pixels, and is always sharp: it is taken where it comes first.
  Ref<NSImageRep> representationForScale(double pixelsPerPoint) const;

  // These draw in the current context; nothing where there is none, or no representation.

  // drawInRect:fromRect:operation:fraction:  The part `fromRect` of the image, in the units of its size, scaled into
  // `rect`; the zero rectangle stands for all of it. The alpha is the image's times `fraction`.
  void drawInRect(const CGRect& rect, const CGRect& fromRect, NSCompositingOperation operation, double fraction) const;
  // compositeToPoint:operation:fraction:  The whole image in its own size, with the corner at the point that is at its
  // lower left on the screen: also in a flipped context, where it reaches towards smaller y.
  void compositeToPoint(const CGPoint& point, NSCompositingOperation operation, double fraction = 1.0) const;

  // A new image of the same size, with copies of those representations that can be copied.
  Ref<NSObject> copy() const override;

 private:
  std::optional<CGSize> mySize;
  std::vector<Ref<NSImageRep>> myRepresentations;
};

}  // namespace kelvane
