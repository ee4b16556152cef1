#include <sys/wait.h>
#include <unistd.h>

#include <array>

#include "Collections/QNMathUtilities.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/RandomBytes.h"
#include "Support/Testing.h"

namespace {

constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

TEST(QNMathUtilities, NumbersFollowFromTheDraw) {
  const std::tuple<std::int64_t, std::int64_t, std::uint32_t, std::int64_t> rows[] = {
      {0, 9, 123, 3},
      {-5, 5, 10, 5},
      {-5, 5, 11, -5},
      {10, 5, 0, 10},  // a negative range
      {10, 5, 7, 13},
      {0, largest, 0xFFFFFFFF, 0xFFFFFFFF},  // more than a draw reaches
      {largest, largest, 5, largest},
      {largest, smallest + 4, 8, smallest + 1},  // wraps around: a range of 6
  };
  for (const auto& [lower, upper, word, number] : rows)
    EXPECT_EQ(QNMathUtilities::valueBetween(lower, upper, word), number) << lower << ' ' << upper << ' ' << word;
}

TEST(QNMathUtilitiesDeathTest, NoNumberEndsTheProcess) {
  EXPECT_DEATH(QNMathUtilities::randomValueBetween(5, 4), "no number between 5 and 4");
  EXPECT_DEATH(QNMathUtilities::valueBetween(smallest, largest, 0), "no number");
}

// A count of 6000 even draws leaves its mean by 500, which is 17 standard deviations, less than once in 10^60 runs.
TEST(QNMathUtilities, DrawsAreEven) {
  std::array<int, 6> counts{};
  for (int i = 0; i < 36000; ++i) ++counts.at(static_cast<std::size_t>(QNMathUtilities::randomValueBetween(1, 6) - 1));
  for (const int count : counts) EXPECT_NEAR(count, 6000, 1200);
}

TEST(QNMathUtilities, NamedAfterGaussAllTheSame) {
  EXPECT_EQ(QNMathUtilities::randomValueGausianDistributed(), 0);
  EXPECT_EQ(QNMathUtilities::randomValueGausianDistributedBetween(3.9, 3.1), 0.75);
  EXPECT_EQ(QNMathUtilities::randomValueGausianDistributedBetween(-3.9, -3.1), -0.75);
}

TEST(QNMathUtilities, SeedsTheClassicGeneratorsFromTheClock) {
  const auto now = [] { return static_cast<unsigned>(NSDate().timeIntervalSinceReferenceDate()); };
  const unsigned before = now();
  QNMathUtilities::initRandom();
  const unsigned after = now();
  const long drawn = random();
  std::vector<long> possible;
  for (unsigned seed = before; seed <= after; ++seed) srandom(seed), possible.push_back(random());
  EXPECT_THAT(possible, testing::Contains(drawn));
}

TEST(RandomBytes, AForkedProcessDrawsItsOwn) {
  const auto drawn = [] { return std::uint64_t{randomWord()} << 32U | randomWord(); };
  drawn();
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  if (fork() == 0) {
    const std::uint64_t itsOwn = drawn();
    _exit(write(ends[1], &itsOwn, sizeof itsOwn) == sizeof itsOwn ? 0 : 1);
  }
  std::uint64_t itsOwn = 0;
  ASSERT_EQ(read(ends[0], &itsOwn, sizeof itsOwn), ssize_t{sizeof itsOwn});
  EXPECT_NE(itsOwn, drawn());
  wait(nullptr);
}

}  // namespace
