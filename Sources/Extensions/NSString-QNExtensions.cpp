#include "Extensions/NSString-QNExtensions.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <vector>

#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/Overwrite.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/Raise.h"
#include "Platform/Foundation/RandomBytes.h"
#include "Platform/Foundation/TextLines.h"
#include "Platform/Foundation/TextRewrite.h"
#include "Platform/Foundation/TextScan.h"

namespace kelvane {
namespace {

constexpr UnitSet quotes{u'"', u'\''};

// The blanks that trimming takes away, and no others.
constexpr bool isSurroundingBlank(char16_t unit) {
  return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}

// The code units for which `keeps` holds, in order.
template <class Predicate>
Text keepingUnits(TextView text, Predicate keeps) {
  return overwritten<Text>(text.size(), [&](char16_t* out) {
    std::size_t count = 0;
    // Each unit is written, and the next overwrites it unless it counts: no branch to guess wrong.
    for (const char16_t unit : text) {
      out[count] = unit;
      count += keeps(unit);
    }
    return count;
  });
}

// All matches that a search within `range` meets one after another.
std::vector<std::size_t> matchesOf(TextView key, TextView text, NSRange range, NSStringCompareOptions options) {
  std::vector<std::size_t> matches;
  TextFinder finder(text, key, options);
  std::size_t place = range.location;
  while (const auto match = finder.find(place, range.end())) {
    matches.push_back(match->location);
    place = match->end();
  }
  return matches;
}

// Replaces each match of `key` within `range` of `current`, and makes the range as long as what stands there then.
// Nothing when there is no match, so that no text is copied in vain.
std::optional<Text> replaceWithin(TextView current, NSRange& range, TextView key, TextView value,
                                  NSStringCompareOptions options) {
  const std::vector<std::size_t> matches = matchesOf(key, current, range, options);
  if (matches.empty()) return std::nullopt;
  const std::size_t growth = std::max(value.size(), key.size()) - key.size();
  if (growth > 0 && matches.size() > (Text().max_size() - current.size()) / growth)
    throw std::length_error("replacing: no text can be that long");
  const std::size_t newSize = current.size() - matches.size() * key.size() + matches.size() * value.size();
  range.length += newSize - current.size();
  return overwritten<Text>(newSize, [&](char16_t* const begin) {
    char16_t* out = begin;
    std::size_t place = 0;
    for (const std::size_t match : matches) {
      out = rewriting::copyRun(out, current.data() + place, match - place,
                               std::min(current.size() - place, newSize - static_cast<std::size_t>(out - begin)));
      out = std::copy(value.begin(), value.end(), out);
      place = match + key.size();
    }
    std::copy(current.begin() + static_cast<std::ptrdiff_t>(place), current.end(), out);
    return newSize;
  });
}

}  // namespace

Text NSStringExtensions::stringWithSequenz(TextView sequence, std::uint64_t repeated) {
  Text text;
  if (sequence.empty()) return text;
  if (repeated > text.max_size() / sequence.size())
    throw std::length_error("stringWithSequenz:repeated: no text can be that long");
  text.reserve(sequence.size() * repeated);
  for (std::uint64_t i = 0; i < repeated; ++i) text += sequence;
  return text;
}

Text NSStringExtensions::stringWithWhiteSpace(std::int64_t count) {
  Text text;
  if (count <= 0) return text;
  if (static_cast<std::uint64_t>(count) > text.max_size())
    throw std::length_error("stringWithWhiteSpace: no text can be that long");
  text.assign(static_cast<std::size_t>(count), u' ');
  return text;
}

Text NSStringExtensions::uniqueString() {
  constexpr TextView digits = u"0123456789ABCDEF";
  std::array<std::uint8_t, 16> bytes{};
  fillWithRandomBytes(bytes);
  // Version 4, variant 1.
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
  Text text;
  text.reserve(36);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += u'-';
    text += digits[bytes[i] >> 4U];
    text += digits[bytes[i] & 0xFU];
  }
  return text;
}

std::vector<TextView> componentsSeparatedByLineSeparators(TextView text) {
  std::vector<TextView> lines;
  visitLines(text, [&lines](TextView line) { lines.push_back(line); });
  return lines;
}

std::int64_t numberOfLines(TextView text) {
  std::int64_t count = 0;
  visitLines(text, [&count](TextView) { ++count; });
  return count;
}

