#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/TextPlaces.h"

namespace kelvane {

// How a search compares and where it starts. Options are combined with `|`; bits other than these change nothing.
using NSStringCompareOptions = std::uint64_t;
inline constexpr NSStringCompareOptions NSCaseInsensitiveSearch = 1;
// Compares code unit by code unit. All searches do, so this changes nothing.
inline constexpr NSStringCompareOptions NSLiteralSearch = 2;
inline constexpr NSStringCompareOptions NSBackwardsSearch = 4;

// Looks for one needle in one text, time and again. Searches compare code units: there is no equivalence of composed
// characters, and a match may begin or end inside CR LF or a surrogate pair. Without regard to case, characters are
// equal whose simple Unicode case foldings are ("ß" and "ẞ", but not "ß" and "ss").
//
// Each search takes time proportional to the text that it passes over plus the needle, whatever the two hold. Views
// what it is given, which must outlive it. One thread at a time.
class KELVANE_EXPORT TextFinder {
 public:
  TextFinder(TextView text, TextView needle, NSStringCompareOptions options = 0);
  // A copy would go on viewing what the first one folded.
  TextFinder(const TextFinder&) = delete;
  TextFinder& operator=(const TextFinder&) = delete;

  // The first match (the last one when searching backwards) that lies wholly within [from, end). Nothing when there is
  // none; an empty needle is never found. Bounds beyond the text's length are cut to it.
  std::optional<NSRange> find(std::size_t from, std::size_t end);

 private:
  std::size_t findForwards(std::size_t from, std::size_t end);
  std::size_t findBackwards(std::size_t from, std::size_t end) const;
  std::size_t findByPrefixTable(std::size_t from, std::size_t end);

  // Case-folded copies when case is ignored, empty otherwise.
  Text myFoldedText;
  Text myFoldedNeedle;
  TextView myText;
  TextView myNeedle;
  bool myGoesBackwards;
  // The plain search's walk over the places before `myWalkEnd` where the needle may stand; those before `myWalkedTo`
  // lie behind it.
  NeedlePlaces myPlaces;
  std::size_t myWalkEnd = 0;
  std::size_t myWalkedTo = 0;
  // The Knuth-Morris-Pratt table of the needle, made when the plain search makes too many comparisons.
  std::vector<std::size_t> myPrefixTable;
};

// rangeOfString:  The first match of `needle` in `text`; nothing when there is none or the needle is empty.
KELVANE_EXPORT std::optional<NSRange> rangeOfString(TextView text, TextView needle, NSStringCompareOptions options = 0);

// rangeOfString:options:range:  The same within `range`, which must lie within the text: std::out_of_range otherwise.
// Without regard to case the range is folded at each call: to go on and on in one text, make a TextFinder.
KELVANE_EXPORT std::optional<NSRange> rangeOfString(TextView text, TextView needle, NSStringCompareOptions options,
                                                    NSRange range);

// `text` with the simple case folding of each character; as long as `text`.
KELVANE_EXPORT Text foldCase(TextView text);

}  // namespace kelvane
