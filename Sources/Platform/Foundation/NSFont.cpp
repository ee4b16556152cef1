#include "Platform/Foundation/NSFont.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "Platform/Foundation/Properties.h"
#include "Platform/Foundation/TextNumbers.h"

namespace kelvane {

NSFont::NSFont(FontFace face, double pointSize)
    : NSFont(std::make_shared<const FontFace>(std::move(face)), pointSize) {}

std::optional<NSFont> NSFont::fontWithName(TextView name, double size) {
  auto face = FontCatalogue::faceNamed(name);
  if (!face) return std::nullopt;
  return NSFont(std::move(face), size);
}

NSFont NSFont::fontWithFamily(TextView family, NSFontTraitMask traits, int weight, double size) {
  if (auto face = FontCatalogue::faceOfFamily(family, traits, weight)) return NSFont(std::move(face), size);
  FontFace face{Text(family), Text(family), traits & (NSItalicFontMask | NSBoldFontMask), weight};
  if (traits & NSBoldFontMask) {
    face.fullName += u" Bold";
    face.weight = std::max(weight, 9);
  }
  if (traits & NSItalicFontMask) face.fullName += u" Italic";
  return NSFont(std::move(face), size);
}

std::optional<NSFont> NSFont::systemFontOfSize(double size) {
  auto face = FontCatalogue::systemFace();
  if (!face) return std::nullopt;
  return NSFont(std::move(face), size);
}

std::optional<NSFont> NSFont::boldSystemFontOfSize(double size) {
  const auto face = FontCatalogue::systemFace();
  if (!face) return std::nullopt;
  return fontWithFamily(face->family, NSBoldFontMask, 9, size);
}

bool NSFont::isEqual(const NSObject& other) const {
  const NSFont* font = as<NSFont>(&other);
  return font && font->myPointSize == myPointSize && (font->myFace == myFace || *font->myFace == *myFace);
}

std::size_t NSFont::hash() const { return std::hash<Text>()(fontName()) * 31 + std::hash<double>()(myPointSize); }

Text NSFont::description() const { return fontName() + u' ' + shortestDecimal(myPointSize); }

Ref<NSObject> NSFont::copy() const {
  return selfOr([this] { return std::make_shared<NSFont>(*this); });
}

const PropertyTable& NSFont::propertyTable() const {
  static const auto& table =
      *new PropertyTable(NSObject::propertyTable(),
                         {property(u"fontName", &NSFont::fontName), property(u"familyName", &NSFont::familyName),
                          property(u"pointSize", &NSFont::pointSize)});
  return table;
}

}  // namespace kelvane
