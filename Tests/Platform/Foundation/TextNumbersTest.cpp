#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextNumbers.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

std::vector<std::string> splitAtBars(const std::string& texts) {
  std::vector<std::string> pieces;
  std::istringstream stream(texts);
  for (std::string piece; std::getline(stream, piece, '|');) pieces.push_back(piece);
  return pieces;
}

// C reads the same, but for the white space and the words that it knows.
TEST(TextNumbers, ReadsIntegersAsC) {
  for (const std::string& text : splitAtBars("| 12 apples|\t\v-7.9|+5|x1|- 1|+-1|0x10|-0|0000000000000000000000000042|"
                                             "2147483648|-2147483649|9223372036854775807|9223372036854775808|"
                                             "-9223372036854775808|-9223372036854775809|99999999999999999999999999")) {
    const std::int64_t expected = std::strtoll(text.c_str(), nullptr, 10);
    EXPECT_EQ(integerValue(textFromUTF8(text)), expected) << text;
    EXPECT_EQ(intValue(textFromUTF8(text)), std::clamp<std::int64_t>(expected, INT32_MIN, INT32_MAX)) << text;
  }
  EXPECT_EQ(intValue(u"\x2028\x3000-7"), -7);
  EXPECT_EQ(integerValue(u"\x0661\xFF11"), 0);
}

TEST(TextNumbers, ReadsDoublesAsC) {
  const std::string zeros(400, '0');
  std::vector<std::string> texts = splitAtBars(
      "| \n2.5kg|.5|-5.e1|1e3|1E-3x|1e|1e+|1.5.5|.|.e5|e5|- 1|1,5|-0|1e999|-1e999|1e99999999999999999999999|"
      "1e-99999999999999999999999|0e99999999999999999999999|1.7976931348623157e308|1.7976931348623159e308|"
      "5e-324|2e-324|-3e-324|0.1000000000000000055511151231257827021181583404541015625");
  for (const char* end : {"1", "1e401", "1e99999"}) texts.push_back("0." + zeros + end);
  for (const char* end : {"", "e-400", "e-99999"}) texts.push_back("1" + zeros + end);
  for (const std::string& text : texts) {
    const double expected = std::strtod(text.c_str(), nullptr);
    EXPECT_EQ(doubleValue(textFromUTF8(text)), expected) << text;
    EXPECT_EQ(std::signbit(doubleValue(textFromUTF8(text))), std::signbit(expected)) << text;
    EXPECT_EQ(floatValue(textFromUTF8(text)), static_cast<float>(expected)) << text;
  }
  for (const TextView text : {u"0x1p4", u"inf", u"-nan", u"\x0661"}) EXPECT_EQ(doubleValue(text), 0) << utf8(text);
  EXPECT_EQ(doubleValue(u"\xA0-1.5"), -1.5);
}

TEST(TextNumbers, ReadsTruth) {
  for (const TextView text : {u"YES", u" -010", u"true", u"y", u"T", u"+9", u"\tY", u"\xA0-1"})
    EXPECT_TRUE(boolValue(text)) << utf8(text);
  for (const TextView text :
       {u"", u"on", u"0", u"NO", u"false", u"0.1", u"-", u"--1", u"00Y", u"-t", u"\x661", u"\x174"})
    EXPECT_FALSE(boolValue(text)) << utf8(text);
}

TEST(TextNumbers, PrintsTheShortestDecimalThatReadsBack) {
  EXPECT_EQ(shortestDecimal(0.1), u"0.1");
  EXPECT_EQ(shortestDecimal(0.1F), u"0.1");
  EXPECT_EQ(shortestDecimal(-0.0), u"-0");
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
