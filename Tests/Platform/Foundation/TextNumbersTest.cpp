#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>

#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextNumbers.h"
#include "Support/TextPrinting.h"

namespace kelvane {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(TextNumbers, ReadsIntegers) {
  constexpr std::int64_t low = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t high = std::numeric_limits<std::int64_t>::max();
  const struct {
    TextView text;
    std::int64_t wide;
    std::int32_t narrow;
  } rows[] = {{u"", 0, 0},
              {u" 12 apples", 12, 12},
              {u"\x2028\x3000\t-7.9", -7, -7},
              {u"+5", 5, 5},
              {u"x1", 0, 0},
              {u"- 1", 0, 0},
              {u"+-1", 0, 0},
              {u"0x10", 0, 0},
              {u"1e3", 1, 1},
              {u"1,000", 1, 1},
              {u"\x0661\xFF11", 0, 0},
              {u"0000000000000000000000000042", 42, 42},
              {u"2147483647", 2147483647, 2147483647},
              {u"-2147483649", -2147483649, -2147483647 - 1},
              {u"99999999999", 99999999999, 2147483647},
              {u"9223372036854775806", high - 1, 2147483647},
              {u"9223372036854775808", high, 2147483647},
              {u"-9223372036854775807", low + 1, -2147483647 - 1},
              {u"-9223372036854775808", low, -2147483647 - 1},
              {u"-9223372036854775809", low, -2147483647 - 1},
              {u"99999999999999999999999999999999999999", high, 2147483647}};
  for (const auto& row : rows) {
    EXPECT_EQ(integerValue(row.text), row.wide) << utf8(row.text);
    EXPECT_EQ(intValue(row.text), row.narrow) << utf8(row.text);
  }
}

TEST(TextNumbers, ReadsDoubles) {
  const Text zeros(400, u'0');
  const struct {
    Text text;
    double number;
  } rows[] = {{u"", 0},
              {u" \n2.5kg", 2.5},
              {u".5", 0.5},
              {u"-5.e1", -50},
              {u"1e3", 1000},
              {u"1E-3x", 0.001},
              {u"1e", 1},
              {u"1e+", 1},
              {u"1.5.5", 1.5},
              {u".", 0},
              {u".e5", 0},
              {u"e5", 0},
              {u"- 1", 0},
              {u"1,5", 1},
              {u"0x1p4", 0},
              {u"inf", 0},
              {u"nan", 0},
              {u"\x0661", 0},
              {u"1e999", infinity},
              {u"-1e999", -infinity},
              {u"1e99999999999999999999999", infinity},
              {u"1e-99999999999999999999999", 0},
              {u"0e99999999999999999999999", 0},
              {u"1" + zeros, infinity},
              {u"1" + zeros + u"e-400", 1},
              {u"0." + zeros + u"1", 0},
              {u"0." + zeros + u"1e401", 1},
              {u"0." + zeros + u"1e99999", infinity},
              {u"1" + zeros + u"e-99999", 0},
              {u"1.7976931348623157e308", std::numeric_limits<double>::max()},
              {u"5e-324", std::numeric_limits<double>::denorm_min()},
              {u"0.1000000000000000055511151231257827021181583404541015625", 0.1}};
  for (const auto& row : rows) EXPECT_EQ(doubleValue(row.text), row.number) << utf8(row.text);
  EXPECT_TRUE(std::signbit(doubleValue(u"-0")));
  EXPECT_EQ(floatValue(u"0.1"), 0.1F);
  EXPECT_EQ(floatValue(u"-1e39"), -std::numeric_limits<float>::infinity());
}

TEST(TextNumbers, ReadsTruth) {
  for (const TextView text : {u"YES", u" -010", u"true", u"y", u"T", u"1", u"+9", u"007", u"\t00Y"})
    EXPECT_TRUE(boolValue(text)) << utf8(text);
  for (const TextView text : {u"", u"on", u"0", u"NO", u"false", u"0.1", u"-", u"--1", u"\x661", u"\x174"})
    EXPECT_FALSE(boolValue(text)) << utf8(text);
}

TEST(TextNumbers, PrintsTheShortestDecimalThatReadsBack) {
  EXPECT_EQ(shortestDecimal(3.0), u"3");
  EXPECT_EQ(shortestDecimal(0.1), u"0.1");
  EXPECT_EQ(shortestDecimal(0.1F), u"0.1");
  EXPECT_EQ(shortestDecimal(1e300), u"1e+300");
  EXPECT_EQ(shortestDecimal(-0.0), u"-0");
  EXPECT_EQ(shortestDecimal(-infinity), u"-inf");
  EXPECT_EQ(shortestDecimal(std::numeric_limits<float>::infinity()), u"inf");
  EXPECT_EQ(shortestDecimal(-std::numeric_limits<double>::quiet_NaN()), u"nan");
  std::mt19937_64 random(3);
  for (int round = 0; round < 20000; ++round) {
    const auto number = std::bit_cast<double>(random());
    if (!std::isfinite(number)) continue;
    const Text text = shortestDecimal(number);
    ASSERT_EQ(doubleValue(text), number) << utf8(text);
    ASSERT_EQ(doubleValue(text), std::strtod(utf8(text).c_str(), nullptr)) << utf8(text);
  }
}

}  // namespace
}  // namespace kelvane
