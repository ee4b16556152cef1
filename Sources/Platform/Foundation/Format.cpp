#include "Platform/Foundation/Format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

#include "Platform/Foundation/ShortText.h"
#include "Platform/Foundation/TextScan.h"

namespace kelvane {
namespace {

// The largest double has 309 digits before the point; the rest is for the point, the sign and up to 99 digits behind
// it.
using NumberBuffer = char[512];

struct PrintedNumber {
  bool isNegative = false;
  std::string_view digits;
};

std::string_view printUnsigned(NumberBuffer& buffer, std::uint64_t number, int base) {
  return {buffer, std::to_chars(buffer, std::end(buffer), number, base).ptr};
}

PrintedNumber printDouble(NumberBuffer& buffer, double number, unsigned precision) {
  if (std::isnan(number)) return {false, "nan"};
  const bool isNegative = std::signbit(number);
  const auto end =
      std::to_chars(buffer, std::end(buffer), std::abs(number), std::chars_format::fixed, static_cast<int>(precision))
          .ptr;
  return {isNegative, {buffer, end}};
}

std::uint64_t magnitudeOf(std::int64_t number) {
  const auto bits = static_cast<std::uint64_t>(number);
  return number < 0 ? 0 - bits : bits;
}

void appendNumber(ShortText& out, const FormatConversion& conversion, const PrintedNumber& number) {
  const TextView sign = number.isNegative ? u"-" : conversion.showsPlus ? u"+" : u"";
  const std::size_t length = sign.size() + number.digits.size();
  const std::size_t padding = conversion.width > length ? conversion.width - length : 0;
  // As in C, no zeros before "inf" and "nan".
  const bool isFinite = number.digits.front() != 'i' && number.digits.front() != 'n';
  const bool zeros = conversion.padsWithZeros && !conversion.alignsLeft && isFinite;
  if (!zeros && !conversion.alignsLeft) out.append(padding, u' ');
  out.append(sign);
  if (zeros) out.append(padding, u'0');
  out.appendASCII(number.digits);
  if (conversion.alignsLeft) out.append(padding, u' ');
}

void appendInteger(ShortText& out, const FormatConversion& conversion, const FormatArgument& argument) {
  NumberBuffer buffer;
  if (argument.kind() == FormatArgument::Kind::Signed) {
    const std::int64_t number = argument.signedNumber();
    return appendNumber(out, conversion, {number < 0, printUnsigned(buffer, magnitudeOf(number), 10)});
  }
  const int base = conversion.letter == u'u' ? 10 : 16;
  const std::string_view digits = printUnsigned(buffer, argument.unsignedNumber(), base);
  if (conversion.letter == u'X')
    std::transform(buffer, buffer + digits.size(), buffer,
                   [](char digit) { return digit >= 'a' ? static_cast<char>(digit - 'a' + 'A') : digit; });
  // As in C, "+" is for signed numbers.
  FormatConversion unsignedConversion = conversion;
  unsignedConversion.showsPlus = false;
  appendNumber(out, unsignedConversion, {false, digits});
}

void appendAddress(ShortText& out, const void* address) {
  NumberBuffer buffer;
  const auto digits = printUnsigned(buffer, reinterpret_cast<std::uintptr_t>(address), 16);
  out.append(TextView(u"0x"));
  out.appendASCII(digits);
}

void appendArgument(ShortText& out, const FormatConversion& conversion, const FormatArgument& argument) {
  // Where something is, whatever else it could be printed as.
  if (conversion.letter == u'p') return appendAddress(out, argument.address());
  NumberBuffer buffer;
  switch (argument.kind()) {
    case FormatArgument::Kind::String:
      out.append(argument.text());
      break;
    case FormatArgument::Kind::Object:
      out.append(description(argument.object()));
      break;
    case FormatArgument::Kind::Bytes:
      out.appendUTF8(argument.bytes());
      break;
    case FormatArgument::Kind::Address:
      appendAddress(out, argument.address());
      break;
    case FormatArgument::Kind::Signed:
    case FormatArgument::Kind::Unsigned:
      appendInteger(out, conversion, argument);
      break;
    case FormatArgument::Kind::Unit:
      out.append(static_cast<char16_t>(argument.unsignedNumber()));
      break;
    case FormatArgument::Kind::Double:
      appendNumber(out, conversion, printDouble(buffer, argument.doubleNumber(), conversion.precision.value_or(6)));
      break;
  }
}

}  // namespace

Text formatArguments(TextView format, std::span<const FormatArgument> arguments) {
  ShortText out;
  std::size_t used = 0;
  std::size_t place = 0;
  while (place < format.size()) {
    // Formats are short: a search in a loop of its own takes less than the call of a fast one.
    const std::size_t mark = std::min(format.find(u'%', place), format.size());
    out.append(format.substr(place, mark - place));
    if (mark == format.size()) break;
    const FormatConversion conversion = readConversion(format, mark);
    if (conversion.letter == u'%')
      out.append(u'%');
    else
      appendArgument(out, conversion, arguments[used++]);
    place = conversion.end;
  }
  return Text(out.view());
}

Text formatWithoutArguments(TextView message) {
  Text out;
  std::size_t place = 0;
  while (place < message.size()) {
    const std::size_t mark = findUnit(message, u'%', place);
    out += message.substr(place, mark - place);
    if (mark == message.size()) break;
    const std::size_t letter = message.find_first_not_of(u"0123456789 #+-'*$.,hlLqjtz", mark + 1);
    if (letter == TextView::npos) break;
    if (message[letter] == u'%') out += u'%';
    const bool isPair = (message[letter] & 0xFC00) == 0xD800 && (message.substr(letter + 1, 1) >= u"\xDC00") &&
                        (message.substr(letter + 1, 1) <= u"\xDFFF");
    place = letter + (isPair ? 2 : 1);
  }
  return out;
}

}  // namespace kelvane
