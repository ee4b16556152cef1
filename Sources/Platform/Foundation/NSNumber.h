#pragma once

#include <concepts>
#include <cstdint>
#include <variant>

#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// A truth value, an integer of up to 64 bits or a floating number. Numbers are equal when their values are, whatever
// their kinds: 1, 1.0 and true are. NaN equals itself here, so that it can be found again. Immutable.
class KELVANE_EXPORT NSNumber : public NSObject {
 public:
  // What a number was made from.
  enum class Kind { Boolean, Integer, Unsigned, Single, Double };

  explicit NSNumber(std::same_as<bool> auto truth) : myValue(truth) {}
  template <std::signed_integral T>
  explicit NSNumber(T number) : myValue(std::int64_t{number}) {}
  template <std::unsigned_integral T>
  requires(!std::same_as<T, bool>) explicit NSNumber(T number) : myValue(std::uint64_t{number}) {}
  explicit NSNumber(float number) : myValue(number) {}
  explicit NSNumber(double number) : myValue(number) {}

  Kind kind() const { return static_cast<Kind>(myValue.index()); }
  bool isBoolean() const { return kind() == Kind::Boolean; }
  bool isFloating() const { return kind() == Kind::Single || kind() == Kind::Double; }

  // Any number other than 0 is true, NaN included.
  bool boolValue() const;
  // An integer keeps its low 32 bits; a floating number is cut toward zero and held at the largest and smallest value;
  // NaN gives 0.
  //   4294967297 => 1      3e9 => 2147483647      -2.9 => -2
  std::int32_t intValue() const;
  // The same with 64 bits.
  std::int64_t integerValue() const;
  std::uint64_t unsignedIntegerValue() const;
  float floatValue() const;
  double doubleValue() const;
  // "1" or "0" for a truth value; of a floating number the shortest decimal that reads back ("3" for 3.0).
  Text stringValue() const;

  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // By value, whatever the kinds; NaN comes before all others.
  std::weak_ordering compare(const NSObject& other) const override;
  Text description() const override { return stringValue(); }
  Ref<NSObject> copy() const override;

 private:
  // In the order of Kind.
  std::variant<bool, std::int64_t, std::uint64_t, float, double> myValue;
};

}  // namespace kelvane
