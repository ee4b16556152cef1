#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// One form of an image: pixels of some resolution, a drawing that knows no pixels, and so on. Its size, in points, is
// how large it is drawn. Deriving from it makes other kinds. One thread at a time.
class KELVANE_EXPORT NSImageRep : public NSObject {
 public:
  NSImageRep() = default;
  explicit NSImageRep(const CGSize& size) : mySize(size) {}

  const CGSize& size() const { return mySize; }
  // setSize:
  void setSize(const CGSize& size) { mySize = size; }

  // draw  Draws the whole in the current context, from (0, 0) to its size. What has pixels is drawn from these instead.
  virtual void draw() const {}

  // A representation that is independent of this one; nil for kinds that cannot be copied, as long as they do not say
  // otherwise.
  Ref<NSObject> copy() const override { return nullptr; }

 private:
  CGSize mySize;
};

// Pixels in memory: rows from the top, in each from the left, one 32-bit number 0xAARRGGBB per pixel, sRGB, with alpha
// multiplied into the colours. Copies share the memory, which is never written to again: whoever fills it keeps no
// other way to it.
struct BitmapPixels {
  std::shared_ptr<const std::uint32_t> data;
  std::int64_t pixelsWide = 0;
  std::int64_t pixelsHigh = 0;
  // From the start of a row to that of the next, in pixels.
  std::int64_t pixelsPerRow = 0;
};

// Kinds of image files, by the platform's numbers.
enum class NSBitmapImageFileType : std::uint64_t { TIFF = 0, JPEG = 3, PNG = 4 };

// Properties of an encoding: how much of a JPEG image is kept, from 0.0 to 1.0, and whether it comes in passes.
inline constexpr TextView NSImageCompressionFactor = u"NSImageCompressionFactor";
inline constexpr TextView NSImageProgressive = u"NSImageProgressive";

// An image of pixels. They never change, so that copies share them.
class KELVANE_EXPORT NSBitmapImageRep : public NSImageRep {
 public:
  // A point for each pixel, until `setSize` tells otherwise. Without memory, with a width or height below 1 or rows
  // shorter than the width, there are no pixels.
  explicit NSBitmapImageRep(BitmapPixels pixels);

  std::int64_t pixelsWide() const { return myPixels.pixelsWide; }
  std::int64_t pixelsHigh() const { return myPixels.pixelsHigh; }
  // `data` is null when there are none.
  const BitmapPixels& pixels() const { return myPixels; }

  // representationUsingType:properties:  The bytes of an image file, encoded by the desktop's codec; nil when there is
  // no codec, or it fails. A missing property, also of nil properties, is as the codec finds best.
  Ref<NSData> representationUsingType(NSBitmapImageFileType type, const Ref<NSDictionary>& properties) const;

  // Shares the pixels, has a size of its own.
  Ref<NSObject> copy() const override;

 private:
  BitmapPixels myPixels;
};

}  // namespace kelvane
