#include "Collections/RemainingPlaces.h"

#include <algorithm>
#include <bit>

namespace kelvane::detail {

RemainingPlaces::RemainingPlaces(std::size_t count)
    : myCount(count), myDistances(count), myCounts(std::bit_ceil(count / placesInBlock + 2)) {
  for (std::size_t i = 0; i < count; ++i) myDistances[i] = static_cast<std::uint8_t>(i % placesInBlock);
  for (std::size_t i = 1; i < myCounts.size(); ++i) {
    const std::size_t blocks = std::size_t{1} << static_cast<unsigned>(std::countr_zero(i));
    const std::size_t start = (i - blocks) * placesInBlock;
    if (start < count) myCounts[i] = std::min(blocks * placesInBlock, count - start);
  }
}

std::size_t RemainingPlaces::take(std::size_t rank) {
  // Goes down to the first block up to whose end there are more than `rank`. What counts it on the way loses one.
  std::size_t block = 0;
  for (std::size_t step = myCounts.size() / 2; step > 0; step /= 2) {
    std::size_t& counted = myCounts[block + step];
    if (counted > rank) {
      --counted;
    } else {
      rank -= counted;
      block += step;
    }
  }
  --myCount;
  const std::size_t start = block * placesInBlock;
  const auto taken = myDistances.begin() + static_cast<std::ptrdiff_t>(start + rank);
  const auto end =
      myDistances.begin() + static_cast<std::ptrdiff_t>(std::min(start + placesInBlock, myDistances.size()));
  const std::size_t place = start + *taken;
  std::copy(taken + 1, end, taken);
  return place;
}

}  // namespace kelvane::detail
