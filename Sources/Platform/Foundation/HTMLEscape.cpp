#include "Platform/Foundation/HTMLEscape.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "Platform/Foundation/Overwrite.h"
#include "Platform/Foundation/TextRewrite.h"
#include "Platform/Foundation/TextScan.h"

namespace kelvane {
namespace {

constexpr UnitSet special{u'"', u'&', u'<', u'>', u'\n'};
constexpr char16_t lastASCII = 0x7F;

// The longest is a reference such as "&#65535;". All are written in two halves of full width, of which as much counts
// as there is: so there is nothing to guess about them, and the next half overwrites the rest.
constexpr std::size_t longest = 8;

struct Half {
  std::array<char16_t, longest / 2> units{};
  std::size_t length = 0;
};

constexpr Half half(TextView text) {
  Half made;
  for (const char16_t unit : text.substr(0, made.units.size())) made.units[made.length++] = unit;
  return made;
}

constexpr char16_t digit(std::size_t number) { return static_cast<char16_t>(u'0' + number % 10); }

constexpr TextView escapeOf(std::size_t unit) {
  switch (unit) {
    case u'\n':
      return u"<br/>";
    case u'"':
      return u"&quot;";
    case u'&':
      return u"&amp;";
    case u'<':
      return u"&lt;";
    case u'>':
      return u"&gt;";
    default:
      return {};
  }
}

// Of a reference, "&#" and the thousands, and then three digits and ";". Behind these, the halves for ASCII.
constexpr std::size_t thousands = 66;
constexpr auto heads = [] {
  std::array<Half, thousands + lastASCII + 1> table{};
  for (std::size_t i = 0; i < thousands; ++i) {
    const char16_t digits[] = {u'&', u'#', i < 10 ? digit(i) : digit(i / 10), digit(i)};
    table[i] = half(TextView(digits, i == 0 ? 2 : i < 10 ? 3 : 4));
  }
  for (std::size_t unit = 0; unit <= lastASCII; ++unit) table[thousands + unit] = half(escapeOf(unit));
  return table;
}();
constexpr auto tails = [] {
  std::array<Half, 1000 + lastASCII + 1> table{};
  for (std::size_t i = 0; i < 1000; ++i) {
    const char16_t digits[] = {digit(i / 100), digit(i / 10), digit(i), u';'};
    table[i] = half(TextView(digits, std::size(digits)));
  }
  for (std::size_t unit = 0; unit <= lastASCII; ++unit) {
    const TextView escape = escapeOf(unit);
    table[1000 + unit] = half(escape.substr(std::min<std::size_t>(escape.size(), longest / 2)));
  }
  return table;
}();

inline char16_t* putHalf(char16_t* out, const Half& half) {
  std::memcpy(out, half.units.data(), sizeof half.units);
  return out + half.length;
}

inline char16_t* putEscape(char16_t* out, char16_t unit) {
  const std::size_t isASCII = unit <= lastASCII;
  out = putHalf(out, heads[unit / 1000U + isASCII * (thousands + unit)]);
  return putHalf(out, tails[unit % 1000U + isASCII * 1000U]);
}

// At least what the text takes when it is written, and room for one escape more.
std::size_t roomFor(TextView text) {
  return text.size() + (longest - 1) * countAnyOfOrAbove(text, special, lastASCII) + longest;
}

char16_t* write(TextView text, char16_t* out) {
  // Runs between special units are mostly shorter than that, so most are copied without a look at their length.
  constexpr std::size_t step = 32;
  constexpr std::size_t blockSize = rewriting::blockWords * 64;
  std::size_t start = 0;
  for (std::size_t block = 0; block < text.size(); block += blockSize) {
    std::array<std::uint64_t, rewriting::blockWords> marks{};
    markAnyOfOrAbove(text.substr(block, blockSize), special, lastASCII, marks.data());
    for (const std::uint16_t offset : rewriting::Places(marks)) {
      const std::size_t place = block + offset;
      const std::size_t length = place - start;
      const char16_t* const run = text.data() + start;
      if (length <= step && start + step <= text.size())
        std::memcpy(out, run, step * sizeof(char16_t));
      else
        std::memcpy(out, run, length * sizeof(char16_t));
      out = putEscape(out + length, text[place]);
      start = place + 1;
    }
  }
  std::memcpy(out, text.data() + start, (text.size() - start) * sizeof(char16_t));
  return out + (text.size() - start);
}

constexpr auto isSpecial = [] {
  std::array<bool, lastASCII + 1> table{};
  for (std::size_t unit = 0; unit <= lastASCII; ++unit) table[unit] = !escapeOf(unit).empty();
  return table;
}();

// Up to here, going unit by unit takes less than marking does.
constexpr std::size_t shortText = 64;

char16_t* writeShort(TextView text, char16_t* out) {
  for (const char16_t unit : text) {
    if (unit > lastASCII || isSpecial[unit])
      out = putEscape(out, unit);
    else
      *out++ = unit;
  }
  return out;
}

}  // namespace

Text escapedForHTML(TextView text) {
  return overwritten<Text>(roomFor(text), [&](char16_t* begin) { return write(text, begin) - begin; });
}

void appendEscapedForHTML(Text& out, TextView text) {
  if (text.size() > shortText) {
    const std::size_t start = out.size();
    out.resize(start + roomFor(text));
    out.resize(static_cast<std::size_t>(write(text, out.data() + start) - out.data()));
    return;
  }
  std::array<char16_t, longest * shortText> escaped;
  out.append(escaped.data(), static_cast<std::size_t>(writeShort(text, escaped.data()) - escaped.data()));
}

}  // namespace kelvane
