#include "Collections/RemainingPlaces.h"

#include <bit>

namespace kelvane::detail {

RemainingPlaces::RemainingPlaces(std::size_t count) : myCount(count), myCounts(count + 1) {
  for (std::size_t i = 1; i <= count; ++i) myCounts[i] = std::size_t{1} << std::countr_zero(i);
}

std::size_t RemainingPlaces::take(std::size_t rank) {
  // Goes down to the first index up to which there are more than `rank`. What covers it on the way loses one.
  std::size_t index = 0;
  for (std::size_t step = std::bit_floor(myCounts.size() - 1); step > 0; step /= 2) {
    const std::size_t next = index + step;
    if (next >= myCounts.size()) continue;
    if (myCounts[next] <= rank) {
      rank -= myCounts[next];
      index = next;
    } else {
      --myCounts[next];
    }
  }
  --myCount;
  return index;
}

}  // namespace kelvane::detail
