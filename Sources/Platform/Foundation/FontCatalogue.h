#pragma once

#include <cstdint>
#include <memory>

#include "Platform/Foundation/Text.h"

namespace kelvane {

// What distinguishes the faces of a family besides their weight: bits to be combined.
using NSFontTraitMask = std::uint64_t;
inline constexpr NSFontTraitMask NSItalicFontMask = 1;
inline constexpr NSFontTraitMask NSBoldFontMask = 2;

// One face of a family, such as "DejaVu Sans Bold".
struct FontFace {
  Text fullName;
  Text family;
  NSFontTraitMask traits = 0;
  // From 0 to 15: 5 is regular, 9 bold.
  int weight = 5;

  friend bool operator==(const FontFace&, const FontFace&) = default;
};

// The fonts of this machine, as fontconfig knows them. Names are compared without case. What was found is remembered
// and not looked for again: a font that is installed while the program runs may need a new start to be seen. Any
// thread; one lock.
namespace FontCatalogue {

// The face with that full name or PostScript name, else the plain face of the family of that name; null when the
// machine has neither.
std::shared_ptr<const FontFace> faceNamed(TextView name);

// The face of the family with these traits whose weight comes nearest; null when the machine has none. With
// NSBoldFontMask the weight is taken to be 9 at least.
std::shared_ptr<const FontFace> faceOfFamily(TextView family, NSFontTraitMask traits, int weight);

// The face of ordinary interface text; null when the machine has no fonts.
std::shared_ptr<const FontFace> systemFace();

}  // namespace FontCatalogue

}  // namespace kelvane
