#pragma once

#include <cstdlib>
#include <cstring>
#include <string>

#include "Platform/Foundation/Text.h"

// What the machine itself takes for the bytes of a text.
namespace kelvane::bench {

// In none of the inputs' code units.
inline constexpr int absentByte = 0xFE;

// Looks at all of them.
inline const void* scanned(TextView text) {
  const void* found = std::memchr(text.data(), absentByte, text.size() * sizeof(char16_t));
  if (found) std::abort();
  return found;
}

// Copies them to memory that was there before.
inline const void* copied(TextView text) {
  static std::u16string room;
  if (room.size() < text.size()) room.resize(text.size());
  return std::memcpy(room.data(), text.data(), text.size() * sizeof(char16_t));
}

}  // namespace kelvane::bench
