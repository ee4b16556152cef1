#include "Utilities/QNValidationHelper.h"

#include <algorithm>

namespace kelvane {
namespace {

constexpr bool isLetter(char16_t unit) { return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z'); }

constexpr bool isLetterOrDigit(char16_t unit) { return isLetter(unit) || (unit >= u'0' && unit <= u'9'); }

// Whether the text is one or more ASCII letters, digits and `marks`.
bool consistsOf(TextView text, TextView marks) {
  return !text.empty() && std::ranges::all_of(text, [marks](char16_t unit) {
    return isLetterOrDigit(unit) || marks.find(unit) != TextView::npos;
  });
}

}  // namespace

bool QNValidationHelper::validateEmail(std::optional<TextView> address) {
  if (!address) return false;
  const std::size_t at = address->find(u'@');
  if (at == TextView::npos) return false;
  const TextView domain = address->substr(at + 1);
  const std::size_t point = domain.rfind(u'.');
  if (point == TextView::npos) return false;
  const TextView last = domain.substr(point + 1);
  return consistsOf(address->substr(0, at), u"._%+-") && consistsOf(domain.substr(0, point), u".-") &&
         last.size() >= 2 && last.size() <= 4 && std::ranges::all_of(last, isLetter);
}

}  // namespace kelvane
