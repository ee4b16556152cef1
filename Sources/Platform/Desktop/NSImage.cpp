#include "Platform/Desktop/NSImage.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "Platform/Desktop/Desktop.h"
#include "Platform/Desktop/ImageCodec.h"
#include "Platform/Desktop/OffscreenImage.h"
#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

constexpr std::size_t largestFile = std::size_t{1} << 30;

// How many pixels a point of user space takes, along the axis where it takes more.
double pixelsPerPoint(const NSGraphicsContext& context) {
  const auto transform = context.userSpaceToDeviceSpaceTransform().transformStruct();
  return std::max(std::hypot(transform.m11, transform.m12), std::hypot(transform.m21, transform.m22));
}

}  // namespace

Ref<NSImage> NSImage::imageWithContentsOfFile(TextView path) {
  ImageCodec* codec = Desktop::current().imageCodec();
  if (!codec) return nullptr;
  const FileContents file = readFile(fileSystemRepresentation(path), largestFile);
  if (file.error) return nullptr;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(file.bytes.data());
  const auto image = std::make_shared<NSImage>();
  for (Ref<NSImageRep>& representation : codec->decode({bytes, file.bytes.size()}))
    image->addRepresentation(std::move(representation));
  return image->myRepresentations.empty() ? nullptr : image;
}

Ref<NSImage> NSImage::imageWithSize(const CGSize& size, const std::function<void()>& draw) {
  auto image = std::make_shared<NSImage>(size);
  if (!(size.width > 0) || !(size.height > 0)) return image;
  const auto offscreen = Desktop::current().makeOffscreenImage(size);
  if (!offscreen) return image;
  {
    const CurrentContextScope scope(&offscreen->context());
    draw();
  }
  image->addRepresentation(offscreen->takeBitmap());
  return image;
}

CGSize NSImage::size() const {
  if (mySize) return *mySize;
  return myRepresentations.empty() ? CGSize() : myRepresentations.front()->size();
}

void NSImage::addRepresentation(Ref<NSImageRep> representation) {
  if (representation) myRepresentations.push_back(std::move(representation));
}

void NSImage::removeRepresentation(const Ref<NSImageRep>& representation) {
  std::erase(myRepresentations, representation);
}

Ref<NSImageRep> NSImage::representationForScale(double pixelsPerPoint) const {
  if (myRepresentations.empty() || !as<NSBitmapImageRep>(myRepresentations.front().get()))
    return myRepresentations.empty() ? nullptr : myRepresentations.front();
  const double needed = size().width * pixelsPerPoint;
  Ref<NSImageRep> best;
  double bestWidth = 0;
  for (const Ref<NSImageRep>& representation : myRepresentations) {
    const NSBitmapImageRep* bitmap = as<NSBitmapImageRep>(representation.get());
    if (!bitmap) continue;
    const auto width = static_cast<double>(bitmap->pixelsWide());
    if (best && (bestWidth >= needed ? width < needed || width >= bestWidth : width <= bestWidth)) continue;
    best = representation;
    bestWidth = width;
  }
  return best;
}

void NSImage::drawInRect(const CGRect& rect, const CGRect& fromRect, NSCompositingOperation operation,
                         double fraction) const {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  if (!context || myRepresentations.empty()) return;
  const CGSize whole = size();
  const CGRect from = fromRect == CGRectZero ? CGRect({0, 0}, whole) : fromRect;
  // As sharp as the drawing gets: larger than itself, the image needs more pixels.
  const double scale = pixelsPerPoint(*context) * std::abs(rect.size.width / from.size.width);
  const Ref<NSImageRep> representation = representationForScale(scale);
  const double x = representation->size().width / whole.width;
  const double y = representation->size().height / whole.height;
  context->drawRepresentation(*representation, rect,
                              {from.origin.x * x, from.origin.y * y, from.size.width * x, from.size.height * y},
                              operation, fraction);
}

void NSImage::compositeToPoint(const CGPoint& point, NSCompositingOperation operation, double fraction) const {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  if (!context) return;
  const CGSize whole = size();
  const double y = context->isFlipped() ? point.y - whole.height : point.y;
  drawInRect({{point.x, y}, whole}, CGRectZero, operation, fraction);
}

Ref<NSObject> NSImage::copy() const {
  auto image = std::make_shared<NSImage>();
  image->mySize = mySize;
  for (const Ref<NSImageRep>& representation : myRepresentations)
    image->addRepresentation(as<NSImageRep>(representation->copy()));
  return image;
}

}  // namespace kelvane
