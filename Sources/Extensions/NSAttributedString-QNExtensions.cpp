#include "Extensions/NSAttributedString-QNExtensions.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <map>
#include <string>
#include <system_error>
#include <tuple>

#include "Extensions/NSAttributedString-HTMLState.h"
#include "Graphics/QNColorPalette.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/Overwrite.h"
#include "Platform/Foundation/RTFWriter.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextNumbers.h"
#include "Platform/Foundation/TextPlaces.h"
#include "Platform/Foundation/TextRewrite.h"
#include "Platform/Foundation/TextScan.h"

namespace kelvane {
namespace {

constexpr HTMLKeyword keywords[] = {{u'"', u"&quot"}, {u'&', u"&amp"}, {u'<', u"&lt"}, {u'>', u"&gt"}};

// What the reader sets text in.
class CurrentStyle {
 public:
  void reset() { *this = CurrentStyle(); }
  void setTrait(NSFontTraitMask trait, bool flag) { myTraits = flag ? myTraits | trait : myTraits & ~trait; }
  void setUnderline(bool flag) { myIsUnderlined = flag; }
  double size() const { return mySize; }
  void setSize(double size) { mySize = size; }

  Ref<NSDictionary> attributes() const;

 private:
  NSFontTraitMask myTraits = 0;
  bool myIsUnderlined = false;
  double mySize = htmlDefaultPointSize;
};

// The same style gives the same dictionary, so that runs share it. Pages with more styles than this begin again.
Ref<NSDictionary> CurrentStyle::attributes() const {
  constexpr std::size_t mostStyles = 64;
  // Sizes by their bits: what is not a number has no order.
  using Style = std::tuple<NSFontTraitMask, bool, std::uint64_t>;
  static auto& made = *new std::map<Style, Ref<NSDictionary>>();
  const Style style(myTraits, myIsUnderlined, std::bit_cast<std::uint64_t>(mySize));
  if (const auto found = made.find(style); found != made.end()) return found->second;
  if (made.size() == mostStyles) made.clear();
  const NSFont font = NSFont::fontWithFamily(u"Helvetica", myTraits, 5, mySize);
  return made[style] = NSDictionary::dictionaryWithEntries(
             {{Text(NSFontAttributeName), box(font)}, {Text(NSUnderlineStyleAttributeName), box(myIsUnderlined)}});
}

struct ClassState {
  std::span<const HTMLKeyword> keywords;
  std::optional<Text> blackColorString;
  CurrentStyle style;
};

ClassState& state() {
  static auto& theState = *new ClassState();
  return theState;
}

// The places that have to be looked at to tell words apart: a single blank between words stays as it is, and so does
// most text in ASCII.
struct WordMarker {
  std::size_t size() const { return text.size(); }
  void mark(std::size_t from, std::size_t count, std::uint64_t* marks) const {
    constexpr UnitSet blanks{u'\n', u'\t', u'\r', u'\f', u'\v'};
    markAnyOfOrAbove(text.substr(from, count), blanks, 0x84, marks);
    const TextView stretch = text.substr(from, count + 1);
    if (stretch.size() < 2) return;
    std::array<std::uint64_t, markWords> doubled{};
    markEnds(stretch, u"  ", doubled.data());
    for (std::size_t word = 0; word * 64 < count; ++word) marks[word] |= doubled[word];
  }

