#include "Platform/Foundation/PropertyListValues.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>

#include "Platform/Foundation/Base64.h"

namespace kelvane {
namespace {

constexpr bool isDigit(char byte) { return byte >= '0' && byte <= '9'; }
constexpr char lowercase(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte; }

// Takes one group of digits and padding off `text`, white space in between left out, and moves `out` behind its bytes;
// false unless it is there as it should be. `padding` counts the "=" in it.
bool takeBase64Group(std::string_view& text, std::uint8_t*& out, unsigned& padding) {
  std::uint32_t group = 0;
  for (unsigned places = 0; places < 4; text.remove_prefix(1)) {
    if (text.empty()) return false;
    const char character = text.front();
    if (isXMLSpace(character)) continue;
    const std::uint8_t digit = base64Digit(static_cast<unsigned char>(character));
    if (character == '=' ? ++padding > 2 || places < 2 : digit == noBase64Digit || padding > 0) return false;
    group = group << 6U | (character == '=' ? 0U : digit);
    ++places;
  }
  const std::uint32_t leftOver = padding == 0 ? 0 : padding == 1 ? 0xFFU : 0xFFFFU;
  if (group & leftOver) return false;
  for (unsigned i = 0; i < 3 - padding; ++i) *out++ = static_cast<std::uint8_t>(group >> (16U - 8U * i));
  return true;
}

}  // namespace

Text replacingNonXML(TextView text) {
  Text replaced(text);
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = xmlCharacterLength(text, i);
    if (length == 0) replaced[i] = u'\xFFFD';
    i += std::max<std::size_t>(length, 1);
  }
  return replaced;
}

std::vector<std::uint8_t> utf16Bytes(TextView text) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(2 * text.size());
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8U));
    bytes.push_back(static_cast<std::uint8_t>(unit & 0xFFU));
  }
  return bytes;
}

std::optional<Text> textFromUTF16Bytes(std::span<const std::uint8_t> bytes) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  Text text;
  text.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i < bytes.size(); i += 2) text += static_cast<char16_t>(bytes[i] << 8U | bytes[i + 1]);
  return text;
}

std::string_view trimmedXML(std::string_view text) {
  while (!text.empty() && isXMLSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isXMLSpace(text.back())) text.remove_suffix(1);
  return text;
}

bool equalsIgnoringASCIICase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, lowercase, lowercase);
}

std::optional<NSNumber> integerFrom(std::string_view text) {
  text = trimmedXML(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  std::uint64_t magnitude = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, magnitude, hexadecimal ? 16 : 10);
  if (error != std::errc() || stop != end) return std::nullopt;
  constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (negative && magnitude > largest + 1) return std::nullopt;
  if (negative) return NSNumber(static_cast<std::int64_t>(-magnitude));
  return magnitude > largest ? NSNumber(magnitude) : NSNumber(static_cast<std::int64_t>(magnitude));
}

std::optional<double> realFrom(std::string_view text) {
  text = trimmedXML(text);
  if (equalsIgnoringASCIICase(text, "nan")) return std::numeric_limits<double>::quiet_NaN();
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const double sign = negative ? -1.0 : 1.0;
  if (equalsIgnoringASCIICase(text, "inf") || equalsIgnoringASCIICase(text, "infinity"))
    return sign * std::numeric_limits<double>::infinity();
  if (text.empty() || (!isDigit(text.front()) && text.front() != '.')) return std::nullopt;
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end || !std::isfinite(value)) return std::nullopt;
  return sign * value;
}

std::optional<double> secondsSince1970From(std::string_view text) {
  constexpr std::string_view shape = "0000-00-00T00:00:00Z";
  if (!std::ranges::equal(text, shape,
                          [](char byte, char wanted) { return isDigit(wanted) ? isDigit(byte) : byte == wanted; }))
    return std::nullopt;
  const auto number = [&](std::size_t at, std::size_t digits) {
    int value = 0;
    for (const char digit : text.substr(at, digits)) value = value * 10 + (digit - '0');
    return value;
  };
  const std::chrono::year_month_day day{std::chrono::year(number(0, 4)),
                                        std::chrono::month(static_cast<unsigned>(number(5, 2))),
                                        std::chrono::day(static_cast<unsigned>(number(8, 2)))};
  const int hour = number(11, 2);
  const int minute = number(14, 2);
  const int second = number(17, 2);
  if (!day.ok() || day.year() < std::chrono::year(1) || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  const std::chrono::seconds time =
      std::chrono::hours(hour) + std::chrono::minutes(minute) + std::chrono::seconds(second);
  return static_cast<double>((std::chrono::sys_days(day).time_since_epoch() + time).count());
}

std::optional<std::vector<std::uint8_t>> bytesFromBase64(std::string_view text) {
  std::vector<std::uint8_t> bytes(text.size() / 4 * 3 + base64Slack);
  std::uint8_t* out = bytes.data();
  // Once there is padding, the group that it ends is the last.
  for (unsigned padding = 0; padding == 0;) {
    const Base64Run run = decodeBase64Run(text, out);
    out += run.written;
    text.remove_prefix(run.read);
    if (text.empty()) break;
    if (!takeBase64Group(text, out, padding)) return std::nullopt;
  }
  if (!trimmedXML(text).empty()) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(out - bytes.data()));
  return bytes;
}

}  // namespace kelvane
