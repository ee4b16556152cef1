#include "Platform/Foundation/HTMLPlainText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "Platform/Foundation/HTMLBytes.h"
#include "Platform/Foundation/HTMLReferences.h"
#include "Platform/Foundation/HTMLTags.h"
#include "Platform/Foundation/HTMLTextLayout.h"
#include "Platform/Foundation/TextPlaces.h"
#include "Platform/Foundation/TextScan.h"

namespace kelvane {
namespace {

constexpr UnitSet special{u'<', u'&', u'\n', u'\r', u'\t', u'\f', u'\0'};

// The places where text cannot simply be copied: the units above, and a blank before another one.
struct SpecialMarker {
  std::size_t size() const { return text.size(); }
  void mark(std::size_t from, std::size_t count, std::uint64_t* marks) const {
    markAnyOf(text.substr(from, count), special, marks);
    const TextView stretch = text.substr(from, count + 1);
    if (stretch.size() < 2) return;
    std::array<std::uint64_t, markWords> blanks{};
    markEnds(stretch, u"  ", blanks.data());
    for (std::size_t word = 0; word * 64 < count; ++word) marks[word] |= blanks[word];
  }

  TextView text;
};
using SpecialPlaces = MarkedPlaces<SpecialMarker>;

struct List {
  bool isNumbered = false;
  std::int64_t number = 0;
};

Text markerOf(std::int64_t number) {
  const std::string digits = std::to_string(number);
  return Text(digits.begin(), digits.end()) + u'.';
}

class PlainTextReader {
 public:
  explicit PlainTextReader(TextView html) : myHTML(html), myLayout(html.size()) {}

  Text read();

 private:
  std::size_t readSpecial(std::size_t place);
  std::size_t readReference(std::size_t place);
  std::size_t readWhiteSpace(std::size_t place);
  std::size_t readMarkup(std::size_t place);
  std::size_t readDeclaration(std::size_t place);
  std::size_t readStartTag(const HTMLTag& tag);
  std::size_t readRawText(HTMLElement element, const HTMLTag& tag);
  void showRawText(std::size_t start, std::size_t end, bool hasReferences);
  std::size_t behindFirstLineBreak(std::size_t start) const;
  void startElement(HTMLElement element, const HTMLTag& tag);
  void endElement(HTMLElement element);
  void startItem(const HTMLTag& tag);
  void endList(bool isNumbered);

  bool isHidden() const { return myTemplates > 0; }
  bool isPreformatted() const { return myPreformatted > 0; }
  // The text from `start` to `end`, which is not empty and has nothing special in it.
  void showRun(std::size_t start, std::size_t end);
  void show(TextView text);

