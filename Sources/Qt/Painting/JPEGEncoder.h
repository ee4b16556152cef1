#pragma once

#include <cstdint>
#include <vector>

#include "Platform/Desktop/NSImageRep.h"

namespace kelvane {

struct JPEGOptions {
  // From 0.0, the smallest file, to 1.0, the best image; what is beyond is taken to these, and NaN to the ordinary.
  float compressionFactor = 0.85F;
  // Whether the image comes in passes, each better than the one before.
  bool isProgressive = false;
};

// A JFIF file (ITU-T T.81 and T.871) of the bitmap on white, with its resolution; from 0.95 on colours are as fine as
// brightness. Empty when the bitmap has no pixels or more than 65,500 along a side. The pixels are read where they are,
// and only rows with alpha pass through a row of memory. Any thread.
std::vector<std::uint8_t> encodeJPEG(const NSBitmapImageRep& image, const JPEGOptions& options);

}  // namespace kelvane
