#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "Platform/Foundation/NSNumber.h"

// What stands in the elements of a property list in XML, as values. All of them are strict: nothing when the text is
// not of the form told, from its first character to its last. Any thread.
namespace kelvane {

// White space as XML has it.
constexpr bool isXMLSpace(char byte) { return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r'; }

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
