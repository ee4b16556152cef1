#include "Platform/Foundation/NSNumber.h"

#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <type_traits>

#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextNumbers.h"

namespace kelvane {
namespace {

// A floating number cut toward zero and held within T. The bounds are compared as powers of two, which a double holds
// exactly where it does not hold the largest integer.
template <std::integral T>
T cutToInteger(double number) {
  constexpr int bits = std::numeric_limits<T>::digits;
  if (std::isnan(number)) return 0;
  if (number >= std::ldexp(1.0, bits)) return std::numeric_limits<T>::max();
  if (std::is_unsigned_v<T> ? number <= 0 : number <= -std::ldexp(1.0, bits)) return std::numeric_limits<T>::min();
  return static_cast<T>(number);
}

// A value as sign and magnitude when it is whole and fits 64 bits, so that values of different kinds compare exactly.
struct WholeNumber {
  bool isWhole = false;
  bool isNegative = false;
  std::uint64_t magnitude = 0;
  friend bool operator==(const WholeNumber&, const WholeNumber&) = default;
};

WholeNumber wholeOf(double number) {
  const double magnitude = std::abs(number);
  if (!(magnitude < std::ldexp(1.0, 64)) || std::trunc(magnitude) != magnitude) return {};
  return {true, number < 0, static_cast<std::uint64_t>(magnitude)};
}

WholeNumber wholeOf(std::int64_t number) {
  const auto bits = static_cast<std::uint64_t>(number);
  return {true, number < 0, number < 0 ? 0 - bits : bits};
}

WholeNumber wholeOf(std::uint64_t number) { return {true, false, number}; }

WholeNumber wholeOf(bool truth) { return {true, false, truth}; }

Text decimal(std::integral auto number) {
  char digits[24];
  const auto result = std::to_chars(digits, std::end(digits), number);
  return textFromISOLatin1({digits, result.ptr});
}

}  // namespace

bool NSNumber::boolValue() const {
  return std::visit([](auto value) { return value != 0; }, myValue);
}

std::int32_t NSNumber::intValue() const {
  if (isFloating()) return cutToInteger<std::int32_t>(doubleValue());
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(unsignedIntegerValue()));
}

std::int64_t NSNumber::integerValue() const {
  if (isFloating()) return cutToInteger<std::int64_t>(doubleValue());
  return static_cast<std::int64_t>(unsignedIntegerValue());
}

std::uint64_t NSNumber::unsignedIntegerValue() const {
  return std::visit(
      [](auto value) {
        if constexpr (std::is_floating_point_v<decltype(value)>)
          return cutToInteger<std::uint64_t>(value);
        else
          return static_cast<std::uint64_t>(value);
      },
      myValue);
}

float NSNumber::floatValue() const {
  return std::visit([](auto value) { return static_cast<float>(value); }, myValue);
}

double NSNumber::doubleValue() const {
  return std::visit([](auto value) { return static_cast<double>(value); }, myValue);
}

Text NSNumber::stringValue() const {
  switch (kind()) {
    case Kind::Boolean:
      return boolValue() ? u"1" : u"0";
    case Kind::Integer:
      return decimal(integerValue());
    case Kind::Unsigned:
      return decimal(unsignedIntegerValue());
    case Kind::Single:
      return shortestDecimal(floatValue());
    case Kind::Double:
      break;
  }
  return shortestDecimal(doubleValue());
}

bool NSNumber::isEqual(const NSObject& other) const {
  const NSNumber* number = as<NSNumber>(&other);
  if (!number) return false;
  const auto whole = [](const NSNumber& n) { return std::visit([](auto value) { return wholeOf(value); }, n.myValue); };
  const WholeNumber mine = whole(*this);
  const WholeNumber theirs = whole(*number);
  if (mine.isWhole || theirs.isWhole) return mine == theirs;
  // Neither is whole, so both are floating numbers.
  const double a = doubleValue();
  const double b = number->doubleValue();
  return a == b || (std::isnan(a) && std::isnan(b));
}

std::size_t NSNumber::hash() const {
  const WholeNumber whole = std::visit([](auto value) { return wholeOf(value); }, myValue);
  if (whole.isWhole) return std::hash<std::uint64_t>()(whole.isNegative ? ~whole.magnitude : whole.magnitude);
  const double number = doubleValue();
  return std::isnan(number) ? 0 : std::hash<double>()(number);
}

std::weak_ordering NSNumber::compare(const NSObject& other) const {
  // Holds every integer of 64 bits exactly, as a double would not.
  static_assert(std::numeric_limits<long double>::digits >= 64);
  const NSNumber* number = as<NSNumber>(&other);
  if (!number) return NSObject::compare(other);
  const auto exact = [](const NSNumber& n) {
    return std::visit([](auto value) { return static_cast<long double>(value); }, n.myValue);
  };
  const long double a = exact(*this);
  const long double b = exact(*number);
  if (a < b) return std::weak_ordering::less;
  if (a > b) return std::weak_ordering::greater;
  // Equal, or one is NaN.
  return std::isnan(b) <=> std::isnan(a);
}

Ref<NSObject> NSNumber::copy() const {
  return selfOr([this] { return std::make_shared<NSNumber>(*this); });
}

}  // namespace kelvane
