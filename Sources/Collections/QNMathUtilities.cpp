#include "Collections/QNMathUtilities.h"

#include <cstdlib>

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/RandomBytes.h"

namespace kelvane {

void QNMathUtilities::initRandom() {
  const auto seconds = static_cast<std::int64_t>(NSDate().timeIntervalSinceReferenceDate());
  const auto seed = static_cast<std::uint32_t>(seconds);
  srand(seed);
  srandom(seed);
}

std::int64_t QNMathUtilities::randomValueBetween(std::int64_t lower, std::int64_t upper) {
  return valueBetween(lower, upper, randomWord());
}

std::int64_t QNMathUtilities::valueBetween(std::int64_t lower, std::int64_t upper, std::uint32_t word) {
  const auto bits = static_cast<std::uint64_t>(lower);
  const auto range = static_cast<std::int64_t>(1 - bits + static_cast<std::uint64_t>(upper));
  if (range == 0) {
    NSLog(u"randomValueBetween:and: there is no number between %ld and %ld.", lower, upper);
    std::abort();
  }
  return static_cast<std::int64_t>(bits + static_cast<std::uint64_t>(std::int64_t{word} % range));
}

double QNMathUtilities::randomValueGausianDistributedBetween(double lower, double upper) {
  const auto cut = [](double bound) { return NSNumber(bound).integerValue(); };
  return static_cast<double>(randomValueBetween(cut(lower), cut(upper))) * 0.25;
}

}  // namespace kelvane
