#pragma once

#include <cstddef>
#include <string_view>

#include "Platform/Foundation/Text.h"

// The vector loops under the conversions between UTF-8 and UTF-16: runs of one kind of character, each converted up to
// the first place where it ends. They write ahead, so `out` must have room for as much as the whole input could give:
// a code unit per byte when widening, a byte per code unit when narrowing. Pure functions, any thread.
namespace kelvane {

// Widens the ASCII bytes that `bytes` begins with, and returns how many they are.
std::size_t widenASCII(std::string_view bytes, char16_t* out);

// Narrows the ASCII code units that `text` begins with, and returns how many they are.
std::size_t narrowASCII(TextView text, char* out);

// Decodes the sequences of three bytes that `bytes` begins with, as far as they are well-formed, and returns how many
// code units they give. It may stop early: what is left is for the general way.
std::size_t decodeThreeByteRun(std::string_view bytes, char16_t* out);

// Encodes the code units that `text` begins with and that take three bytes each, and returns how many they are. It may
// stop early as well.
std::size_t encodeThreeByteRun(TextView text, char* out);

// Encodes the beginning of `text`, of whatever kinds of characters but for surrogates, and moves `out` behind what it
// wrote, as far as the machine does it fast by vectors (most cannot, and encode nothing). Returns how many code units
// it took; it leaves the last ones of a text.
std::size_t encodeByVectors(TextView text, char*& out);

// At least as many bytes as the text takes in UTF-8; exact but for pairs of surrogates, which take four of six.
std::size_t utf8SizeLimit(TextView text);

}  // namespace kelvane
