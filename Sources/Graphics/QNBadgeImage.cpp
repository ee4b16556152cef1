#include "Graphics/QNBadgeImage.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

#include "Platform/Desktop/NSStringDrawing.h"
#include "Platform/Desktop/NSView.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSFont.h"
#include "Utilities/QNLogger.h"

namespace kelvane {
namespace {

// What the digits leave free at their sides, together.
constexpr double freeWidth = 12.0;
// By how much a drag badge overlaps what is dragged.
constexpr double overlap = 10.0;
constexpr double dragFraction = 0.8;

Ref<NSImage> pictureOfSeries(const NSBundle& bundle, TextView name) {
  auto path = bundle.pathForResource(name, u"tiff");
  if (!path) path = bundle.pathForResource(name, u"png");
  return path ? NSImage::imageWithContentsOfFile(*path) : nullptr;
}

Ref<NSDictionary> digitAttributes(double pointSize) {
  NSDictionary::Entries entries;
  entries.emplace(NSForegroundColorAttributeName, box(NSColor::whiteColor()));
  if (const auto font = NSFont::boldSystemFontOfSize(pointSize)) entries.emplace(NSFontAttributeName, box(*font));
  return std::make_shared<NSDictionary>(std::move(entries));
}

}  // namespace

QNBadgeImage QNBadgeImage::badgeWithImageName(TextView imageName, const NSBundle& bundle) {
  QNBadgeImage badge;
  badge.myBackgroundImages.reserve(4);
  for (int number = 1;; ++number) {
    const Text name = format(u"%@%d", imageName, number);
    auto picture = pictureOfSeries(bundle, name);
    if (!picture) {
      if (number == 1)
        QNLogger::sharedLogger().error(__LINE__, __FILE__, "+[QNBadgeImage badgeWithImageName:]",
                                       format(u"Can't load badge image '%@'.", name));
      return badge;
    }
    badge.myBackgroundImages.push_back(std::move(picture));
  }
}

QNBadgeImage QNBadgeImage::badgeWithGreenImages() {
  QNBadgeImage badge = badgeWithImageName(u"QNGreenBadge");
  badge.myIsGreenBadge = true;
  return badge;
}

Ref<NSImage> QNBadgeImage::imageWithNumber(std::int64_t number) const {
  if (myBackgroundImages.empty()) {
    QNLogger::sharedLogger().error(__LINE__, __FILE__, "-[QNBadgeImage imageWithNumber:]",
                                   u"No images available to create a badge.");
    return nullptr;
  }
  const double height = myBackgroundImages.front()->size().height;
  Text digits;
  Ref<NSDictionary> attributes;
  CGSize digitsSize;
  if (number > 0 && number != std::numeric_limits<std::int64_t>::max()) {
    digits = format(u"%d", static_cast<std::int32_t>(number));
    attributes = digitAttributes(CGFloor(height * (myIsGreenBadge ? 0.625 : 0.525)));
    digitsSize = sizeWithAttributes(digits, attributes);
  }
  const auto wideEnough =
      std::find_if(myBackgroundImages.begin(), myBackgroundImages.end(),
                   [&](const Ref<NSImage>& picture) { return picture->size().width >= digitsSize.width + freeWidth; });
  const Ref<NSImage>& background = wideEnough != myBackgroundImages.end() ? *wideEnough : myBackgroundImages.back();
  const CGSize size = background->size();
  return NSImage::imageWithSize(size, [&] {
    background->compositeToPoint({0, 0}, NSCompositingOperation::SourceOver);
    if (!digits.empty())
      drawAtPoint(digits,
                  {CGFloor((size.width - digitsSize.width) * 0.5), CGCeil((size.height - digitsSize.height) * 0.5)},
                  attributes);
  });
}

Ref<NSImage> QNBadgeImage::dragImageWithBaseImage(const Ref<NSImage>& baseImage, std::int64_t number,
                                                  CGPoint* andMousePosition, const NSView* inView) {
  return dragImageWithBaseImage(baseImage, badgeWithDragImages().imageWithNumber(number), andMousePosition, inView);
}

Ref<NSImage> QNBadgeImage::dragImageWithBaseImage(const Ref<NSImage>& baseImage, const Ref<NSImage>& badge,
                                                  CGPoint* andMousePosition, const NSView* inView) {
  const CGSize base = baseImage ? baseImage->size() : CGSize();
  const CGSize badgeSize = badge ? badge->size() : CGSize();
  const CGSize size{base.width + badgeSize.width - overlap, base.height + badgeSize.height - overlap};
  if (andMousePosition) {
    const double direction = inView && inView->isFlipped() ? 1.0 : -1.0;
    andMousePosition->x += size.width * 0.5 - base.width * 0.5;
    andMousePosition->y += (size.height * 0.5 - base.height * 0.5) * direction;
  }
  return NSImage::imageWithSize(size, [&] {
    if (baseImage)
      baseImage->compositeToPoint({0, size.height - base.height}, NSCompositingOperation::SourceOver, dragFraction);
    if (badge)
      badge->compositeToPoint({size.width - badgeSize.width, 0}, NSCompositingOperation::SourceOver, dragFraction);
  });
}

}  // namespace kelvane
