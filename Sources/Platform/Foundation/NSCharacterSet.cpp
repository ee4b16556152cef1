#include "Platform/Foundation/NSCharacterSet.h"

#include <unicode/uchar.h>

namespace kelvane {

const NSCharacterSet& NSCharacterSet::whitespaceAndNewlineCharacterSet() {
  static const auto& set = *new NSCharacterSet(characterSetWithUnitsWhere([](char16_t unit) {
    return (unit >= 0x09 && unit <= 0x0D) || unit == 0x85 || (U_GET_GC_MASK(unit) & U_GC_Z_MASK) != 0;
  }));
  return set;
}

const NSCharacterSet& NSCharacterSet::decimalDigitCharacterSet() {
  static const auto& set =
      *new NSCharacterSet(characterSetWithUnitsWhere([](char16_t unit) { return u_isdigit(unit) != 0; }));
  return set;
}

NSCharacterSet NSCharacterSet::characterSetWithCharactersInString(TextView units) {
  Bits bits{};
  for (const char16_t unit : units) bits[unit / 64U] |= std::uint64_t{1} << (unit % 64U);
  return NSCharacterSet(bits);
}

NSCharacterSet NSCharacterSet::characterSetWithRange(NSRange range) {
  return characterSetWithUnitsWhere(
      [range](char16_t unit) { return unit >= range.location && unit - range.location < range.length; });
}

NSCharacterSet NSCharacterSet::invertedSet() const {
  Bits bits = *myBits;
  for (std::uint64_t& word : bits) word = ~word;
  return NSCharacterSet(bits);
}

}  // namespace kelvane