TextView firstLine(TextView text) {
  const Lines lines(text);
  return lines.begin() == lines.end() ? text : *lines.begin();
}

bool containsString(TextView text, std::optional<TextView> needle) {
  return needle && rangeOfString(text, *needle).has_value();
}

std::optional<TextView> substringToToken(TextView text, std::optional<TextView> token) {
  if (!token) return std::nullopt;
  const auto found = rangeOfString(text, *token);
  return found ? text.substr(0, found->location) : text;
}

std::optional<TextView> substringFromToken(TextView text, std::optional<TextView> token) {
  if (!token) return std::nullopt;
  const auto found = rangeOfString(text, *token);
  if (!found) return std::nullopt;
  return text.substr(found->end());
}

TextView stringByRemovingSurroundingWhitespace(TextView text) {
  while (!text.empty() && isSurroundingBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSurroundingBlank(text.back())) text.remove_suffix(1);
  return text;
}

Text stringByRemovingWhitespace(TextView text) {
  return stringByRemovingCharactersInCharacterSet(text, NSCharacterSet::whitespaceAndNewlineCharacterSet());
}

Text stringByRemovingCharactersInCharacterSet(TextView text, const NSCharacterSet& set) {
  return keepingUnits(text, [&set](char16_t unit) { return !set.characterIsMember(unit); });
}

Text digitsOnly(TextView text) {
  const NSCharacterSet& digits = NSCharacterSet::decimalDigitCharacterSet();
  return keepingUnits(text, [&digits](char16_t unit) { return digits.characterIsMember(unit); });
}

Text stringByRemovingLinebreaks(TextView text) { return replacingUnit(text, u'\n', u' '); }

Text normalizeTrailing0(TextView text) {
  const std::size_t first = text.find_first_not_of(u'0');
  if (first == TextView::npos) return {};
  Text trimmed(text.substr(first, text.find_last_not_of(u'0') - first + 1));
  if (trimmed.ends_with(u'.')) trimmed += u'0';
  return trimmed;
}

TSVTable arrayFromTSV(Text&& text) { return TSVTable(std::move(text)); }

TSVTable arrayFromTSV(TextView text) { return TSVTable(Text(text)); }

Text removeCommentedLines(TextView text) {
  Text kept;
  kept.reserve(text.size());
  bool isFirst = true;
  for (const TextView line : Lines(text)) {
    if (trim(line).starts_with(u'#')) continue;
    if (!isFirst) kept += u'\n';
    kept += line;
    isFirst = false;
  }
  return kept;
}

Text escapeFilesystemCharacters(TextView text) { return replacingUnit(text, u'/', u':'); }

Text escapeQuots(TextView text) { return prefixingAnyOf(text, quotes, u'\\'); }

Text removeQuots(TextView text) { return removingAnyOf(text, quotes); }

std::optional<Text> normalizePath(TextView text) {
  if (!text.starts_with(u"file:")) return stringByStandardizingPath(text);
  const Ref<NSURL> url = NSURL::URLWithString(text);
  const std::optional<Text> path = url ? url->path() : std::nullopt;
  if (!path) return std::nullopt;
  return stringByStandardizingPath(*path);
}

Text replaceAllTextFromDictionary(TextView text, const NSDictionary& replacements, NSStringCompareOptions options,
                                  NSRange range) {
  Text current(text);
  if (replacements.count() == 0) return current;
  requireRange("replaceAllTextFromDictionary:options:range:", range, text.size());
  for (const auto& [key, value] : replacements)
    if (auto replaced = replaceWithin(current, range, key, value->description(), options))
      current = std::move(*replaced);
  return current;
}

Text replaceAllTextFromDictionary(TextView text, const NSDictionary& replacements, NSStringCompareOptions options) {
  return replaceAllTextFromDictionary(text, replacements, options, NSRange{0, text.size()});
}

Text replaceAllTextFromDictionary(TextView text, const NSDictionary& replacements) {
  return replaceAllTextFromDictionary(text, replacements, 0);
}

Text replaceAllOccurencesOfString(TextView text, TextView target, TextView withString) {
  NSRange range{0, text.size()};
  auto replaced = replaceWithin(text, range, target, withString, 0);
  return replaced ? std::move(*replaced) : Text(text);
}

std::optional<Text> blockFormatString(TextView) { return std::nullopt; }

void appendStringLn(Text& receiver, TextView text) {
  receiver += text;
  receiver += u'\n';
}

}  // namespace kelvane
