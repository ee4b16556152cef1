#include "Platform/Foundation/TextSearch.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cstring>

#include "Platform/Foundation/Raise.h"

namespace kelvane {
namespace {

// How many comparisons a plain search may spend per code unit passed before the table takes over.
constexpr std::size_t comparisonsPerUnit = 8;

std::vector<std::size_t> prefixTable(TextView needle) {
  std::vector<std::size_t> table(needle.size(), 0);
  std::size_t matched = 0;
  for (std::size_t i = 1; i < needle.size(); ++i) {
    while (matched > 0 && needle[i] != needle[matched]) matched = table[matched - 1];
    if (needle[i] == needle[matched]) ++matched;
    table[i] = matched;
  }
  return table;
}

std::size_t commonPrefix(TextView a, TextView b) {
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
}

// Of texts of one length; the library's own comparison of views goes unit by unit.
bool isSame(TextView a, TextView b) { return std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0; }

}  // namespace

TextFinder::TextFinder(TextView text, TextView needle, NSStringCompareOptions options)
    : myText(text), myNeedle(needle), myGoesBackwards((options & NSBackwardsSearch) != 0) {
  if ((options & NSCaseInsensitiveSearch) == 0) return;
  myFoldedText = foldCase(text);
  myFoldedNeedle = foldCase(needle);
  myText = myFoldedText;
  myNeedle = myFoldedNeedle;
}

std::optional<NSRange> TextFinder::find(std::size_t from, std::size_t end) {
  end = std::min(end, myText.size());
  if (myNeedle.empty() || from > end || end - from < myNeedle.size()) return std::nullopt;
  const std::size_t place = myGoesBackwards ? findBackwards(from, end) : findForwards(from, end);
  if (place == TextView::npos) return std::nullopt;
  return NSRange{place, myNeedle.size()};
}

std::size_t TextFinder::findForwards(std::size_t from, std::size_t end) {
  if (!myPrefixTable.empty()) return findByPrefixTable(from, end);
  // A search that goes on where the last one ended goes on walking.
  if (from < myWalkedTo || end != myWalkEnd) {
    myPlaces = NeedlePlaces(myText.substr(0, end), myNeedle, from);
    myWalkEnd = end;
  }
  const std::size_t places = end - myNeedle.size() + 1;
  std::size_t comparisons = 0;
  for (std::size_t place = myPlaces.next(); place < places; place = myPlaces.next()) {
    if (place < from) continue;
    myWalkedTo = place + 1;
    const TextView candidate = myText.substr(place, myNeedle.size());
    if (isSame(candidate, myNeedle)) return place;
    comparisons += commonPrefix(myNeedle, candidate);
    if (comparisons > comparisonsPerUnit * (place - from + 64)) return findByPrefixTable(place + 1, end);
  }
  myWalkedTo = places;
  return TextView::npos;
}

std::size_t TextFinder::findByPrefixTable(std::size_t from, std::size_t end) {
  if (myPrefixTable.empty()) myPrefixTable = prefixTable(myNeedle);
  std::size_t matched = 0;
  for (std::size_t i = from; i < end; ++i) {
    while (matched > 0 && myText[i] != myNeedle[matched]) matched = myPrefixTable[matched - 1];
    if (myText[i] == myNeedle[matched]) ++matched;
    if (matched == myNeedle.size()) return i + 1 - matched;
  }
  return TextView::npos;
}

// The same walk from the far end, on the needle read backwards.
std::size_t TextFinder::findBackwards(std::size_t from, std::size_t end) const {
  const Text reversed(myNeedle.rbegin(), myNeedle.rend());
  const std::vector<std::size_t> table = prefixTable(reversed);
  std::size_t matched = 0;
  for (std::size_t i = end; i > from; --i) {
    while (matched > 0 && myText[i - 1] != reversed[matched]) matched = table[matched - 1];
    if (myText[i - 1] == reversed[matched]) ++matched;
    if (matched == reversed.size()) return i - 1;
  }
  return TextView::npos;
}

std::optional<NSRange> rangeOfString(TextView text, TextView needle, NSStringCompareOptions options) {
  return TextFinder(text, needle, options).find(0, text.size());
}

std::optional<NSRange> rangeOfString(TextView text, TextView needle, NSStringCompareOptions options, NSRange range) {
  requireRange("rangeOfString:options:range:", range, text.size());
  auto found = TextFinder(text.substr(range.location, range.length), needle, options).find(0, range.length);
  if (found) found->location += range.location;
  return found;
}

Text foldCase(TextView text) {
  Text folded(text);
  std::size_t i = 0;
  while (i < folded.size()) {
    const std::size_t start = i;
    if (folded[i] < 0x80) {
      if (folded[i] >= u'A' && folded[i] <= u'Z') folded[i] |= 0x20;
      ++i;
      continue;
    }
    char32_t character;
    U16_NEXT(folded.data(), i, folded.size(), character);
    if (U_IS_SURROGATE(character)) continue;
    auto lower = static_cast<char32_t>(u_foldCase(static_cast<UChar32>(character), U_FOLD_CASE_DEFAULT));
    // No simple folding leaves its plane, so the folded character takes the place of the old one.
    std::size_t out = start;
    U16_APPEND_UNSAFE(folded.data(), out, lower);
  }
  return folded;
}

}  // namespace kelvane
