#pragma once

#include <cstdint>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Numbers out of text and text out of numbers, the same in every locale: the digits are 0...9 and the point is ".".
//
// Reading skips white space at the start, takes a sign and the longest run that makes a number, and ignores the rest;
// where nothing can be read it gives 0. Time is proportional to the text.
namespace kelvane {

//   u" 12 apples" => 12      u"-7.9" => -7      u"99999999999" => 2147483647      u"x1" => 0
KELVANE_EXPORT std::int32_t intValue(TextView text);
// The same for 64 bits: beyond them it gives the largest or smallest value.
KELVANE_EXPORT std::int64_t integerValue(TextView text);
//   u"2.5kg" => 2.5      u".5" => 0.5      u"1e3" => 1000      u"1e" => 1      u"1e999" => infinity
KELVANE_EXPORT double doubleValue(TextView text);
// The double rounded to single precision; what lies beyond that becomes infinity.
KELVANE_EXPORT float floatValue(TextView text);
// True when, behind white space, Y, y, T or t comes first, or a digit 1...9, which may have a sign and zeros before it.
//   u"YES" => true      u" -010" => true      u"true" => true      u"on" => false      u"0" => false      u"0Y" =>
//   false
KELVANE_EXPORT bool boolValue(TextView text);

// The shortest decimal that reads back as the same number: u"3", u"0.1", u"1e+300", u"-0", u"inf", u"nan".
KELVANE_EXPORT Text shortestDecimal(double number);
// The same for single precision: 0.1F gives u"0.1".
KELVANE_EXPORT Text shortestDecimal(float number);

}  // namespace kelvane