  TextView text;
};

// The words of `html`, each followed by a blank.
Text wordsOf(TextView html) {
  const NSCharacterSet& blanks = NSCharacterSet::whitespaceAndNewlineCharacterSet();
  const auto behindAllBlanks = [&](std::size_t at) {
    while (at < html.size() && blanks.characterIsMember(html[at])) ++at;
    return at;
  };
  return overwritten<Text>(html.size() + 1, [&](char16_t* const begin) {
    char16_t* out = begin;
    std::size_t start = behindAllBlanks(0);
    MarkedPlaces<WordMarker> places(WordMarker{html}, start);
    for (;;) {
      const std::size_t place = places.next();
      if (place < start || (place < html.size() && !blanks.characterIsMember(html[place]))) continue;
      out = rewriting::copyRun(out, html.data() + start, place - start, html.size() - start);
      if (out > begin && out[-1] != u' ') *out++ = u' ';
      if (place == html.size()) return out - begin;
      start = behindAllBlanks(place);
    }
  });
}

std::size_t behindBlanks(TextView text, std::size_t at) {
  while (at < text.size() && text[at] == u' ') ++at;
  return at;
}

std::size_t behindUnits(TextView text, std::size_t at, char16_t unit) {
  while (at < text.size() && text[at] == unit) ++at;
  return at;
}

constexpr bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// A number at the start of `text`, as "%f" of C scans it: behind blanks, with a sign, in decimal or hexadecimal, "inf"
// and "nan" too.
std::optional<double> scanNumber(TextView text) {
  text.remove_prefix(behindBlanks(text, 0));
  const bool isNegative = text.starts_with(u'-');
  if (isNegative || text.starts_with(u'+')) text.remove_prefix(1);
  const auto isDigitAt = [text](std::size_t at) { return at < text.size() && isDigit(text[at]); };
  double number = 0;
  if (isDigitAt(0) || (text.starts_with(u'.') && isDigitAt(1))) number = doubleValue(text);
  // What is left of C's numbers is rare enough to be read as bytes.
  const std::string bytes = utf8(text.substr(0, 64));
  const bool isHexadecimal = bytes.starts_with("0x") || bytes.starts_with("0X");
  if (isHexadecimal || !isDigitAt(text.starts_with(u'.') ? 1 : 0)) {
    const char* const start = bytes.data() + (isHexadecimal ? 2 : 0);
    const char* const end = bytes.data() + bytes.size();
    const auto format = isHexadecimal ? std::chars_format::hex : std::chars_format::general;
    const auto [behind, error] = std::from_chars(start, end, number, format);
    if (*start == '-' || error != std::errc() || (isHexadecimal && !std::isfinite(number))) return std::nullopt;
    // What goes on like "infinity" has to be it.
    if (std::isinf(number) && behind - start == 3 && (*behind | 0x20) == 'i') return std::nullopt;
  }
  return isNegative ? -number : number;
}

// What is behind `literal` in `text`, where a blank of `literal` stands for any number of them; nothing when something
// else stands there.
std::optional<TextView> behindPattern(TextView text, TextView literal) {
  for (const char16_t letter : literal) {
    if (letter == u' ') {
      text.remove_prefix(behindBlanks(text, 0));
    } else if (text.starts_with(letter)) {
      text.remove_prefix(1);
    } else {
      return std::nullopt;
    }
  }
  return text;
}

void readFontSize(TextView tag, CurrentStyle& style) {
  if (const auto rest = behindPattern(tag, u"font size = +")) {
    if (const auto number = scanNumber(*rest)) return style.setSize(style.size() + *number + htmlSizeOffset);
  }
  if (const auto rest = behindPattern(tag, u"font size = ")) {
    if (const auto number = scanNumber(*rest)) style.setSize(*number + htmlSizeOffset);
  }
}

// Reads what `wordsOf` gives.
class SubsetReader {
 public:
  SubsetReader(TextView words, NSMutableAttributedString& result) : myWords(words), myResult(result) {}

  void read();

 private:
  void readRun(std::size_t end, bool hasReferences);
  void readTag();
  void act(TextView tag);
  static Text converted(TextView run);

