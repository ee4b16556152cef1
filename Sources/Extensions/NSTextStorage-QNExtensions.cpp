#include "Extensions/NSTextStorage-QNExtensions.h"

#include <memory>
#include <optional>
#include <utility>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSFont.h"

namespace kelvane {
namespace {

// Gives each run that has a font the one that `change` makes of it, if it makes one.
template <class Change>
void changeFonts(NSTextStorage& text, Change change) {
  text.replaceAttributes({0, text.length()}, [&](const Ref<NSDictionary>& attributes) {
    const auto old = as<NSFont>(attributes->objectForKey(NSFontAttributeName));
    const std::optional<NSFont> font = old ? change(*old) : std::nullopt;
    if (!font) return attributes;
    NSDictionary::Entries entries(attributes->begin(), attributes->end());
    entries.insert_or_assign(Text(NSFontAttributeName), box(*font));
    return std::make_shared<NSDictionary>(std::move(entries));
  });
}

std::optional<NSFont> scaled(const NSFont& font, double factor) {
  const double size = CGFloor(font.pointSize() * factor);
  if (size <= 0) return std::nullopt;
  // The machine may have no such font: then the same face, to be replaced by the nearest only when it is drawn.
  return NSFont::fontWithName(font.fontName(), size).value_or(font.fontWithSize(size));
}

std::optional<NSFont> plain(const NSFont& font, double size) {
  if (auto found = NSFont::fontWithName(font.familyName(), size)) return found;
  return NSFont::fontWithFamily(font.familyName(), 0, 5, size);
}

}  // namespace

NSTextStorage& scaleAttributedStringUsingFactor(NSTextStorage& receiver, double factor) {
  if (factor != 0.0) changeFonts(receiver, [factor](const NSFont& font) { return scaled(font, factor); });
  return receiver;
}

NSTextStorage& setFontSize(NSTextStorage& receiver, double size) {
  if (size != 0.0) changeFonts(receiver, [size](const NSFont& font) { return plain(font, size); });
  return receiver;
}

}  // namespace kelvane
