#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

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

// All that are ever opened, each at most once at a time.
constexpr TextView linkTag = u"<a>";
constexpr TextView boldTag = u"<b>";
constexpr TextView italicTag = u"<i>";
constexpr TextView underlineTag = u"<u>";
constexpr TextView fontTag = u"<font>";
constexpr std::array allTags = {linkTag, boldTag, italicTag, underlineTag, fontTag};

// Which tags are open, in a number: a digit for each, the innermost last.
using OpenTags = std::uint32_t;
constexpr OpenTags tagBase = 8;

OpenTags openTags(const QNTagStack& tags) {
  OpenTags open = 0;
  for (const Text& tag : tags.stack())
    open = open * tagBase + static_cast<OpenTags>(std::ranges::find(allTags, tag) - allTags.begin()) + 1;
  return open;
}

void setOpenTags(QNTagStack& tags, OpenTags open) {
  std::vector<TextView> innermostFirst;
  for (; open != 0; open /= tagBase) innermostFirst.push_back(allTags[open % tagBase - 1]);
  tags.clear();
  for (; !innermostFirst.empty(); innermostFirst.pop_back()) tags.push(innermostFirst.back());
}

// Texts change between a few dictionaries again and again, mostly with the same tags open; what is written then is
// worked out once.
class Writer {
 public:
  void reset();
  Text flush();
  // The tags that lead from the last run's attributes to these. Valid until the next call.
  const HTMLMarkup& changeTo(const NSDictionary& attributes);

 private:
  // Neighbouring runs never have equal dictionaries (AttributeRuns.h), so there is always a change; two are the same
  // where the very dictionaries are.
  struct Change {
    const NSDictionary* from = nullptr;
    const NSDictionary* to = nullptr;
    OpenTags before = 0;
    OpenTags after = 0;
    HTMLMarkup markup;
  };

  bool isChange(const Change& change, const NSDictionary& attributes) const {
    return change.to == &attributes && change.from == myAttributes && change.before == myOpenTags;
  }
  Change& find(const NSDictionary& attributes);
  Text markup(const Style& next);
  bool writeLink(const Style& next, Text& out);
  void writeFont(const Style& next, Text& out);
  void writeColor(const Style& next, Text& out);

  // Of the last run; null before the first. The text that is written keeps it.
  const NSDictionary* myAttributes = nullptr;
  OpenTags myOpenTags = 0;
  // The same two, only while a change is worked out.
  Style myStyle;
  QNTagStack myTags{0};
  // In pairs, so that two whose places are the same do not push each other out.
  std::array<std::array<Change, 2>, 32> myChanges;
};

void Writer::reset() {
  myAttributes = nullptr;
  myOpenTags = 0;
  myChanges = {};
}

Text Writer::flush() {
  setOpenTags(myTags, std::exchange(myOpenTags, 0));
  return myTags.flushTags();
}

// The entry of the change from the last run's attributes, or the one that makes room for it.
Writer::Change& Writer::find(const NSDictionary& attributes) {
  const auto number = [](const NSDictionary* dictionary) {
    return std::uint64_t{reinterpret_cast<std::uintptr_t>(dictionary)};
  };
  constexpr std::uint64_t mixing = 0x9E3779B97F4A7C15;
  const std::uint64_t hash = ((number(myAttributes) * mixing ^ number(&attributes)) * mixing ^ myOpenTags) * mixing;
  auto& [first, second] = myChanges[hash >> 59U];
  return isChange(first, attributes) || (!first.to && !isChange(second, attributes)) ? first : second;
}

const HTMLMarkup& Writer::changeTo(const NSDictionary& attributes) {
  Change& change = find(attributes);
  if (!isChange(change, attributes)) {
    // Where a tag is closed that is not open, none is left.
    const OpenTags before = std::exchange(myOpenTags, 0);
    setOpenTags(myTags, before);
    myStyle = myAttributes ? Style(*myAttributes) : Style();
    HTMLMarkup written(markup(Style(attributes)));
    change = {myAttributes, &attributes, before, openTags(myTags), std::move(written)};
  }
  myAttributes = &attributes;
  myOpenTags = change.after;
  return change.markup;
}

Text Writer::markup(const Style& next) {
  Text out;
  if (writeLink(next, out)) return out;
  writeFont(next, out);
  if (next.isUnderlined != myStyle.isUnderlined)
    out += next.isUnderlined ? myTags.openTag(underlineTag) : myTags.closeTag(underlineTag);
  writeColor(next, out);
  return out;
}

// Returns whether a link starts or ends: then no other change is written.
bool Writer::writeLink(const Style& next, Text& out) {
  if (next.link && !myStyle.link) {
    out += u"<a href=\"";
    out += next.link->description();
    out += u"\">";
    myTags.openTag(linkTag);
    return true;
  }
  if (!next.link && myStyle.link) {
    out += myTags.closeTag(linkTag);
    return true;
  }
  return false;
}

// Bold is closed before italic but opened behind it.
void Writer::writeFont(const Style& next, Text& out) {
  const bool isOtherSize = next.size() != myStyle.size();
  if (!next.isBold() && myStyle.isBold()) out += myTags.closeTag(boldTag);
  if (!next.isItalic() && myStyle.isItalic()) out += myTags.closeTag(italicTag);
  if (myStyle.font && isOtherSize && myStyle.size() != htmlDefaultPointSize) out += myTags.closeTag(fontTag);
  if (next.font && (isOtherSize || !myStyle.font) && next.size() != htmlDefaultPointSize) {
    out += u"<font size=\"";
    appendASCII(out, std::to_string(htmlSize(next.size())));
    out += u"\">";
    myTags.openTag(fontTag);
  }
  if (next.isItalic() && !myStyle.isItalic()) out += myTags.openTag(italicTag);
  if (next.isBold() && !myStyle.isBold()) out += myTags.openTag(boldTag);
}

void Writer::writeColor(const Style& next, Text& out) {
  if (next.color == myStyle.color) return;
  if (myStyle.color) out += myTags.closeTag(fontTag);
  if (!next.color) return;
  const Text name = QNColorPalette::stringForColor(*next.color);
  if (name == blackColorString()) return;
  out += u"<font color=\"";
  out += name;
  out += u"\">";
  myTags.openTag(fontTag);
}

Writer& writer() {
  static auto& theWriter = *new Writer();
  return theWriter;
}

}  // namespace

Text NSAttributedStringExtensions::closeTags() { return writer().flush(); }
void NSAttributedStringExtensions::resetAttributeTags() { writer().reset(); }

Text htmlString(const NSAttributedString& text) {
  // About what the tags of a run take.
  constexpr std::size_t markupOfRun = 12;
  NSAttributedStringExtensions::resetAttributeTags();
  HTMLEscaper escaper(text.string(), text.runs().count() * markupOfRun);
  for (const AttributeRun run : text.runs()) {
    escaper.append(writer().changeTo(*run.attributes));
    escaper.escapeTo(run.range.end());
  }
  escaper.append(NSAttributedStringExtensions::closeTags());
  return escaper.finish();
}

}  // namespace kelvane
