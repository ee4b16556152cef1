#include "Qt/Painting/Pixels.h"

#include <limits>
#include <memory>
#include <utility>

namespace kelvane {
namespace {

QImage imageOver(const NSBitmapImageRep& bitmap, QImage::Format format) {
  const BitmapPixels& pixels = bitmap.pixels();
  constexpr std::int64_t most = std::numeric_limits<int>::max();
  if (!pixels.data || pixels.pixelsWide > most || pixels.pixelsHigh > most || pixels.pixelsPerRow > most / 4) return {};
  return {reinterpret_cast<const uchar*>(pixels.data.get()), static_cast<int>(pixels.pixelsWide),
          static_cast<int>(pixels.pixelsHigh), static_cast<qsizetype>(pixels.pixelsPerRow * 4), format};
}

}  // namespace

QImage imageOver(const NSBitmapImageRep& bitmap) { return imageOver(bitmap, QImage::Format_ARGB32_Premultiplied); }

QImage opaqueImageOver(const NSBitmapImageRep& bitmap) { return imageOver(bitmap, QImage::Format_RGB32); }

bool isOpaque(const NSBitmapImageRep& bitmap) {
  const BitmapPixels& pixels = bitmap.pixels();
  const auto width = static_cast<std::size_t>(pixels.pixelsWide);
  for (std::int64_t y = 0; y < pixels.pixelsHigh; ++y)
    if (!isOpaque({pixels.data.get() + y * pixels.pixelsPerRow, width})) return false;
  return true;
}

Ref<NSBitmapImageRep> bitmapOf(QImage image, const CGSize& size) {
  image.convertTo(QImage::Format_ARGB32_Premultiplied);
  if (image.isNull()) return nullptr;
  const auto owner = std::make_shared<const QImage>(std::move(image));
  const std::shared_ptr<const std::uint32_t> data(owner, reinterpret_cast<const std::uint32_t*>(owner->constBits()));
  const auto bitmap = std::make_shared<NSBitmapImageRep>(
      BitmapPixels{data, owner->width(), owner->height(), static_cast<std::int64_t>(owner->bytesPerLine() / 4)});
  bitmap->setSize(size);
  return bitmap;
}

}  // namespace kelvane
