#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include "Extensions/NSAttributedString-HTMLState.h"
#include "Extensions/NSAttributedString-QNExtensions.h"
#include "Graphics/QNColorPalette.h"
#include "Platform/Foundation/HTMLEscape.h"
#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSString.h"
#include "Utilities/QNTagStack.h"

namespace kelvane {
namespace {

// What is written of a run's attributes. What is missing, or of another class, is null.
struct Style {
  Style() = default;
  explicit Style(const NSDictionary& attributes);

  bool isBold() const { return font && font->isBold(); }
  bool isItalic() const { return font && font->isItalic(); }
  double size() const { return font ? font->pointSize() : 0; }

  const NSObject* link = nullptr;
  const NSFont* font = nullptr;
  const NSColor* color = nullptr;
  bool isUnderlined = false;
};

bool truthOf(const NSObject* value) {
  if (const NSNumber* number = as<NSNumber>(value)) return number->boolValue();
  const NSString* text = as<NSString>(value);
  return text && text->boolValue();
}

Style::Style(const NSDictionary& attributes) {
  for (const auto& [name, value] : attributes) {
    if (name == NSLinkAttributeName)
      link = value.get();
    else if (name == NSFontAttributeName)
      font = as<NSFont>(value.get());
    else if (name == NSForegroundColorAttributeName)
      color = as<NSColor>(value.get());
    else if (name == NSUnderlineStyleAttributeName)
      isUnderlined = truthOf(value.get());
  }
}

// The size for the tag: whole points less the offset, within what C's "%d" prints.
std::int64_t htmlSize(double points) {
  constexpr double least = std::numeric_limits<std::int32_t>::min();
  constexpr double most = std::numeric_limits<std::int32_t>::max();
  if (std::isnan(points)) return -htmlSizeOffset;
  return static_cast<std::int64_t>(std::clamp(points, least, most)) - htmlSizeOffset;
}

void appendASCII(Text& out, const std::string& ascii) { out.append(ascii.begin(), ascii.end()); }

class Writer {
 public:
  void reset();
  Text flush() { return myTags ? myTags->flushTags() : Text(); }
  // Appends the tags that lead from the last run's attributes to these.
  void changeTo(const Ref<NSDictionary>& attributes, Text& out);

 private:
  const Style& styleOf(const NSDictionary& attributes);
  void write(const Style& next, Text& out);
  bool writeLink(const Style& next, Text& out);
  void writeFont(const Style& next, Text& out);
  void writeColor(const Style& next, Text& out);

  // Of the last run; nothing before the first. The style views the dictionary's values.
  Ref<NSDictionary> myAttributes;
  Style myStyle;
  std::optional<QNTagStack> myTags;
  // The styles of dictionaries that came by in this text, which most runs share.
  std::array<std::pair<const NSDictionary*, Style>, 16> myStyles;
};

void Writer::reset() {
  myAttributes = nullptr;
  myStyle = Style();
  myStyles = {};
  if (myTags)
    myTags->clear();
  else
    myTags.emplace(0);
}

const Style& Writer::styleOf(const NSDictionary& attributes) {
  auto& [dictionary, style] = myStyles[reinterpret_cast<std::uintptr_t>(&attributes) / 64 % myStyles.size()];
  if (dictionary != &attributes) {
    dictionary = &attributes;
    style = Style(attributes);
  }
  return style;
}

void Writer::changeTo(const Ref<NSDictionary>& attributes, Text& out) {
  // Neighbouring runs never have equal dictionaries (AttributeRuns.h), so there is nothing to compare.
  if (attributes == myAttributes) return;
  const Style next = styleOf(*attributes);
  if (!writeLink(next, out)) write(next, out);
  myAttributes = attributes;
  myStyle = next;
}

// Returns whether a link starts or ends: then no other change is written.
bool Writer::writeLink(const Style& next, Text& out) {
  if (next.link && !myStyle.link) {
    out += u"<a href=\"";
    out += next.link->description();
    out += u"\">";
    myTags->openTag(u"<a>");
    return true;
  }
  if (!next.link && myStyle.link) {
    out += myTags->closeTag(u"<a>");
    return true;
  }
  return false;
}

void Writer::write(const Style& next, Text& out) {
  writeFont(next, out);
  if (next.isUnderlined != myStyle.isUnderlined)
    out += next.isUnderlined ? myTags->openTag(u"<u>") : myTags->closeTag(u"<u>");
  writeColor(next, out);
}

// Bold is closed before italic but opened behind it.
void Writer::writeFont(const Style& next, Text& out) {
  const bool isOtherSize = next.size() != myStyle.size();
  if (!next.isBold() && myStyle.isBold()) out += myTags->closeTag(u"<b>");
  if (!next.isItalic() && myStyle.isItalic()) out += myTags->closeTag(u"<i>");
  if (myStyle.font && isOtherSize && myStyle.size() != htmlDefaultPointSize) out += myTags->closeTag(u"<font>");
  if (next.font && (isOtherSize || !myStyle.font) && next.size() != htmlDefaultPointSize) {
    out += u"<font size=\"";
    appendASCII(out, std::to_string(htmlSize(next.size())));
    out += u"\">";
    myTags->openTag(u"<font>");
  }
  if (next.isItalic() && !myStyle.isItalic()) out += myTags->openTag(u"<i>");
  if (next.isBold() && !myStyle.isBold()) out += myTags->openTag(u"<b>");
}

void Writer::writeColor(const Style& next, Text& out) {
  if (next.color == myStyle.color) return;
  if (myStyle.color) out += myTags->closeTag(u"<font>");
  if (!next.color) return;
  const Text name = QNColorPalette::stringForColor(*next.color);
  if (name == blackColorString()) return;
  out += u"<font color=\"";
  out += name;
  out += u"\">";
  myTags->openTag(u"<font>");
}

Writer& writer() {
  static auto& theWriter = *new Writer();
  return theWriter;
}

}  // namespace

Text NSAttributedStringExtensions::closeTags() { return writer().flush(); }
void NSAttributedStringExtensions::resetAttributeTags() { writer().reset(); }

Text htmlString(const NSAttributedString& text) {
  const Text& units = text.string();
  Text out;
  out.reserve(units.size() + units.size() / 2);
  NSAttributedStringExtensions::resetAttributeTags();
  for (const AttributeRun run : text.runs()) {
    writer().changeTo(run.attributes, out);
    appendEscapedForHTML(out, TextView(units).substr(run.range.location, run.range.length));
  }
  out += NSAttributedStringExtensions::closeTags();
  return out;
}

}  // namespace kelvane
