#pragma once

#include <QImage>
#include <cstdint>
#include <span>

#include "Platform/Desktop/NSImageRep.h"
#include "Platform/Foundation/Geometry.h"

namespace kelvane {

// What one picture, drawn or unpacked from a file, may hold: a gigabyte. Photographs and posters stay far below; what
// claims more is damaged or means harm.
inline constexpr std::int64_t largestPixelCount = std::int64_t{1} << 28;

// The bitmap's pixels as Qt sees them, in the bitmap's own memory, which has to stay as long as the image does. Null
// when there are none, or too many for Qt.
QImage imageOver(const NSBitmapImageRep& bitmap);
// The same without regard to alpha, for a bitmap that is opaque.
QImage opaqueImageOver(const NSBitmapImageRep& bitmap);

// Whether no pixel lets anything through. Looks at each.
inline bool isOpaque(std::span<const std::uint32_t> pixels) {
  std::uint32_t all = ~std::uint32_t{0};
  for (const std::uint32_t pixel : pixels) all &= pixel;
  return all >> 24U == 0xFF;
}
bool isOpaque(const NSBitmapImageRep& bitmap);

// A bitmap of `size` points in the memory of `image`, which is turned into the bitmap's format before where it is of
// another one.
Ref<NSBitmapImageRep> bitmapOf(QImage image, const CGSize& size);

}  // namespace kelvane
