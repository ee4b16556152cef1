#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Character references as the HTML standard has them (13.2.5.72 to 13.2.5.80). Pure functions, any thread.
namespace kelvane {

// What stands for a reference. Nothing is one unit that is 0: no reference stands for U+0000.
struct HTMLReference {
  TextView text() const { return {units.data(), units[0] == 0 ? 0U : units[1] == 0 ? 1U : 2U}; }

  // One or two; the second may be 0.
  std::array<char16_t, 2> units{};
  // How long the reference is, "&" and any ";" included; 0 when there is none.
  std::size_t length = 0;
};

// The reference that the text begins with at `at`, where an "&" stands: the longest of the 2,231 names that fits, some
// of which need no ";", or a number. 0, surrogates and what is beyond U+10FFFF read as U+FFFD, 128 to 159 as the
// characters that windows-1252 has there.
//   u"&eacute;s" => u"é", 8      u"&notit;" => u"¬", 4      u"&#x80;" => u"€", 6      u"& so" => (none)
KELVANE_EXPORT HTMLReference htmlReferenceAt(TextView text, std::size_t at);

// What windows-1252 has for 128 to 159, in order. Its five gaps are the control characters of the same number.
extern const std::array<char16_t, 32> windows1252Specials;

// A row of the table that the above looks in.
struct HTMLReferenceName {
  // Without the "&", and with its ";" where it has one.
  const char16_t* name;
  std::uint8_t length;
  std::array<char16_t, 2> units;
};

// In ascending order.
KELVANE_EXPORT extern const HTMLReferenceName htmlReferenceNames[2231];

}  // namespace kelvane
