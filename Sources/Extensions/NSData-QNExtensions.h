#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Base64 (RFC 4648, section 4): "A...Za...z0...9+/", padded by "=".
//
//   encodeDataToBase64("AB")          => u"QUI="
//   decodeDataFromBase64(u"QU\nI=")   => "AB"
//
// ```cpp
// const std::vector<std::uint8_t> bytes = NSDataExtensions::decodeDataFromBase64(u"QUI=");
// const std::optional<Text> text = NSDataExtensions::encodeDataToBase64(bytes);
// ```
//
// Writing is strict. Reading is lenient by design and never fails: it makes the best of whatever it is given, by the
// rules below. To tell good Base64 from bad, compare with what the result encodes to. Pure functions, any thread.
namespace kelvane::NSDataExtensions {

// encodeDataToBase64:  The text for `bytes`, without line ends; empty for no bytes. Nothing when there is not enough
// memory for it.
KELVANE_EXPORT std::optional<Text> encodeDataToBase64(std::span<const std::uint8_t> bytes);

// encodeDataToBase64:withBlockLength:  The same in lines of `blockLength` characters (76 in mail, 64 in PEM), each of
// them, the last one too, with LF behind it. No bytes give the empty text and no line; a length of 0 means no lines.
KELVANE_EXPORT std::optional<Text> encodeDataToBase64(std::span<const std::uint8_t> bytes, std::size_t blockLength);

// decodeQuantum:andSource:  Four characters to three bytes. "=" counts as the digit 0. Any other byte that is no digit
// is left out, so that the digits before it come out six bits lower than they stand.
//   "QUJD" => 41 42 43      "QU*D" => 01 05 03
KELVANE_EXPORT void decodeQuantum(std::span<std::uint8_t, 3> destination, std::span<const char, 4> source);

// decodeDataFromBase64:  The bytes for `text`. White space of any kind, anywhere, does not count; the rest is taken as
// its UTF-8 bytes, in groups of four, each decoded by itself as decodeQuantum does. Reading ends behind the first run
// of "=", and a group that is cut short is dropped. Each "=" takes a byte off the end. Three "=" or more, or none but
// these, give no bytes at all.
//   u"QUJDRA" => "ABC"      u"QQ==QUJD" => "A"      u"QUJDQ=" => "AB"
KELVANE_EXPORT std::vector<std::uint8_t> decodeDataFromBase64(TextView text);

}  // namespace kelvane::NSDataExtensions
