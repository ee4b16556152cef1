#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Platform/Foundation/Export.h"

namespace kelvane::detail {

// The places 0 ... n - 1 of a list from which one after another is taken, each known by its rank among those that are
// left. Taking one is logarithmic, where erasing it from the list would be linear. A byte for each place and little
// more.
class KELVANE_EXPORT RemainingPlaces {
 public:
  explicit RemainingPlaces(std::size_t count);

  // How many are left.
  std::size_t count() const { return myCount; }
  // Takes the place that has `rank` others before it, which must be less than `count`.
  std::size_t take(std::size_t rank);

 private:
  // As many as a byte tells apart.
  static constexpr std::size_t placesInBlock = 256;

  std::size_t myCount;
  // The places that are left in each block, as distances from where the block starts, ascending. What lies behind them
  // has no meaning.
  std::vector<std::uint8_t> myDistances;
  // How many are left, as a Fenwick tree over the blocks: each index, which begins at 1, counts the blocks that its
  // lowest set bit covers. Filled up to a power of two, so that every way down has the same length.
  std::vector<std::size_t> myCounts;
};

}  // namespace kelvane::detail
