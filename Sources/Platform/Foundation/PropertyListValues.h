#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/Text.h"

// What stands in the elements of a property list in XML, as values. All of them are strict: nothing when the text is
// not of the form told, from its first character to its last. Any thread.
namespace kelvane {

// White space as XML has it.
constexpr bool isXMLSpace(char byte) { return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r'; }

// How many code units the character at `at` has, 1 or 2; 0 when what stands there is no character of XML: a control
// character other than TAB, LF and CR, an unpaired surrogate, U+FFFE or U+FFFF.
constexpr std::size_t xmlCharacterLength(TextView text, std::size_t at) {
  const char16_t unit = text[at];
  if (unit < 0x20) return unit == u'\t' || unit == u'\n' || unit == u'\r' ? 1 : 0;
  if ((unit & 0xF800) != 0xD800) return unit < 0xFFFE ? 1 : 0;
  const bool isPair = (unit & 0xFC00) == 0xD800 && at + 1 < text.size() && (text[at + 1] & 0xFC00) == 0xDC00;
  return isPair ? 2 : 0;
}

// `text` with U+FFFD in place of each code unit that is not of a character of XML.
Text replacingNonXML(TextView text);

// The code units of `text`, the higher byte of each first, and back; nothing for an odd number of bytes.
std::vector<std::uint8_t> utf16Bytes(TextView text);
std::optional<Text> textFromUTF16Bytes(std::span<const std::uint8_t> bytes);

// Without the white space at both ends.
std::string_view trimmedXML(std::string_view text);

// Letters of ASCII count as equal in both cases.
bool equalsIgnoringASCIICase(std::string_view a, std::string_view b);

// Decimal, or hexadecimal behind "0x", with or without a sign, within 64 bits; unsigned only where it must be.
std::optional<NSNumber> integerFrom(std::string_view text);
// Decimal with or without a sign, fraction and exponent; "nan", "inf" and "infinity" in any case.
std::optional<double> realFrom(std::string_view text);
// YYYY-MM-DDTHH:MM:SSZ, a time that there was.
std::optional<double> secondsSince1970From(std::string_view text);
// Base64 (RFC 4648, section 4) with white space anywhere; padding, and no bits left over.
std::optional<std::vector<std::uint8_t>> bytesFromBase64(std::string_view text);

}  // namespace kelvane
