#include "Extensions/NSImage-QNExtensions.h"

#include <string_view>
#include <utility>

#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Utilities/QNLogger.h"

namespace kelvane {
namespace {

Ref<NSBitmapImageRep> firstBitmap(const NSImage& image) {
  for (const Ref<NSImageRep>& representation : image.representations())
    if (auto bitmap = as<NSBitmapImageRep>(representation)) return bitmap;
  return nullptr;
}

}  // namespace

Ref<NSImageRep> representationForSize(const NSImage& receiver, const CGSize& size) {
  for (const Ref<NSImageRep>& representation : receiver.representations())
    if (representation->size() == size) return representation;
  return nullptr;
}

Ref<NSImage> extractImageWithRepresentationOfSize(const NSImage& receiver, const CGSize& size) {
  const Ref<NSImageRep> representation = representationForSize(receiver, size);
  auto copy = representation ? as<NSImageRep>(representation->copy()) : nullptr;
  if (!copy) return nullptr;
  const auto image = std::make_shared<NSImage>();
  image->addRepresentation(std::move(copy));
  return image;
}

NSImage& normalizeSize(NSImage& receiver) {
  if (const auto bitmap = firstBitmap(receiver)) {
    const CGSize size{static_cast<double>(bitmap->pixelsWide()), static_cast<double>(bitmap->pixelsHigh())};
    bitmap->setSize(size);
    receiver.setSize(size);
  }
  return receiver;
}

Ref<NSData> JPGRepresentationWithCompression(const NSImage& receiver, double compression) {
  constexpr const char* method = "-[NSImage(QNExtensions) JPGRepresentationWithCompression:]";
  if (receiver.representations().empty()) {
    QNLogger::sharedLogger().error(__LINE__, __FILE__, method, u"No image representations on image.");
    return nullptr;
  }
  const auto bitmap = firstBitmap(receiver);
  if (!bitmap) {
    QNLogger::sharedLogger().error(__LINE__, __FILE__, method, u"Can't find bitmap representation of image.");
    return nullptr;
  }
  const auto properties = NSDictionary::dictionaryWithEntries(
      {{NSImageCompressionFactor, box(static_cast<float>(compression))}, {NSImageProgressive, box(false)}});
  return bitmap->representationUsingType(NSBitmapImageFileType::JPEG, properties);
}

void writeJPGRepresentationToFile(const NSImage& receiver, TextView path) {
  const Ref<NSData> data = JPGRepresentationWithCompression(receiver, 0.8);
  if (!data) {
    QNLogger::sharedLogger().error(__LINE__, __FILE__, "-[NSImage(QNExtensions) writeJPGRepresentationToFile:]",
                                   u"Can't make image into data.");
    return;
  }
  const std::string_view bytes(reinterpret_cast<const char*>(data->bytes().data()), data->length());
  // Whether that succeeds is the caller's to see.
  static_cast<void>(writeFileAtomically(fileSystemRepresentation(path), bytes, NewFileAccess::Customary));
}

void compositScaledImageToFrame(const NSImage& receiver, const CGRect& frame, const NSView*) {
  // The log has the two lines around the drawing also where nothing can be drawn.
  NSLog(u"START");
  const auto scaled = NSImage::imageWithSize(frame.size, [&] {
    receiver.drawInRect({{0, 0}, frame.size}, {{0, 0}, receiver.size()}, NSCompositingOperation::Copy, 1.0);
  });
  NSLog(u"STOP");
  scaled->compositeToPoint({frame.origin.x, frame.origin.y + frame.size.height}, NSCompositingOperation::SourceOver);
}

void drawCenteredInRect(const NSImage& receiver, const CGRect& rect, const CGSize& size,
                        NSCompositingOperation operation, double fraction) {
  const CGPoint origin{rect.origin.x + CGCeil((rect.size.width - size.width) * 0.5),
                       rect.origin.y + CGCeil((rect.size.height - size.height) * 0.5)};
  receiver.drawInRect({origin, size}, CGRectZero, operation, fraction);
}

Ref<NSImage> NSImageExtensions::imageNamed(std::optional<TextView> name, std::optional<TextView> ofType,
                                           const NSBundle* inBundle) {
  if (!name || !ofType || !inBundle) return nullptr;
  const auto path = inBundle->pathForResource(*name, *ofType);
  return path ? NSImage::imageWithContentsOfFile(*path) : nullptr;
}

}  // namespace kelvane
