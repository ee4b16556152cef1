#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// A set of UTF-16 code units. Membership is asked per code unit, in constant time; a character beyond U+FFFF is two of
// them and a member of no predefined set. Immutable, cheap to copy (copies share 8 KiB of bits).
class KELVANE_EXPORT NSCharacterSet {
 public:
  // Unicode's category Z*, U+0009...U+000D and U+0085.
  static const NSCharacterSet& whitespaceAndNewlineCharacterSet();
  // Unicode's category Nd: the decimal digits of every script, not only 0...9.
  static const NSCharacterSet& decimalDigitCharacterSet();
  // Each code unit of `units` is a member.
  static NSCharacterSet characterSetWithCharactersInString(TextView units);
  // The code units of `range`; what lies beyond U+FFFF is left out.
  static NSCharacterSet characterSetWithRange(NSRange range);
  // All code units for which `isMember` holds.
  template <class Predicate>
  static NSCharacterSet characterSetWithUnitsWhere(Predicate isMember) {
    Bits bits{};
    for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit)
      if (isMember(static_cast<char16_t>(unit))) bits[unit / 64] |= std::uint64_t{1} << (unit % 64);
    return NSCharacterSet(bits);
  }

  // The set of all code units that are no members of this one.
  NSCharacterSet invertedSet() const;

  bool characterIsMember(char16_t unit) const { return ((*myBits)[unit / 64U] >> (unit % 64U)) & 1U; }

 private:
  using Bits = std::array<std::uint64_t, 1024>;
  explicit NSCharacterSet(const Bits& bits) : myBits(std::make_shared<const Bits>(bits)) {}

  std::shared_ptr<const Bits> myBits;
};

}  // namespace kelvane
