#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/TextScan.h"

// Writing a text anew with some of its code units replaced: what escaping and removing are made of. Pure functions, any
// thread, one walk over the text.
namespace kelvane {

// `text` without the members of `set`.
KELVANE_EXPORT Text removingAnyOf(TextView text, const UnitSet& set);

// `text` with `prefix` put before each member of `set`.
KELVANE_EXPORT Text prefixingAnyOf(TextView text, const UnitSet& set, char16_t prefix);

namespace rewriting {

// How many units are copied at a time, and looked at together. Runs between special units are mostly shorter than a
// step, so most are copied without a branch; what is copied beyond a run's end is overwritten by what comes next.
inline constexpr std::size_t step = 48;
inline constexpr std::size_t blockWords = 8;

// `room` tells how many units may be read and written from here on.
inline char16_t* copyRun(char16_t* out, const char16_t* run, std::size_t length, std::size_t room) {
  if (length > 4 * step || room < length + step) {
    std::memcpy(out, run, length * sizeof(char16_t));
    return out + length;
  }
  for (std::size_t i = 0; i < length; i += step) std::memcpy(out + i, run + i, step * sizeof(char16_t));
  return out + length;
}

// The places that are marked, one after another, and behind them some that mean nothing. Four are written at a time, so
// that how many there are in a word need not be guessed place by place.
class Places {
 public:
  explicit Places(const std::array<std::uint64_t, blockWords>& marks) {
    for (std::size_t word = 0; word < marks.size(); ++word) append(marks[word], word * 64);
  }
  const std::uint16_t* begin() const { return myPlaces.data(); }
  const std::uint16_t* end() const { return myPlaces.data() + mySize; }

 private:
  void append(std::uint64_t marks, std::size_t base) {
    const auto count = static_cast<std::size_t>(std::popcount(marks));
    for (std::size_t written = 0; written < count; written += 4)
      for (std::size_t i = 0; i < 4; ++i) {
        myPlaces[mySize + written + i] =
            static_cast<std::uint16_t>(base + static_cast<std::size_t>(std::countr_zero(marks)));
        marks &= marks - 1;
      }
    mySize += count;
  }

  std::array<std::uint16_t, blockWords * 64 + 4> myPlaces;
  std::size_t mySize = 0;
};

}  // namespace rewriting

// Writes `text` to `out`, each unit of `special` as `put(out, unit)` writes it, which returns the place behind. Returns
// the end of what is written. At every unit of the text `out` must have room for all units that are left, and for what
// `put` writes.
template <class Put>
char16_t* rewrite(TextView text, const UnitSet& special, char16_t* out, Put put) {
  constexpr std::size_t blockSize = rewriting::blockWords * 64;
  std::size_t start = 0;
  for (std::size_t block = 0; block < text.size(); block += blockSize) {
    std::array<std::uint64_t, rewriting::blockWords> marks{};
    markAnyOf(text.substr(block, blockSize), special, marks.data());
    for (const std::uint16_t offset : rewriting::Places(marks)) {
      const std::size_t place = block + offset;
      out = rewriting::copyRun(out, text.data() + start, place - start, text.size() - start);
      out = put(out, text[place]);
      start = place + 1;
    }
  }
  return rewriting::copyRun(out, text.data() + start, text.size() - start, text.size() - start);
}

}  // namespace kelvane
