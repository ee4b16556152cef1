#include "Platform/Foundation/TextCase.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>

#include "Platform/Foundation/Raise.h"

namespace kelvane {
namespace {

constexpr char16_t lowerASCII(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}
constexpr char16_t upperASCII(char16_t unit) {
  return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
}

// Without an early exit, so that the compiler makes vectors of it.
bool isASCII(TextView text) {
  char16_t all = 0;
  for (const char16_t unit : text) all |= unit;
  return all < 0x80;
}

// ICU counts in 32 bits.
std::int32_t narrowLength(std::string_view operation, TextView text) {
  if (text.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
    raiseInvalidArgument(operation, "the text is too long: " + std::to_string(text.size()) + " code units");
  return static_cast<std::int32_t>(text.size());
}

// `map(out, capacity, in, length, error)` writes as much as fits and tells how much there is: mostly as much as before.
template <class Map>
Text mapped(std::string_view operation, TextView text, Map map) {
  const std::int32_t length = narrowLength(operation, text);
  Text result(text.size(), u'\0');
  UErrorCode error = U_ZERO_ERROR;
  const std::int32_t needed = map(result.data(), length, text.data(), length, &error);
  if (error == U_BUFFER_OVERFLOW_ERROR) {
    error = U_ZERO_ERROR;
    result.resize(static_cast<std::size_t>(needed));
    map(result.data(), needed, text.data(), length, &error);
  }
  if (U_FAILURE(error) != 0) raiseInvalidArgument(operation, u_errorName(error));
  result.resize(static_cast<std::size_t>(needed));
  return result;
}

}  // namespace

Text lowercaseString(TextView text) {
  if (isASCII(text)) {
    Text result(text);
    std::transform(result.begin(), result.end(), result.begin(), lowerASCII);
    return result;
  }
  return mapped("lowercaseString", text, [](auto* out, auto capacity, auto* in, auto length, auto* error) {
    return u_strToLower(out, capacity, in, length, "", error);
  });
}

Text uppercaseString(TextView text) {
  if (isASCII(text)) {
    Text result(text);
    std::transform(result.begin(), result.end(), result.begin(), upperASCII);
    return result;
  }
  return mapped("uppercaseString", text, [](auto* out, auto capacity, auto* in, auto length, auto* error) {
    return u_strToUpper(out, capacity, in, length, "", error);
  });
}

std::weak_ordering caseInsensitiveCompare(TextView a, TextView b) {
  if (isASCII(a) && isASCII(b))
    return std::lexicographical_compare_three_way(
        a.begin(), a.end(), b.begin(), b.end(),
        [](char16_t x, char16_t y) -> std::weak_ordering { return lowerASCII(x) <=> lowerASCII(y); });
  UErrorCode error = U_ZERO_ERROR;
  const std::int32_t lengthOfA = narrowLength("caseInsensitiveCompare:", a);
  const std::int32_t lengthOfB = narrowLength("caseInsensitiveCompare:", b);
  return u_strCaseCompare(a.data(), lengthOfA, b.data(), lengthOfB, U_FOLD_CASE_DEFAULT, &error) <=> 0;
}

}  // namespace kelvane
