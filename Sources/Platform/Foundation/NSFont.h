#pragma once

#include <memory>
#include <optional>

#include "Platform/Foundation/FontCatalogue.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// A font: a face and a size in points. It names what text is to be set in, whether or not this machine has it: text in
// Helvetica stays text in Helvetica, and what draws it looks for the nearest. A copyable value of two words; copies
// share the face. Immutable; any thread.
class KELVANE_EXPORT NSFont : public NSObject {
 public:
  // A font of any face, asking nobody.
  NSFont(FontFace face, double pointSize);

  // fontWithName:size:  The font of that full name ("DejaVu Sans Bold") or PostScript name ("DejaVuSans-Bold"); the
  // plain font of a family ("DejaVu Sans"). Nothing when the machine has neither. The first look-up of a name takes
  // milliseconds, later ones a microsecond.
  static std::optional<NSFont> fontWithName(TextView name, double size);
  // fontWithFamily:traits:weight:size:  The family's font with these traits and about this weight (0 to 15; 5 is
  // regular, 9 bold, and bold fonts are 9 at least). Where the machine lacks the family, or a face of it with these
  // traits, a font of that family and traits nevertheless, with a name made up of them: "Helvetica Bold Italic".
  static NSFont fontWithFamily(TextView family, NSFontTraitMask traits, int weight, double size);
  // systemFontOfSize:  The font of ordinary interface text; nothing when the machine has no fonts.
  static std::optional<NSFont> systemFontOfSize(double size);
  // boldSystemFontOfSize:  The same in bold; where its family has no bold face, one of that name nevertheless.
  static std::optional<NSFont> boldSystemFontOfSize(double size);
  // In points.
  static constexpr double systemFontSize() { return 13; }
  static constexpr double smallSystemFontSize() { return 11; }

  // The full name, face included: "DejaVu Sans Bold".
  const Text& fontName() const { return myFace->fullName; }
  const Text& familyName() const { return myFace->family; }
  NSFontTraitMask traits() const { return myFace->traits; }
  bool isBold() const { return (traits() & NSBoldFontMask) != 0; }
  bool isItalic() const { return (traits() & NSItalicFontMask) != 0; }
  int weight() const { return myFace->weight; }
  double pointSize() const { return myPointSize; }
  const FontFace& face() const { return *myFace; }

  // The same face at another size.
  NSFont fontWithSize(double size) const { return NSFont(myFace, size); }

  // Equal when the faces and sizes are.
  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // "DejaVu Sans Bold 12".
  Text description() const override;
  Ref<NSObject> copy() const override;
  // "fontName", "familyName", "pointSize", to be read.
  const PropertyTable& propertyTable() const override;

 private:
  NSFont(std::shared_ptr<const FontFace> face, double pointSize) : myFace(std::move(face)), myPointSize(pointSize) {}

  std::shared_ptr<const FontFace> myFace;
  double myPointSize;
};

}  // namespace kelvane
