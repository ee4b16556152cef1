#include "Platform/Foundation/TextRewrite.h"

#include "Platform/Foundation/Overwrite.h"

namespace kelvane {

Text removingAnyOf(TextView text, const UnitSet& set) {
  return overwritten<Text>(text.size(), [&](char16_t* begin) {
    TextView rest = text;
    char16_t* end = removeAnyOfByVectors(rest, set, begin);
    return rewrite(rest, set, end, [](char16_t* out, char16_t) { return out; }) - begin;
  });
}

Text prefixingAnyOf(TextView text, const UnitSet& set, char16_t prefix) {
  return overwritten<Text>(text.size() + countAnyOf(text, set), [&](char16_t* begin) {
    TextView rest = text;
    char16_t* end = prefixAnyOfByVectors(rest, set, prefix, begin);
    end = rewrite(rest, set, end, [prefix](char16_t* out, char16_t unit) {
      *out++ = prefix;
      *out++ = unit;
      return out;
    });
    return end - begin;
  });
}

}  // namespace kelvane
