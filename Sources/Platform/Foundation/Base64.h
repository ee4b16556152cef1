#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// The loops that all Base64 goes through (RFC 4648, section 4: the standard alphabet, padded by "="), by vectors. They
// know nothing of leniency: whoever reads decides what to do where a clean stretch ends. Pure functions, any thread.
namespace kelvane {

// How many digits and "=" stand for `count` bytes: 4 for each 3 that have begun.
constexpr std::size_t base64Length(std::size_t count) { return count / 3 * 4 + (count % 3 == 0 ? 0 : 4); }

// Writes the base64Length(bytes.size()) characters for `bytes`, and returns the place behind the last.
KELVANE_EXPORT char16_t* encodeBase64(std::span<const std::uint8_t> bytes, char16_t* out);
KELVANE_EXPORT char* encodeBase64(std::span<const std::uint8_t> bytes, char* out);

// How much of a text was clean, and how many bytes it held.
struct Base64Run {
  std::size_t read = 0;
  std::size_t written = 0;
};

// What `decodeBase64Run` may write behind the bytes that it tells of.
inline constexpr std::size_t base64Slack = 64;

// Decodes groups of four digits from the beginning of `text`, and passes over white space (U+0009...U+000D and the
// blank) before and between them, as line ends stand. Stops before the first group that holds anything else, "="
// included, or is cut short. `out` must have room for text.size() / 4 * 3 bytes and base64Slack more.
KELVANE_EXPORT Base64Run decodeBase64Run(TextView text, std::uint8_t* out);
KELVANE_EXPORT Base64Run decodeBase64Run(std::string_view text, std::uint8_t* out);

// The value of a digit, 0 to 63; noBase64Digit for any other code unit.
inline constexpr std::uint8_t noBase64Digit = 0xFF;
constexpr std::uint8_t base64Digit(char16_t unit) {
  if (unit >= u'A' && unit <= u'Z') return static_cast<std::uint8_t>(unit - u'A');
  if (unit >= u'a' && unit <= u'z') return static_cast<std::uint8_t>(unit - u'a' + 26);
  if (unit >= u'0' && unit <= u'9') return static_cast<std::uint8_t>(unit - u'0' + 52);
  return unit == u'+' ? 62 : unit == u'/' ? 63 : noBase64Digit;
}

}  // namespace kelvane
