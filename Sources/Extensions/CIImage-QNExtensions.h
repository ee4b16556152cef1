#pragma once

#include "Platform/Desktop/CIImage.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/Ref.h"

namespace kelvane {

// size  Width and height of the image's extent, in pixels; 0 by 0 for nil.
KELVANE_EXPORT CGSize size(const Ref<CIImage>& receiver);

}  // namespace kelvane
