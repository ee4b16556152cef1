#include "Platform/Foundation/TextWellFormed.h"

#include <algorithm>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

constexpr bool isHigh(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool isLow(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }
constexpr bool isSurrogate(char16_t unit) { return (unit & 0xF800) == 0xD800; }

}  // namespace

bool isWellFormed(TextView text) {
  for (auto place = text.begin(); (place = std::find_if(place, text.end(), isSurrogate)) != text.end(); place += 2)
    if (!isHigh(*place) || place + 1 == text.end() || !isLow(place[1])) return false;
  return true;
}

std::optional<Text> textFromWellFormedUTF8(std::string_view bytes) {
  // This form keeps a stray byte as an unpaired surrogate, which UTF-8 itself has no form for.
  Text text = textFromFileSystem(bytes);
  if (!isWellFormed(text)) return std::nullopt;
  return text;
}

}  // namespace kelvane
