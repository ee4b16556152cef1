#pragma once

#include "Platform/Desktop/ImageCodec.h"

namespace kelvane {

// PNG, JPEG and TIFF files: reads all images of a TIFF file, at 8 bits a component and in sRGB whatever their own
// colour space is. Of a file of more than a thousand images, or whose images together hold more than
// `largestPixelCount` pixels, there are none.
class QtImageCodec final : public ImageCodec {
 public:
  // Lifts Qt's own limit for reading images, which photographs exceed, to ours, if it is lower.
  QtImageCodec();

  std::vector<Ref<NSImageRep>> decode(std::span<const std::uint8_t> bytes) override;
  Ref<NSData> encode(const NSBitmapImageRep& image, NSBitmapImageFileType type,
                     const NSDictionary& properties) override;
};

}  // namespace kelvane
