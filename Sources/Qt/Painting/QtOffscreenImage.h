#pragma once

#include <memory>

#include "Platform/Desktop/OffscreenImage.h"
#include "Platform/Foundation/Geometry.h"

namespace kelvane {

// A picture of `size` points with about `pixelsPerPoint` pixels to each: their number is whole, so a side of a broken
// number has a little more. Null when the size is none, or there is no memory for it.
std::unique_ptr<OffscreenImage> makeQtOffscreenImage(const CGSize& size, double pixelsPerPoint);

}  // namespace kelvane
