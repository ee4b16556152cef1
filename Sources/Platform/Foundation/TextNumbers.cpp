#include "Platform/Foundation/TextNumbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

constexpr bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

std::size_t skipBlanks(TextView text) {
  const NSCharacterSet& blanks = NSCharacterSet::whitespaceAndNewlineCharacterSet();
  std::size_t place = 0;
  while (place < text.size() && blanks.characterIsMember(text[place])) ++place;
  return place;
}

// Where the text goes on behind white space and a sign.
struct Sign {
  std::size_t end = 0;
  bool isNegative = false;
};

Sign readSign(TextView text) {
  Sign sign{skipBlanks(text)};
  if (sign.end < text.size() && (text[sign.end] == u'-' || text[sign.end] == u'+')) {
    sign.isNegative = text[sign.end] == u'-';
    ++sign.end;
  }
  return sign;
}

std::size_t skipDigits(TextView text, std::size_t place) {
  while (place < text.size() && isDigit(text[place])) ++place;
  return place;
}

// The end of digits, point, digits and exponent from `start`; `start` itself when there is no digit before an exponent.
std::size_t endOfDecimal(TextView text, std::size_t start) {
  std::size_t end = skipDigits(text, start);
  std::size_t digits = end - start;
  if (end < text.size() && text[end] == u'.') {
    const std::size_t fractionEnd = skipDigits(text, end + 1);
    digits += fractionEnd - end - 1;
    end = fractionEnd;
  }
  if (digits == 0) return start;
  if (end < text.size() && (text[end] == u'e' || text[end] == u'E')) {
    std::size_t exponent = end + 1;
    if (exponent < text.size() && (text[exponent] == u'-' || text[exponent] == u'+')) ++exponent;
    const std::size_t exponentEnd = skipDigits(text, exponent);
    if (exponentEnd > exponent) end = exponentEnd;
  }
  return end;
}

// Whether a decimal that does not fit a double is too large for it rather than too small: told by the power of ten of
// its first digit that is not 0.
bool isTooLarge(TextView decimal) {
  constexpr std::int64_t limit = std::numeric_limits<std::int64_t>::max() / 2;
  const std::size_t mantissaEnd = std::min(decimal.find_first_of(u"eE"), decimal.size());
  const TextView mantissa = decimal.substr(0, mantissaEnd);
  const auto point = static_cast<std::int64_t>(std::min(mantissa.find(u'.'), mantissa.size()));
  const auto first = static_cast<std::int64_t>(std::min(mantissa.find_first_of(u"123456789"), mantissa.size()));
  const std::int64_t exponent = mantissaEnd == decimal.size() ? 0 : integerValue(decimal.substr(mantissaEnd + 1));
  return std::min(std::max(exponent, -limit), limit) + point - first > 0;
}

double readDecimal(TextView decimal) {
  const std::string digits = utf8(decimal);
  double number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (result.ec == std::errc::result_out_of_range)
    return isTooLarge(decimal) ? std::numeric_limits<double>::infinity() : 0.0;
  return number;
}

// Decimal digits as a magnitude, held at `limit`.
std::uint64_t readMagnitude(TextView text, std::size_t start, std::uint64_t limit) {
  std::uint64_t magnitude = 0;
  for (std::size_t i = start; i < text.size() && isDigit(text[i]); ++i) {
    const auto digit = static_cast<std::uint64_t>(text[i] - u'0');
    if (magnitude > (limit - digit) / 10) return limit;
    magnitude = magnitude * 10 + digit;
  }
  return magnitude;
}

template <class Number>
Text shortest(Number number) {
  if (std::isnan(number)) return u"nan";
  char digits[64];
  const auto result = std::to_chars(digits, digits + sizeof digits, number);
  return textFromISOLatin1({digits, result.ptr});
}

}  // namespace

std::int32_t intValue(TextView text) {
  constexpr std::int64_t low = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t high = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(std::max(integerValue(text), low), high));
}

std::int64_t integerValue(TextView text) {
  constexpr auto high = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  const Sign sign = readSign(text);
  const std::uint64_t magnitude = readMagnitude(text, sign.end, sign.isNegative ? high + 1 : high);
  return static_cast<std::int64_t>(sign.isNegative ? 0 - magnitude : magnitude);
}

double doubleValue(TextView text) {
  const Sign sign = readSign(text);
  const std::size_t end = endOfDecimal(text, sign.end);
  if (end == sign.end) return 0;
  const double number = readDecimal(text.substr(sign.end, end - sign.end));
  return sign.isNegative ? -number : number;
}

float floatValue(TextView text) { return static_cast<float>(doubleValue(text)); }

bool boolValue(TextView text) {
  const std::size_t start = skipBlanks(text);
  if (start < text.size() && TextView(u"YyTt").contains(text[start])) return true;
  std::size_t place = readSign(text).end;
  while (place < text.size() && text[place] == u'0') ++place;
  return place < text.size() && isDigit(text[place]);
}

Text shortestDecimal(double number) { return shortest(number); }

Text shortestDecimal(float number) { return shortest(number); }

}  // namespace kelvane
