#include "Platform/Foundation/HTMLEscape.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "Platform/Foundation/Overwrite.h"
#include "Platform/Foundation/TextRewrite.h"
#include "Platform/Foundation/TextScan.h"

namespace kelvane {
namespace {

constexpr UnitSet special{u'"', u'&', u'<', u'>', u'\n'};
constexpr char16_t lastASCII = 0x7F;

// The longest is a reference such as "&#65535;". Shorter ones are written in full width too and then overwritten, so
// that how long they are need not be guessed.
constexpr std::size_t longest = 8;

struct Escape {
  std::array<char16_t, longest> units{};
  std::size_t length = 0;
};

constexpr Escape escape(TextView text) {
  Escape made;
  for (const char16_t unit : text) made.units[made.length++] = unit;
  return made;
}

constexpr auto escapes = [] {
  std::array<Escape, u'>' + 1> table{};
  table[u'\n'] = escape(u"<br/>");
  table[u'"'] = escape(u"&quot;");
  table[u'&'] = escape(u"&amp;");
  table[u'<'] = escape(u"&lt;");
  table[u'>'] = escape(u"&gt;");
  return table;
}();

constexpr char16_t digit(std::size_t number) { return static_cast<char16_t>(u'0' + number % 10); }

// A reference is written in two halves: "&#" with the thousands, and three digits with ";".
using Half = std::array<char16_t, longest / 2>;

struct Heads {
  std::array<Half, 66> units{};
  std::array<std::uint8_t, 66> lengths{};
};

constexpr auto heads = [] {
  Heads table;
  for (std::size_t thousands = 0; thousands < table.units.size(); ++thousands) {
    Half& half = table.units[thousands];
    half = {u'&', u'#', thousands < 10 ? digit(thousands) : digit(thousands / 10), digit(thousands)};
    table.lengths[thousands] = static_cast<std::uint8_t>(thousands == 0 ? 2 : thousands < 10 ? 3 : 4);
  }
  return table;
}();

constexpr auto tails = [] {
  std::array<Half, 1000> table{};
  for (std::size_t number = 0; number < table.size(); ++number)
    table[number] = {digit(number / 100), digit(number / 10), digit(number), u';'};
  return table;
}();

char16_t* putEscape(char16_t* out, char16_t unit) {
  if (unit <= lastASCII) {
    const Escape& written = escapes[unit];
    std::memcpy(out, written.units.data(), sizeof written.units);
    return out + written.length;
  }
  const std::size_t thousands = unit / 1000U;
  std::memcpy(out, heads.units[thousands].data(), sizeof(Half));
  out += heads.lengths[thousands];
  std::memcpy(out, tails[unit % 1000U].data(), sizeof(Half));
  return out + longest / 2;
}

// At least what the text takes when it is written, and room for one escape more.
std::size_t roomFor(TextView text) {
  return text.size() + (longest - 1) * countAnyOfOrAbove(text, special, lastASCII) + longest;
}

char16_t* write(TextView text, char16_t* out) {
  const auto mark = [](TextView stretch, std::uint64_t* marks) { markAnyOfOrAbove(stretch, special, lastASCII, marks); };
  return rewriteMarked(text, mark, out, putEscape);
}

}  // namespace

Text escapedForHTML(TextView text) {
  return overwritten<Text>(roomFor(text), [&](char16_t* begin) { return write(text, begin) - begin; });
}

void appendEscapedForHTML(Text& out, TextView text) {
  const std::size_t start = out.size();
  out.resize(start + roomFor(text));
  out.resize(static_cast<std::size_t>(write(text, out.data() + start) - out.data()));
}

}  // namespace kelvane
