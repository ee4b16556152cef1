#include "Platform/Foundation/HTMLTags.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "Platform/Foundation/TextPlaces.h"
#include "Platform/Foundation/TextScan.h"

namespace kelvane {
namespace {

// A name in one number, so that names are compared as fast as numbers; 0 for one that is none of ours.
constexpr std::uint64_t keyOf(TextView name) {
  constexpr std::size_t longestName = 10;
  if (name.size() > longestName) return 0;
  std::uint64_t key = 0;
  for (const char16_t unit : name) {
    const char16_t letter = htmlLowered(unit);
    const bool isLetter = letter >= u'a' && letter <= u'z';
    if (!isLetter && !(letter >= u'1' && letter <= u'6')) return 0;
    key = key << 6U | static_cast<std::uint64_t>(isLetter ? letter - u'a' + 1 : letter - u'1' + 27);
  }
  return key;
}

struct Names {
  HTMLElement element;
  TextView names;
};

constexpr Names elements[] = {
    {HTMLElement::Block,
     u"address article aside blockquote body caption center dd details dialog div dl dt fieldset figcaption figure "
     u"footer form frameset h1 h2 h3 h4 h5 h6 header hgroup hr html legend main nav optgroup option p search section "
     u"summary table tbody tfoot thead"},
    {HTMLElement::LineBreak, u"br"},
    {HTMLElement::Preformatted, u"pre listing"},
    {HTMLElement::BulletList, u"ul menu dir"},
    {HTMLElement::NumberedList, u"ol"},
    {HTMLElement::Item, u"li"},
    {HTMLElement::Row, u"tr"},
    {HTMLElement::Cell, u"td th"},
    {HTMLElement::Foreign, u"svg math"},
    {HTMLElement::Template, u"template"},
    {HTMLElement::Script, u"script"},
    {HTMLElement::HiddenRaw, u"style title iframe noembed noframes"},
    {HTMLElement::EscapableRaw, u"textarea"},
    {HTMLElement::ShownRaw, u"xmp"},
    {HTMLElement::RawUntilTheEnd, u"plaintext"},
};

constexpr std::size_t slotBits = 8;

constexpr std::size_t slotOf(std::uint64_t key) { return (key * 0x9E3779B97F4A7C15U) >> (64 - slotBits); }

struct Slot {
  std::uint64_t key = 0;
  HTMLElement element = HTMLElement::Inline;
};

// A hash table with a name every third slot or so; whoever finds a slot taken uses the next free one.
constexpr auto slots = [] {
  std::array<Slot, std::size_t{1} << slotBits> table{};
  for (const Names& row : elements) {
    for (TextView rest = row.names; !rest.empty();) {
      const TextView name = rest.substr(0, rest.find(u' '));
      rest.remove_prefix(std::min(rest.size(), name.size() + 1));
      std::size_t slot = slotOf(keyOf(name));
      while (table[slot].key != 0) slot = (slot + 1) % table.size();
      table[slot] = {keyOf(name), row.element};
    }
  }
  return table;
}();

constexpr bool endsName(char16_t unit) { return isHTMLSpace(unit) || unit == u'/' || unit == u'>'; }

// `name` is in small letters.
bool isNamed(TextView text, TextView name) {
  return text.size() == name.size() &&
         std::equal(text.begin(), text.end(), name.begin(), [](char16_t a, char16_t b) { return htmlLowered(a) == b; });
}

// Whether a tag's name stands at `at`, and not only something that begins like it.
bool isNameAt(TextView text, std::size_t at, TextView name) {
  return at + name.size() < text.size() && endsName(text[at + name.size()]) &&
         isNamed(text.substr(at, name.size()), name);
}

std::size_t behindUnit(TextView text, char16_t unit, std::size_t from) {
  return std::min(text.size(), findUnit(text, unit, from) + 1);
}

// `from` is behind "<!--". A comment ends at "-->" or "--!>", and where it has just begun at ">" or "->".
std::size_t endOfComment(TextView text, std::size_t from) {
  for (std::size_t end = findUnit(text, u'>', from); end < text.size(); end = findUnit(text, u'>', end + 1)) {
    const TextView comment = text.substr(from, end - from);
    if (comment.empty() || comment == u"-" || comment.ends_with(u"--") || comment.ends_with(u"--!")) return end + 1;
  }
  return text.size();
}

}  // namespace

HTMLElement htmlElementNamed(TextView name) {
  const std::uint64_t key = keyOf(name);
  if (key == 0) return HTMLElement::Inline;
  std::size_t slot = slotOf(key);
  while (slots[slot].key != key && slots[slot].key != 0) slot = (slot + 1) % slots.size();
  return slots[slot].element;
}

bool HTMLAttributes::next() {
  char16_t before = 0;
  while (myPlace < myText.size() && (isHTMLSpace(myText[myPlace]) || myText[myPlace] == u'/'))
    before = myText[myPlace++];
  if (myPlace == myText.size()) return false;
  if (myText[myPlace] == u'>') {
    ++myPlace;
    myIsComplete = true;
    myIsSelfClosing = before == u'/';
    return false;
  }
  // A "=" at the start belongs to the name.
  const std::size_t start = myPlace++;
  while (myPlace < myText.size() && myText[myPlace] != u'=' && !endsName(myText[myPlace])) ++myPlace;
  myName = myText.substr(start, myPlace - start);
  myValue = {};
  std::size_t place = myPlace;
  while (place < myText.size() && isHTMLSpace(myText[place])) ++place;
  if (place < myText.size() && myText[place] == u'=') {
    myPlace = place + 1;
    readValue();
  }
  return true;
}

void HTMLAttributes::readValue() {
  while (myPlace < myText.size() && isHTMLSpace(myText[myPlace])) ++myPlace;
  if (myPlace == myText.size() || myText[myPlace] == u'>') return;
  const char16_t quote = myText[myPlace];
  if (quote == u'"' || quote == u'\'') {
    const std::size_t start = ++myPlace;
    myPlace = std::min(myText.find(quote, myPlace), myText.size());
    myValue = myText.substr(start, myPlace - start);
    if (myPlace < myText.size()) ++myPlace;
    return;
  }
  const std::size_t start = myPlace;
  while (myPlace < myText.size() && myText[myPlace] != u'>' && !isHTMLSpace(myText[myPlace])) ++myPlace;
  myValue = myText.substr(start, myPlace - start);
}

HTMLTag htmlTagAt(TextView text, std::size_t at) {
  HTMLTag tag;
  std::size_t place = at;
  while (place < text.size() && !endsName(text[place])) ++place;
  tag.name = text.substr(at, place - at);
  tag.attributes = place;
  HTMLAttributes attributes(text, place);
  while (attributes.next()) continue;
  tag.end = attributes.end();
  tag.isComplete = attributes.isComplete();
  tag.isSelfClosing = attributes.isSelfClosing();
  return tag;
}

std::optional<TextView> htmlAttribute(TextView text, const HTMLTag& tag, TextView name) {
  HTMLAttributes attributes(text.substr(0, tag.end), tag.attributes);
  while (attributes.next())
    if (isNamed(attributes.name(), name)) return attributes.value();
  return std::nullopt;
}

std::optional<int> htmlInteger(TextView value) {
  std::size_t place = 0;
  while (place < value.size() && isHTMLSpace(value[place])) ++place;
  const bool isNegative = place < value.size() && value[place] == u'-';
  if (place < value.size() && (value[place] == u'-' || value[place] == u'+')) ++place;
  const std::size_t start = place;
  std::int64_t number = 0;
  for (; place < value.size() && value[place] >= u'0' && value[place] <= u'9'; ++place)
    number = std::min<std::int64_t>(number * 10 + (value[place] - u'0'), std::numeric_limits<int>::max());
  if (place == start) return std::nullopt;
  return static_cast<int>(isNegative ? -number : number);
}

std::size_t endOfHTMLDeclaration(TextView text, std::size_t at) {
  if (text.substr(at, 4) == u"<!--") return endOfComment(text, at + 4);
  return behindUnit(text, u'>', at + 2);
}

std::size_t endOfHTMLRawText(TextView text, std::size_t from, TextView name) {
  for (std::size_t place = findUnit(text, u'<', from); place < text.size(); place = findUnit(text, u'<', place + 1))
    if (text.substr(place, 2) == u"</" && isNameAt(text, place + 2, name)) return place;
  return text.size();
}

std::size_t endOfHTMLScript(TextView text, std::size_t from) {
  constexpr TextView name = u"script";
  constexpr UnitSet brackets{u'<', u'>'};
  // A comment may hold the tags of another script (13.2.5.20 to 13.2.5.31).
  enum class Within { Script, Comment, ScriptInComment };
  Within within = Within::Script;
  UnitPlaces places(text, brackets, from);
  for (std::size_t place = places.next(); place < text.size(); place = places.next()) {
    if (text[place] == u'>') {
      if (text.substr(from, place - from).ends_with(u"--")) within = Within::Script;
    } else if (text.substr(place, 2) == u"</" && isNameAt(text, place + 2, name)) {
      if (within != Within::ScriptInComment) return place;
      within = Within::Comment;
    } else if (within == Within::Script && text.substr(place, 4) == u"<!--") {
      within = Within::Comment;
    } else if (within == Within::Comment && isNameAt(text, place + 1, name)) {
      within = Within::ScriptInComment;
    }
  }
  return text.size();
}

}  // namespace kelvane
