#pragma once

#include <cstdint>
#include <vector>

#include "Platform/Desktop/NSImage.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

class NSView;

// A count in white digits, such as how many items are being dragged, on the narrowest of a series of pictures that
// holds them. Main thread only.
//
// ```cpp
// const auto badge = QNBadgeImage::badgeWithGreenImages();
// if (const Ref<NSImage> image = badge.imageWithNumber(12))
//   image->compositeToPoint({80, 4}, NSCompositingOperation::SourceOver);
// ```
class KELVANE_EXPORT QNBadgeImage : public NSObject {
 public:
  // badgeWithImageName:  A badge on the pictures name1, name2, name3... of the library's bundle, each a "tiff" or else
  // a "png", up to the first that is missing or cannot be read. They are expected to be of one height, and each wider
  // than the one before. When there is not even the first that is logged.
  static QNBadgeImage badgeWithImageName(TextView imageName) {
    return badgeWithImageName(imageName, NSBundle::libraryBundle());
  }
  // The same from the resources of another bundle.
  static QNBadgeImage badgeWithImageName(TextView imageName, const NSBundle& bundle);
  // badgeWithDragImages  The library's series for what is dragged.
  static QNBadgeImage badgeWithDragImages() { return badgeWithImageName(u"QNDragBadge"); }
  // badgeWithGreenImages  The library's green series, whose digits are larger.
  static QNBadgeImage badgeWithGreenImages();

  // imageWithNumber:  A new image of the first picture that is wider than the digits by 12 points, else of the last,
  // with the digits in its middle. There are none for 0, a negative count and the largest there is, which means that
  // nobody knows; of larger counts the low 32 bits are shown. Nil, and logged, when the badge has no pictures.
  Ref<NSImage> imageWithNumber(std::int64_t number) const;

  // dragImageWithBaseImage:number:andMousePosition:inView:  A new image of the base image at the upper left and a drag
  // badge at the lower right, which overlap by 10 points each way, both a little transparent. The mouse position, if it
  // is not null, is moved so that the base image stays under the pointer, in the coordinates of the view; those of a
  // null view are not flipped. A nil base image has no size.
  static Ref<NSImage> dragImageWithBaseImage(const Ref<NSImage>& baseImage, std::int64_t number,
                                             CGPoint* andMousePosition, const NSView* inView);
  // The same with a badge of any kind; a nil one has no size.
  static Ref<NSImage> dragImageWithBaseImage(const Ref<NSImage>& baseImage, const Ref<NSImage>& badge,
                                             CGPoint* andMousePosition, const NSView* inView);

 private:
  QNBadgeImage() = default;

  std::vector<Ref<NSImage>> myBackgroundImages;
  bool myIsGreenBadge = false;
};

}  // namespace kelvane
