#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <type_traits>

#include "Fuzz.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/TextEncoding.h"

namespace {

using namespace kelvane;
using kelvane::fuzz::expect;

// A format of C without arguments, one code unit after the other.
Text plainlyFormatted(TextView message) {
  Text result;
  bool isWithin = false;
  for (std::size_t i = 0; i < message.size(); ++i) {
    const char16_t unit = message[i];
    if (!isWithin) {
      isWithin = unit == u'%';
      if (!isWithin) result += unit;
      continue;
    }
    if (TextView(u"0123456789 #+-'*$.,hlLqjtz").contains(unit)) continue;
    isWithin = false;
    if (unit == u'%') result += unit;
    // A letter may be a character of two units.
    const bool isHigh = unit >= 0xD800 && unit <= 0xDBFF;
    if (isHigh && i + 1 < message.size() && message[i + 1] >= 0xDC00 && message[i + 1] <= 0xDFFF) ++i;
  }
  return result;
}

void checkMessage(TextView message) {
  const Text result = formatWithoutArguments(message);
  expect(result == plainlyFormatted(message), "formatted as in the plain way");
  expect(message.contains(u'%') || result == message, "a message without % stays");
  Text escaped;
  for (const char16_t unit : message) escaped.append(unit == u'%' ? 2 : 1, unit);
  expect(formatWithoutArguments(escaped) == message, "an escaped message comes back");
}

// What C prints. The format is one that was found to be right for T.
template <class T>
std::string printed(const std::string& format, T value) {
  char out[1024];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  const int length = std::snprintf(out, sizeof out, format.c_str(), value);
#pragma GCC diagnostic pop
  expect(length >= 0 && static_cast<std::size_t>(length) < sizeof out, "C prints it");
  return std::string(out, static_cast<std::size_t>(length));
}

template <class T>
void checkNumber(TextView format, const FormatConversion& conversion, T value) {
  if (!printsType<T>(conversion)) return;
  const FormatArgument argument(value);
  // As C has them, "%d" takes 32 bits and "%ld" 64.
  std::string wanted;
  if constexpr (std::is_floating_point_v<T>)
    wanted = printed(utf8(format), value);
  else if (conversion.isLong)
    wanted = printed(utf8(format), static_cast<std::conditional_t<std::is_signed_v<T>, long, unsigned long>>(value));
  else
    wanted = printed(utf8(format), static_cast<std::conditional_t<std::is_signed_v<T>, int, unsigned>>(value));
  expect(utf8(formatArguments(format, {&argument, 1})) == wanted, "numbers as C prints them");
}

// What the text begins with, when that is a conversion, with a number that the bytes make.
void checkConversion(TextView text, std::uint64_t bits) {
  const FormatConversion conversion = readConversion(text, 0);
  expect(conversion.end > 0 && (conversion.letter == 0 || conversion.end <= text.size()), "conversions go forward");
  if (conversion.letter == 0) return;
  const TextView format = text.substr(0, conversion.end);
  // Not the same in every C.
  if (format.contains(u"lll") || (conversion.letter == u'f' && format.contains(u"ll"))) return;
  checkNumber(format, conversion, static_cast<std::int32_t>(bits));
  checkNumber(format, conversion, static_cast<std::uint32_t>(bits));
  checkNumber(format, conversion, static_cast<std::int64_t>(bits));
  checkNumber(format, conversion, bits);
  double number = 0;
  static_assert(sizeof number == sizeof bits);
  std::memcpy(&number, &bits, sizeof number);
  if (!std::isnan(number)) checkNumber(format, conversion, number);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::bytesOf(data, size);
  const fuzz::ExactText text(textFromFileSystem(bytes));
  checkMessage(text.view());
  std::uint64_t bits = 0;
  for (const char byte : bytes.substr(bytes.size() - std::min<std::size_t>(bytes.size(), 8)))
    bits = bits << 8U | static_cast<unsigned char>(byte);
  if (text.view().starts_with(u'%')) checkConversion(text.view(), bits);
  return 0;
}
