#pragma once

#include <vector>

#include "Platform/Desktop/NSImage.h"
#include "Platform/Foundation/Text.h"

namespace gallery {

// All motifs below one another at the scale of the screen.
kelvane::Ref<kelvane::NSImage> drawStrip();

struct Strip {
  kelvane::Text label;
  double scale;
  // As drawStrip makes it.
  kelvane::Ref<kelvane::NSImage> image;
};

// The strips, of which there is one at least, motif by motif with captions: the last one at the right.
kelvane::Ref<kelvane::NSImage> drawSheet(const std::vector<Strip>& strips);

}  // namespace gallery