  TextView myWords;
  std::size_t myPlace = 0;
  CurrentStyle& myStyle = state().style;
  NSMutableAttributedString& myResult;
};

void SubsetReader::read() {
  constexpr UnitSet special{u'<', u'&'};
  UnitPlaces places(myWords, special);
  bool hasReferences = false;
  for (;;) {
    const std::size_t place = places.next();
    if (place < myPlace) continue;
    if (place < myWords.size() && myWords[place] == u'&') {
      hasReferences = true;
      continue;
    }
    readRun(place, hasReferences);
    if (place == myWords.size()) return;
    hasReferences = false;
    readTag();
  }
}

void SubsetReader::readRun(std::size_t end, bool hasReferences) {
  const std::size_t start = behindBlanks(myWords, myPlace);
  myPlace = end;
  if (start >= end) return;
  const TextView run = myWords.substr(start, end - start);
  myResult.appendString(hasReferences ? TextView(converted(run)) : run, myStyle.attributes());
}

// What stands before each "&", and the name that it becomes. Blanks before either are skipped.
Text SubsetReader::converted(TextView run) {
  Text out;
  TextView before;
  for (std::size_t place = behindBlanks(run, 0); place < run.size(); place = behindBlanks(run, place)) {
    const std::size_t end = findUnit(run, u'&', place);
    // Where nothing stands before it, what was there last time comes again.
    if (end > place) before = run.substr(place, end - place);
    out += before;
    place = end;
    bool isKeyword = false;
    for (const HTMLKeyword& keyword : htmlKeywords()) {
      const std::size_t next = behindBlanks(run, place);
      if (next == run.size() || run[next] != keyword.key) continue;
      out += keyword.name;
      place = next + 1;
      isKeyword = true;
    }
    if (isKeyword) continue;
    const std::size_t behind = behindUnits(run, place, u'&');
    out += run.substr(place, behind - place);
    place = behind;
  }
  return out;
}

void SubsetReader::readTag() {
  const std::size_t start = behindBlanks(myWords, behindUnits(myWords, myPlace, u'<'));
  const std::size_t end = std::min(myWords.find(u'>', start), myWords.size());
  act(myWords.substr(start, end - start));
  myPlace = behindUnits(myWords, end, u'>');
}

void SubsetReader::act(TextView tag) {
  if (tag == u"b" || tag == u"/b") return myStyle.setTrait(NSBoldFontMask, tag == u"b");
  if (tag == u"i" || tag == u"/i") return myStyle.setTrait(NSItalicFontMask, tag == u"i");
  if (tag == u"u" || tag == u"/u") return myStyle.setUnderline(tag == u"u");
  if (tag == u"p") return myResult.appendString(u"\n\n", nullptr);
  if (tag == u"br") return myResult.appendString(u"\n", nullptr);
  if (tag == u"/font") return myStyle.setSize(htmlDefaultPointSize);
  if (tag.starts_with(u"font size=") || tag.starts_with(u"font size =")) readFontSize(tag, myStyle);
}

}  // namespace

std::span<const HTMLKeyword> htmlKeywords() { return state().keywords; }
const std::optional<Text>& blackColorString() { return state().blackColorString; }

void NSAttributedStringExtensions::didLoad() {
  if (!state().keywords.empty()) return;
  state().keywords = keywords;
  state().blackColorString = QNColorPalette::stringForColor(NSColor::blackColor());
}

void NSAttributedStringExtensions::resetAttributes() { state().style.reset(); }
void NSAttributedStringExtensions::setBold(bool flag) { state().style.setTrait(NSBoldFontMask, flag); }
void NSAttributedStringExtensions::setItalic(bool flag) { state().style.setTrait(NSItalicFontMask, flag); }
void NSAttributedStringExtensions::setUnderline(bool flag) { state().style.setUnderline(flag); }

void NSAttributedStringExtensions::setCurrentAttributes(NSMutableAttributedString& text) {
  text.addAttributes(state().style.attributes(), {0, text.length()});
}

NSMutableAttributedString attributedStringWithHTML(TextView html) {
  NSAttributedStringExtensions::resetAttributes();
  const Text words = wordsOf(html);
  NSMutableAttributedString result;
  SubsetReader(words, result).read();
  return result;
}

std::vector<std::uint8_t> rtf(const NSAttributedString& text) { return rtfOfStyledText(text); }

}  // namespace kelvane
