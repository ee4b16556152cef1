#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "Platform/Foundation/Text.h"

// The part of escaping for HTML that vectors do; HTMLEscape.h is the whole. Pure functions, any thread.
namespace kelvane::escaping {

// How many units are looked at together.
inline constexpr std::size_t blockUnits = 512;
// What there is room for behind them: the widest vector, which is written whole.
inline constexpr std::size_t slack = 64;

inline constexpr char16_t lastASCII = 0x7F;

// What there is to know of some units of a text.
struct Block {
  // The units themselves, which are ASCII unless they are escaped.
  std::array<std::uint8_t, blockUnits + slack> characters;
  // Where units stand that are escaped. Behind the last, a place behind the block.
  std::array<std::uint16_t, blockUnits + slack> places;
};

// Reads up to `blockUnits` units.
void readBlock(TextView units, Block& block);

// How many units of `text` are escaped.
std::size_t countEscaped(TextView text);

// The characters as code units.
void widen(const std::uint8_t* characters, std::size_t count, char16_t* out);

}  // namespace kelvane::escaping
