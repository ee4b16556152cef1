#pragma once

#include <cstdint>

#include "Platform/Foundation/Export.h"

namespace kelvane {

// Random numbers. They come from the system's source and need no seed. Any thread, except for `initRandom`.
//
// ```cpp
// const std::int64_t die = QNMathUtilities::randomValueBetween(1, 6);
// ```
class KELVANE_EXPORT QNMathUtilities {
 public:
  QNMathUtilities() = delete;

  // initRandom  Seeds the C library's own generators, `rand` and `random`, with the whole seconds since the reference
  // date (2001-01-01 00:00:00 UTC). The operations below use neither. Main thread, as for these generators.
  static void initRandom();

  // randomValueBetween:and:  A number from `lower` to `upper`, both included: what `valueBetween` makes of a random
  // word.
  static std::int64_t randomValueBetween(std::int64_t lower, std::int64_t upper);

  // The number between the bounds that `word` stands for: lower + word % (1 - lower + upper), in two's complement and
  // with the remainder of a division that cuts toward zero. So the lower numbers are a little likelier where the range
  // does not divide 2^32, and no number is more than 2^32 - 1 above `lower`.
  //   0, 9, 123 => 3      7, 7, 123 => 7      10, 5, 7 => 13
  // A range of 0 ends the process, with a message in the system log: `upper` one below `lower`, or all 64-bit numbers.
  static std::int64_t valueBetween(std::int64_t lower, std::int64_t upper, std::uint32_t word);

  // randomValueGausianDistributed  Always 0.
  static std::int64_t randomValueGausianDistributed() { return 0; }

  // randomValueGausianDistributedBetween:and:  A quarter of a number between the bounds, these cut toward zero; so not
  // a normal distribution. Bounds beyond 64 bits are held at the largest and smallest value, NaN counts as 0.
  //   0.0, 4.9 => one of 0.0, 0.25, 0.5, 0.75, 1.0
  static double randomValueGausianDistributedBetween(double lower, double upper);
};

}  // namespace kelvane
