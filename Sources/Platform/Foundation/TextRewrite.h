#pragma once

#include <cstddef>
#include <cstring>

#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/TextPlaces.h"

// Writing a text anew with some of its code units replaced: what escaping and removing are made of.
namespace kelvane {

namespace rewriting {

// Runs between special units are mostly short, so they are copied in steps of this many units, of which the last one
// may copy too much: what comes next overwrites that.
inline constexpr std::size_t step = 16;

// `room` tells how many units may be read and written from here on.
inline char16_t* copyRun(char16_t* out, const char16_t* run, std::size_t length, std::size_t room) {
  if (length > 8 * step || room < length + step) {
    std::memcpy(out, run, length * sizeof(char16_t));
    return out + length;
  }
  for (std::size_t i = 0; i < length; i += step) std::memcpy(out + i, run + i, step * sizeof(char16_t));
  return out + length;
}

}  // namespace rewriting

// Writes `text` to `out`, each unit of `special` as `put(out, unit)` writes it, which returns the place behind. Returns
// the end of what is written. At every unit of the text `out` must have room for all units that are left, and for what
// `put` writes.
template <class Put>
char16_t* rewrite(TextView text, const UnitSet& special, char16_t* out, Put put) {
  UnitPlaces places(text, special);
  for (std::size_t start = 0;;) {
    const std::size_t place = places.next();
    out = rewriting::copyRun(out, text.data() + start, place - start, text.size() - start);
    if (place == text.size()) return out;
    out = put(out, text[place]);
    start = place + 1;
  }
}

}  // namespace kelvane
