#include "Platform/Foundation/HTMLReferences.h"

#include <algorithm>
#include <iterator>

namespace kelvane {

const std::array<char16_t, 32> windows1252Specials = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                      0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                      0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                      0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

namespace {

constexpr std::uint32_t beyondUnicode = 0x110000;

// -1 for what is no digit of the base.
constexpr int digitValue(char16_t unit, std::uint32_t base) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (base != 16) return -1;
  const auto lower = static_cast<char16_t>(unit | 0x20);
  return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

std::array<char16_t, 2> unitsOfNumber(std::uint32_t number) {
  if (number == 0 || number >= beyondUnicode || (number >= 0xD800 && number <= 0xDFFF)) return {0xFFFD, 0};
  if (number >= 0x80 && number <= 0x9F) return {windows1252Specials[number - 0x80], 0};
  if (number <= 0xFFFF) return {static_cast<char16_t>(number), 0};
  number -= 0x10000;
  return {static_cast<char16_t>(0xD800 + (number >> 10U)), static_cast<char16_t>(0xDC00 + (number & 0x3FFU))};
}

// `rest` begins behind "&#".
HTMLReference numericReference(TextView rest) {
  const bool isHexadecimal = !rest.empty() && (rest[0] == u'x' || rest[0] == u'X');
  const std::uint32_t base = isHexadecimal ? 16 : 10;
  const std::size_t start = isHexadecimal ? 1 : 0;
  std::uint32_t number = 0;
  std::size_t end = start;
  for (; end < rest.size(); ++end) {
    const int digit = digitValue(rest[end], base);
    if (digit < 0) break;
    number = std::min(number * base + static_cast<std::uint32_t>(digit), beyondUnicode);
  }
  if (end == start) return {};
  if (end < rest.size() && rest[end] == u';') ++end;
  return {unitsOfNumber(number), 2 + end};
}

constexpr bool isASCIILetter(char16_t unit) { return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z'; }

// Where the names with each first letter begin, counted from "A".
const std::array<std::uint16_t, 'z' - 'A' + 2>& starts() {
  static const auto made = [] {
    std::array<std::uint16_t, 'z' - 'A' + 2> table{};
    for (std::size_t letter = 0; letter < table.size(); ++letter) {
      const auto* start = std::ranges::lower_bound(htmlReferenceNames, static_cast<char16_t>(u'A' + letter), {},
                                                   [](const HTMLReferenceName& row) { return row.name[0]; });
      table[letter] = static_cast<std::uint16_t>(start - htmlReferenceNames);
    }
    return table;
  }();
  return made;
}

// `rest` begins behind "&". Goes on letter by letter among the names that begin as the text does; whichever ends there
// is the first of them, and the longest so far.
HTMLReference namedReference(TextView rest) {
  if (!isASCIILetter(rest[0])) return {};
  const std::size_t letter = rest[0] - u'A';
  const HTMLReferenceName* first = htmlReferenceNames + starts()[letter];
  const HTMLReferenceName* last = htmlReferenceNames + starts()[letter + 1];
  HTMLReference found;
  for (std::size_t depth = 1; first != last; ++depth) {
    if (first->length == depth) {
      found = {first->units, 1 + depth};
      ++first;
    }
    if (depth == rest.size()) break;
    const auto unitAt = [depth](const HTMLReferenceName& row) { return row.name[depth]; };
    first = std::ranges::lower_bound(first, last, rest[depth], {}, unitAt);
    last = std::ranges::upper_bound(first, last, rest[depth], {}, unitAt);
  }
  return found;
}

}  // namespace

HTMLReference htmlReferenceAt(TextView text, std::size_t at) {
  const TextView rest = text.substr(at + 1);
  if (rest.empty()) return {};
  return rest[0] == u'#' ? numericReference(rest.substr(1)) : namedReference(rest);
}

}  // namespace kelvane
