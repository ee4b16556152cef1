#include <algorithm>
#include <string_view>

#include "Extensions/NSString-QNExtensions.h"
#include "Fuzz.h"
#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/TextEncoding.h"

// The small operations on text that rewrite, trim and filter, against loops that take one code unit after the other.

namespace {

using namespace kelvane;
using kelvane::fuzz::expect;

template <class Predicate>
Text plainlyKept(TextView text, Predicate keeps) {
  Text result;
  for (const char16_t unit : text)
    if (keeps(unit)) result += unit;
  return result;
}

Text plainlyReplaced(TextView text, char16_t from, char16_t to) {
  Text result(text);
  std::replace(result.begin(), result.end(), from, to);
  return result;
}

void checkTrimming(TextView text) {
  constexpr TextView blanks = u" \t\r\n";
  const TextView trimmed = trim(text);
  fuzz::expectSlice(trimmed, text, "trimming gives a slice");
  const std::size_t first = std::min(text.find_first_not_of(blanks), text.size());
  expect(trimmed == text.substr(first, trimmed.size()), "trimmed at the start");
  expect(text.substr(first + trimmed.size()).find_first_not_of(blanks) == TextView::npos, "only blanks behind");
  expect(trimmed.empty() || !blanks.contains(trimmed.back()), "trimmed at the end");
}

void checkFilters(TextView text) {
  const NSCharacterSet& blanks = NSCharacterSet::whitespaceAndNewlineCharacterSet();
  const NSCharacterSet& digits = NSCharacterSet::decimalDigitCharacterSet();
  const NSCharacterSet set = NSCharacterSet::characterSetWithCharactersInString(text.substr(0, 3));
  expect(stringByRemovingWhitespace(text) ==
             plainlyKept(text, [&](char16_t unit) { return !blanks.characterIsMember(unit); }),
         "no white space is left");
  expect(digitsOnly(text) == plainlyKept(text, [&](char16_t unit) { return digits.characterIsMember(unit); }),
         "only digits are left");
  expect(stringByRemovingCharactersInCharacterSet(text, set) ==
             plainlyKept(text, [&](char16_t unit) { return !text.substr(0, 3).contains(unit); }),
         "no members are left");
  expect(removeQuots(text) == plainlyKept(text, [](char16_t unit) { return unit != u'"' && unit != u'\''; }),
         "no quotes are left");
}

void checkRewriting(TextView text) {
  Text escaped;
  for (const char16_t unit : text) {
    if (unit == u'"' || unit == u'\'') escaped += u'\\';
    escaped += unit;
  }
  expect(escapeQuots(text) == escaped, "quotes are escaped as in the plain way");
  expect(stringByRemovingLinebreaks(text) == plainlyReplaced(text, u'\n', u' '), "line breaks become blanks");
  expect(escapeFilesystemCharacters(text) == plainlyReplaced(text, u'/', u':'), "slashes become colons");

  Text decimal(text);
  while (decimal.starts_with(u'0')) decimal.erase(0, 1);
  while (decimal.ends_with(u'0')) decimal.pop_back();
  if (decimal.ends_with(u'.')) decimal += u'0';
  expect(normalizeTrailing0(text) == decimal, "zeros are taken off as in the plain way");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::ExactText text(textFromFileSystem(fuzz::bytesOf(data, size)));
  checkTrimming(text.view());
  checkFilters(text.view());
  checkRewriting(text.view());
  return 0;
}
