#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Platform/Foundation/Text.h"

namespace kelvane {

// Texts in ascending order of their code units, as `<` has them, for ordered containers. Keys often begin alike, which
// is why units are compared four at a time.
struct TextOrder {
  using is_transparent = void;

  bool operator()(TextView a, TextView b) const {
    const std::size_t common = std::min(a.size(), b.size());
    std::size_t i = 0;
    if constexpr (std::endian::native == std::endian::little) {
      for (; i + 4 <= common; i += 4) {
        const std::uint64_t difference = fourUnits(a.data() + i) ^ fourUnits(b.data() + i);
        if (difference == 0) continue;
        i += static_cast<std::size_t>(std::countr_zero(difference)) / 16;
        return a[i] < b[i];
      }
    }
    for (; i < common; ++i)
      if (a[i] != b[i]) return a[i] < b[i];
    return a.size() < b.size();
  }

 private:
  static std::uint64_t fourUnits(const char16_t* units) {
    std::uint64_t word;
    std::memcpy(&word, units, sizeof word);
    return word;
  }
};

}  // namespace kelvane
