#include "Platform/Desktop/NSImageRep.h"

#include <utility>

#include "Platform/Desktop/Desktop.h"
#include "Platform/Desktop/ImageCodec.h"

namespace kelvane {

NSBitmapImageRep::NSBitmapImageRep(BitmapPixels pixels) : myPixels(std::move(pixels)) {
  if (!myPixels.data || myPixels.pixelsWide < 1 || myPixels.pixelsHigh < 1 ||
      myPixels.pixelsPerRow < myPixels.pixelsWide)
    myPixels = {};
  setSize({static_cast<double>(myPixels.pixelsWide), static_cast<double>(myPixels.pixelsHigh)});
}

Ref<NSData> NSBitmapImageRep::representationUsingType(NSBitmapImageFileType type,
                                                      const Ref<NSDictionary>& properties) const {
  ImageCodec* codec = Desktop::current().imageCodec();
  if (!codec || !myPixels.data) return nullptr;
  return codec->encode(*this, type, properties ? *properties : NSDictionary());
}

Ref<NSObject> NSBitmapImageRep::copy() const { return std::make_shared<NSBitmapImageRep>(*this); }

}  // namespace kelvane
