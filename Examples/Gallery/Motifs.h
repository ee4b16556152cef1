#pragma once

#include <span>

#include "Platform/Foundation/Text.h"

namespace gallery {

// The width that each motif has, in points.
inline constexpr double motifWidth = 320;

// One row of the gallery. Heights are multiples of 4, which have whole pixels at a scale of 1.25, too.
struct Motif {
  kelvane::TextView title;
  kelvane::TextView explanation;
  double height;
  // Draws in the current context, from (0, 0) to (motifWidth, height).
  void (*draw)();
};

std::span<const Motif> motifs();

}  // namespace gallery