  TextView myHTML;
  HTMLTextLayout myLayout;
  std::vector<List> myLists;
  std::size_t myNumberedLists = 0;
  // How many of them are open.
  std::size_t myTemplates = 0;
  std::size_t myPreformatted = 0;
  std::size_t myForeign = 0;
};

Text PlainTextReader::read() {
  // Walking over what was skipped costs more than marking anew when it is long.
  constexpr std::size_t longSkip = 1024;
  SpecialPlaces places(SpecialMarker{myHTML});
  std::size_t start = 0;
  for (;;) {
    std::size_t place = places.next();
    while (place < start) place = places.next();
    if (start < place) showRun(start, place);
    if (place == myHTML.size()) return myLayout.text();
    start = readSpecial(place);
    if (start - place > longSkip) places = SpecialPlaces(SpecialMarker{myHTML}, start);
  }
}

void PlainTextReader::showRun(std::size_t start, std::size_t end) {
  if (isHidden()) return;
  const TextView run = myHTML.substr(start, end - start);
  if (isPreformatted())
    myLayout.preformatted(run, myHTML.size() - start);
  else
    myLayout.run(run, myHTML.size() - start);
}

// A few units that do not stand in the page as they are shown.
void PlainTextReader::show(TextView text) {
  if (isHidden()) return;
  if (isPreformatted())
    myLayout.preformatted(text, text.size());
  else if (text.size() == 1 && isHTMLSpace(text[0]))
    myLayout.blank();
  else
    myLayout.run(text, text.size());
}

// Returns where the text goes on.
std::size_t PlainTextReader::readSpecial(std::size_t place) {
  switch (myHTML[place]) {
    case u'<':
      return readMarkup(place);
    case u'&':
      return readReference(place);
    case u'\0':
      return place + 1;
    default:
      return readWhiteSpace(place);
  }
}

std::size_t PlainTextReader::readReference(std::size_t place) {
  const HTMLReference reference = htmlReferenceAt(myHTML, place);
  show(reference.length == 0 ? TextView(u"&") : reference.text());
  return place + std::max<std::size_t>(reference.length, 1);
}

std::size_t PlainTextReader::readWhiteSpace(std::size_t place) {
  if (isPreformatted()) {
    const bool isPair = myHTML.substr(place, 2) == u"\r\n";
    show(myHTML[place] == u'\r' ? TextView(u"\n") : myHTML.substr(place, 1));
    return place + (isPair ? 2 : 1);
  }
  if (!isHidden()) myLayout.blank();
  while (place < myHTML.size() && isHTMLSpace(myHTML[place])) ++place;
  return place;
}

std::size_t PlainTextReader::readMarkup(std::size_t place) {
  const char16_t next = place + 1 < myHTML.size() ? myHTML[place + 1] : u'\0';
  if (isHTMLNameStart(next)) return readStartTag(htmlTagAt(myHTML, place + 1));
  if (next == u'!' || next == u'?') return readDeclaration(place);
  if (next != u'/' || place + 2 == myHTML.size()) {
    show(u"<");
    return place + 1;
  }
  if (!isHTMLNameStart(myHTML[place + 2])) return endOfHTMLDeclaration(myHTML, place);
  const HTMLTag tag = htmlTagAt(myHTML, place + 2);
  if (tag.isComplete) endElement(htmlElementNamed(tag.name));
  return tag.end;
}

std::size_t PlainTextReader::readDeclaration(std::size_t place) {
  constexpr TextView mark = u"<![CDATA[";
  // Only drawings and formulas have it; elsewhere it is a comment.
  if (myForeign == 0 || myHTML.substr(place, mark.size()) != mark) return endOfHTMLDeclaration(myHTML, place);
  const std::size_t start = place + mark.size();
  const std::size_t end = std::min(myHTML.find(u"]]>", start), myHTML.size());
  for (std::size_t i = start; i < end; ++i)
    if (myHTML[i] != u'\0') show(myHTML.substr(i, 1));
  return std::min(end + 3, myHTML.size());
}

std::size_t PlainTextReader::readStartTag(const HTMLTag& tag) {
  if (!tag.isComplete) return tag.end;
  const HTMLElement element = htmlElementNamed(tag.name);
  if (element >= HTMLElement::Script) {
    // Drawings may have empty ones.
    return myForeign > 0 && tag.isSelfClosing ? tag.end : readRawText(element, tag);
  }
  startElement(element, tag);
  return element == HTMLElement::Preformatted ? behindFirstLineBreak(tag.end) : tag.end;
}

std::size_t PlainTextReader::readRawText(HTMLElement element, const HTMLTag& tag) {
  std::size_t end = myHTML.size();
  if (element == HTMLElement::Script) {
    end = endOfHTMLScript(myHTML, tag.end);
  } else if (element != HTMLElement::RawUntilTheEnd) {
    end = endOfHTMLRawText(myHTML, tag.end, htmlLowered(tag.name));
  }
  if (element > HTMLElement::HiddenRaw && !isHidden()) {
    myLayout.block();
    ++myPreformatted;
    const bool isEscapable = element == HTMLElement::EscapableRaw;
    showRawText(isEscapable ? behindFirstLineBreak(tag.end) : tag.end, end, isEscapable);
    --myPreformatted;
    myLayout.block();
  }
  return end == myHTML.size() ? end : htmlTagAt(myHTML, end + 2).end;
}

void PlainTextReader::showRawText(std::size_t start, std::size_t end, bool hasReferences) {
  constexpr UnitSet raw{u'&', u'\r', u'\0'};
  const TextView text = myHTML.substr(0, end);
  while (start < end) {
    const std::size_t place = findAnyOf(text, raw, start);
    if (start < place) showRun(start, place);
    if (place == end) return;
    start = place + 1;
    if (text[place] == u'\0') {
      show(u"\xFFFD");
    } else if (text[place] == u'\r') {
      start = readWhiteSpace(place);
    } else if (hasReferences) {
      const HTMLReference reference = htmlReferenceAt(text, place);
      show(reference.length == 0 ? TextView(u"&") : reference.text());
      start = place + std::max<std::size_t>(reference.length, 1);
    } else {
      show(u"&");
    }
  }
}

// Preformatted text does not show a line break at its very start.
std::size_t PlainTextReader::behindFirstLineBreak(std::size_t start) const {
  const TextView rest = myHTML.substr(start);
  if (rest.starts_with(u"\r\n")) return start + 2;
  return start + (rest.starts_with(u'\n') || rest.starts_with(u'\r') ? 1 : 0);
}

void PlainTextReader::startElement(HTMLElement element, const HTMLTag& tag) {
  if (element == HTMLElement::Template) ++myTemplates;
  if (isHidden()) return;
  switch (element) {
    case HTMLElement::LineBreak:
      return myLayout.lineBreak();
    case HTMLElement::Preformatted:
      ++myPreformatted;
      return myLayout.block();
    case HTMLElement::NumberedList: {
      const auto start = htmlAttribute(myHTML, tag, u"start");
      myLists.push_back({true, start ? htmlInteger(*start).value_or(1) : 1});
      ++myNumberedLists;
      return myLayout.block();
    }
    case HTMLElement::BulletList:
      myLists.push_back({});
      return myLayout.block();
    case HTMLElement::Item:
      return startItem(tag);
    case HTMLElement::Row:
      return myLayout.row();
    case HTMLElement::Cell:
      return myLayout.cell();
    case HTMLElement::Foreign:
      if (!tag.isSelfClosing) ++myForeign;
      return;
    case HTMLElement::Block:
      return myLayout.block();
    default:
      return;
  }
}

void PlainTextReader::endElement(HTMLElement element) {
  if (element == HTMLElement::Template && myTemplates > 0) --myTemplates;
  if (isHidden()) return;
  switch (element) {
    // It has no end, so browsers take this for another one.
    case HTMLElement::LineBreak:
      return myLayout.lineBreak();
    case HTMLElement::Preformatted:
      if (myPreformatted > 0) --myPreformatted;
      return myLayout.block();
    case HTMLElement::NumberedList:
    case HTMLElement::BulletList:
      endList(element == HTMLElement::NumberedList);
      return myLayout.endOfItems();
    case HTMLElement::Item:
      return myLayout.endOfItems();
    case HTMLElement::Row:
      return myLayout.row();
    case HTMLElement::Foreign:
      if (myForeign > 0) --myForeign;
      return;
    case HTMLElement::Block:
      return myLayout.block();
    default:
      return;
  }
}

void PlainTextReader::startItem(const HTMLTag& tag) {
  const std::size_t level = std::max<std::size_t>(myLists.size(), 1) - 1;
  if (myLists.empty() || !myLists.back().isNumbered) return myLayout.item(u"\x2022", level);
  List& list = myLists.back();
  if (const auto value = htmlAttribute(myHTML, tag, u"value")) list.number = htmlInteger(*value).value_or(list.number);
  myLayout.item(markerOf(list.number), level);
  ++list.number;
}

// Ends the innermost list of the kind, and those that were opened within and never ended.
void PlainTextReader::endList(bool isNumbered) {
  if ((isNumbered ? myNumberedLists : myLists.size() - myNumberedLists) == 0) return;
  for (bool isFound = false; !isFound; myLists.pop_back()) {
    isFound = myLists.back().isNumbered == isNumbered;
    if (myLists.back().isNumbered) --myNumberedLists;
  }
}

}  // namespace

Text plainTextOfHTML(TextView html) { return PlainTextReader(html).read(); }

Text plainTextOfHTML(std::string_view bytes) { return plainTextOfHTML(textOfHTMLBytes(bytes)); }

}  // namespace kelvane
