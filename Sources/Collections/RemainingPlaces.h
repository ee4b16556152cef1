#pragma once

#include <cstddef>
#include <vector>

#include "Platform/Foundation/Export.h"

namespace kelvane::detail {

// The places 0 ... n - 1 of a list from which one after another is taken, each known by its rank among those that are
// left. A Fenwick tree: taking one is logarithmic where erasing from a list is linear.
class KELVANE_EXPORT RemainingPlaces {
 public:
  explicit RemainingPlaces(std::size_t count);

  // How many are left.
  std::size_t count() const { return myCount; }
  // Takes the place that has `rank` others before it, which must be less than `count`.
  std::size_t take(std::size_t rank);

 private:
  std::size_t myCount;
  // At each index, which begins at 1, how many are left of the places that the index's lowest set bit covers.
  std::vector<std::size_t> myCounts;
};

}  // namespace kelvane::detail
