#include "Report/Printable.h"

#include "Platform/Foundation/Format.h"

namespace notebook {
namespace {

using kelvane::Text;
using kelvane::TextView;

bool isBetween(char16_t unit, char16_t first, char16_t last) { return unit >= first && unit <= last; }

// What a terminal obeys instead of showing it: control characters, line ends, marks of the writing direction.
bool isHarmful(char16_t unit) {
  return unit < 0x20 || isBetween(unit, 0x7F, 0x9F) || unit == 0x061C || unit == 0x200E || unit == 0x200F ||
         isBetween(unit, 0x2028, 0x202E) || isBetween(unit, 0x2066, 0x2069);
}

// Whether `text` begins with a whole surrogate pair.
bool startsWithPair(TextView text) {
  return text.size() >= 2 && isBetween(text[0], 0xD800, 0xDBFF) && isBetween(text[1], 0xDC00, 0xDFFF);
}

// The next piece of `rest`, which must not be empty, in its harmless form, and taken away from `rest`.
Text takePiece(TextView& rest) {
  const std::size_t length = startsWithPair(rest) ? 2 : 1;
  const TextView piece = rest.substr(0, length);
  rest.remove_prefix(length);
  const char16_t unit = piece[0];
  if (length == 1 && isBetween(unit, 0xDC80, 0xDCFF)) return kelvane::format(u"\\x%02X", unit & 0xFFU);
  if (!isHarmful(unit)) return Text(piece);
  const unsigned number = unit;
  return number < 0x100 ? kelvane::format(u"\\x%02X", number) : kelvane::format(u"\\u%04X", number);
}

}  // namespace

Text printable(TextView text, std::size_t limit) {
  Text result;
  while (!text.empty()) {
    const std::size_t before = result.size();
    result += takePiece(text);
    if (result.size() < limit || (result.size() == limit && text.empty())) continue;
    result.resize(before);
    return result + u'…';
  }
  return result;
}

Text counted(std::uint64_t number, TextView noun) {
  return kelvane::format(u"%lu %@%@", number, noun, TextView(number == 1 ? u"" : u"s"));
}

}  // namespace notebook
