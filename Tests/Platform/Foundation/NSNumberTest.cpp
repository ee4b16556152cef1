#include "Platform/Foundation/NSNumber.h"
#include "Support/Testing.h"

namespace {

constexpr std::int32_t low32 = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t high32 = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t low64 = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t high64 = std::numeric_limits<std::int64_t>::max();
constexpr std::uint64_t highest = std::numeric_limits<std::uint64_t>::max();

static_assert(!std::constructible_from<NSNumber, const char*> && !std::constructible_from<NSNumber, void*>,
              "a pointer is no truth value");

TEST(NSNumber, ConvertsEachKindToEachKind) {
  const std::tuple<NSNumber, std::int32_t, std::int64_t, std::uint64_t, double, TextView> rows[] = {
      {NSNumber(true), 1, 1, 1, 1, u"1"},
      {NSNumber(-1), -1, -1, highest, -1, u"-1"},
      {NSNumber(low64), 0, low64, 9223372036854775808U, -0x1p63, u"-9223372036854775808"},
      {NSNumber(highest), -1, -1, highest, 0x1p64, u"18446744073709551615"},
      {NSNumber(3e9), high32, 3000000000, 3000000000, 3e9, u"3e+09"},
      {NSNumber(-2.9), -2, -2, 0, -2.9, u"-2.9"},
      {NSNumber(0.1F), 0, 0, 0, double{0.1F}, u"0.1"},
      {NSNumber(0x1p63), high32, high64, 9223372036854775808U, 0x1p63, u"9223372036854775808"},
      {NSNumber(-0x1p63), low32, low64, 0, -0x1p63, u"-9223372036854775808"},
      {NSNumber(0x1p64), high32, high64, highest, 0x1p64, u"18446744073709551616"},
      {NSNumber(infinity), high32, high64, highest, infinity, u"inf"},
  };
  for (const auto& [number, narrow, wide, natural, real, text] : rows) {
    SCOPED_TRACE(testing::PrintToString(text));
    EXPECT_EQ(number.intValue(), narrow);
    EXPECT_EQ(number.integerValue(), wide);
    EXPECT_EQ(number.unsignedIntegerValue(), natural);
    EXPECT_EQ(number.doubleValue(), real);
    EXPECT_EQ(number.floatValue(), static_cast<float>(real));
    EXPECT_EQ(number.boolValue(), real != 0);
    EXPECT_EQ(number.description(), number.stringValue());
    EXPECT_EQ(number.stringValue(), text);
  }
  const NSNumber notANumber(NaN);
  EXPECT_TRUE(notANumber.boolValue() && notANumber.intValue() == 0 && notANumber.integerValue() == 0);
  EXPECT_EQ(notANumber.unsignedIntegerValue(), 0U);
}

// Numbers in groups of the same value: equal within a group, also by hash, and to nothing in another one.
TEST(NSNumber, EqualityIsByValue) {
  const std::vector<std::vector<NSNumber>> groups = {
      {NSNumber(0), NSNumber(false), NSNumber(0.0), NSNumber(-0.0), NSNumber(0.0F), NSNumber(0U)},
      {NSNumber(1), NSNumber(true), NSNumber(1.0), NSNumber(1.0F), NSNumber(1U)},
      {NSNumber(high64), NSNumber(std::uint64_t{high64})},
      {NSNumber(0x1p63), NSNumber(std::uint64_t{1} << 63)},
      {NSNumber((std::int64_t{1} << 53) + 1)},
      {NSNumber(0x1p53), NSNumber(std::int64_t{1} << 53)},
      {NSNumber(0.1F), NSNumber(double{0.1F})},
      {NSNumber(NaN), NSNumber(-NaN), NSNumber(std::numeric_limits<float>::quiet_NaN())},
  };
  for (const auto& group : groups)
    for (const NSNumber& a : group)
      for (const auto& other : groups)
        for (const NSNumber& b : other) {
          ASSERT_EQ(a.isEqual(b), &group == &other) << testing::PrintToString(a.stringValue() + u" " + b.stringValue());
          ASSERT_TRUE(&group != &other || a.hash() == b.hash()) << testing::PrintToString(a.stringValue());
        }
}

}  // namespace
