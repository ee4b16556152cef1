#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Platform/Desktop/NSImageRep.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"

namespace kelvane {

// Reads and writes image files. A desktop has one. Any thread.
class KELVANE_EXPORT ImageCodec {
 public:
  ImageCodec() = default;
  ImageCodec(const ImageCodec&) = delete;
  ImageCodec& operator=(const ImageCodec&) = delete;
  virtual ~ImageCodec();

  // The images in the bytes of a file, in the file's order, their sizes by its resolution (72 pixels to an inch make a
  // pixel a point), turned upright where the file says how. None when the bytes are no image, damaged, or hold more
  // pixels than the codec is willing to unpack.
  virtual std::vector<Ref<NSImageRep>> decode(std::span<const std::uint8_t> bytes) = 0;

  // The bytes of an image file; nil when that fails. A JPEG file has no alpha: the image lies on white in it.
  // Properties of other kinds than told, and those that the type does not know, count for nothing; the compression
  // factor is a float, and what is beyond its limits is taken to these.
  virtual Ref<NSData> encode(const NSBitmapImageRep& image, NSBitmapImageFileType type,
                             const NSDictionary& properties) = 0;
};

}  // namespace kelvane
