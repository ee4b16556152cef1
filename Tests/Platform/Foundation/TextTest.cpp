#include <bit>
#include <sstream>

#include "Platform/Foundation/TextCase.h"
#include "Platform/Foundation/TextLines.h"
#include "Platform/Foundation/TextNumbers.h"
#include "Platform/Foundation/TextSearch.h"
#include "Platform/Foundation/TextWellFormed.h"
#include "Support/Testing.h"

namespace {

TEST(TextCase, MapsWholeTexts) {
  const std::tuple<TextView, TextView, TextView> rows[] = {
      {u"", u"", u""},
      {u"aZ@[`{19", u"az@[`{19", u"AZ@[`{19"},
      {u"Straße", u"straße", u"STRASSE"},
      {u"ΟΔΟΣ", u"οδος", u"ΟΔΟΣ"},
      {u"İi", u"i\x307i", u"İI"},
      {u"ŉﬁŉﬁŉﬁ", u"ŉﬁŉﬁŉﬁ", u"\x2BCNFI\x2BCNFI\x2BCNFI"},
      {u"\xD801\xDC00\xD801", u"\xD801\xDC28\xD801", u"\xD801\xDC00\xD801"},
  };
  for (const auto& [text, lower, upper] : rows) {
    EXPECT_EQ(lowercaseString(text), lower);
    EXPECT_EQ(uppercaseString(text), upper);
  }
}

TEST(TextCase, ComparesWithoutRegardToCase) {
  const TextView ascending[][2] = {{u"", u""}, {u"a", u"A"}, {u"AB", u"ab"}, {u"b", u"B"}, {u"É", u"é"}, {u"Ж", u"ж"}};
  for (std::size_t i = 0; i < std::size(ascending); ++i)
    for (std::size_t k = 0; k < std::size(ascending); ++k)
      EXPECT_EQ(caseInsensitiveCompare(ascending[i][0], ascending[k][1]), i <=> k) << i << " and " << k;
  EXPECT_TRUE(isEqualIgnoringCase(u"STRASSE", u"straße") && isEqualIgnoringCase(u"ﬁ", u"FI"));
  EXPECT_FALSE(isEqualIgnoringCase(u"é", u"e\x301") || isEqualIgnoringCase(u"e", u""));
}

// The decoder that replaces is the judge: only what it leaves alone encodes to the same bytes again.
TEST(TextWellFormed, TellsWhatTheOtherDecoderReplaces) {
  for (std::uint32_t number = 0; number <= 0xFFFFFF; number = number * 9 / 8 + 1) {
    const std::string bytes{static_cast<char>(number >> 16), static_cast<char>(number >> 8), static_cast<char>(number)};
    for (const std::string& form : {bytes, "\xF0" + bytes, bytes + "\x80"}) {
      const Text text = textFromUTF8(form);
      const std::optional<Text> expected = utf8(text) == form ? std::optional(text) : std::nullopt;
      ASSERT_EQ(textFromWellFormedUTF8(form), expected) << number;
    }
  }
  EXPECT_TRUE(isWellFormed(u"") && isWellFormed(u"a\xD83D\xDE00"));
  for (const TextView text : {u"\xD83D", u"\xDE00\xD83D", u"\xD83D\xD83D\xDE00", u"\xD83D\xDE00\xDE00"})
    EXPECT_FALSE(isWellFormed(text));
}

static_assert(std::constructible_from<Lines, Text&> && std::constructible_from<Lines, const Text&> &&
              std::constructible_from<Lines, TextView> && std::constructible_from<Lines, const char16_t*>);
static_assert(!std::constructible_from<Lines, Text> && !std::constructible_from<Lines, const Text>,
              "the text would be gone before the first line");
static_assert(std::forward_iterator<Lines::Iterator> && std::sentinel_for<std::default_sentinel_t, Lines::Iterator>);

// Which lines there are is judged by the plain way of TSVFuzz.
TEST(TextLines, IteratorsTellPlacesAndCompare) {
  const TextView text = u"ab\r\n\rc";
  const Lines lines(text);
  auto line = lines.begin();
  const auto first = line++;
  EXPECT_EQ(NSRange(first.start(), first.contentsEnd()), NSRange(0, 2));
  EXPECT_EQ(NSRange(line.start(), line.contentsEnd()), NSRange(4, 4));
  EXPECT_EQ((*line).data(), text.data() + 4) << "lines are slices of the text, even empty ones";
  EXPECT_TRUE(first != line && *++line == u"c" && ++line == lines.end() && first != line);
}

// That any search finds what a plain one does is SearchFuzz's.
TEST(TextSearch, ComparesWithoutRegardToCase) {
  const std::tuple<const char*, TextView, TextView, std::optional<NSRange>> rows[] = {
      {"case does not count", u"xSTRASSE", u"strasse", NSRange(1, 7)},
      {"capital sharp s", u"STRA\x1E9E.", u"stra\xDF", NSRange(0, 5)},
      {"no full folding", u"STRASSE", u"stra\xDF", std::nullopt},
      {"Kelvin sign, final sigma", u"\x212A\x3A3", u"k\x3C2", NSRange(0, 2)},
      {"dotted capital i is no i", u"\x130", u"i", std::nullopt},
      {"beyond the basic plane", u"x\xD801\xDC00", u"\xD801\xDC28", NSRange(1, 2)},
      {"no composition", u"e\x301", u"\xE9", std::nullopt},
  };
  for (const auto& [name, text, needle, found] : rows)
    EXPECT_EQ(rangeOfString(text, needle, NSCaseInsensitiveSearch), found) << name;
}

TEST(TextSearch, RangesBeyondTheTextAreRefused) {
  constexpr std::size_t huge = std::numeric_limits<std::size_t>::max();
  EXPECT_EQ(rangeOfString(u"abab", u"ab", 0, {1, 3}), NSRange(2, 2));
  for (const NSRange& range : {NSRange{5, 0}, NSRange{4, 1}, NSRange{1, huge}, NSRange{huge, 1}})
    EXPECT_THAT([&] { rangeOfString(u"abab", u"ab", 0, range); },
                isBeyond("rangeOfString:options:range:", testing::PrintToString(range), "4"));
}

// NumberFuzz has C as the judge of all others.
TEST(TextNumbers, ReadsNoDigitsOfOtherScriptsAndNoWords) {
  EXPECT_EQ(intValue(u"\x2028\x3000-7"), -7);
  EXPECT_EQ(integerValue(u"\x0661\xFF11"), 0);
  for (const TextView text : {u"0x1p4", u"inf", u"-nan", u"\x0661"}) EXPECT_EQ(doubleValue(text), 0) << utf8(text);
  EXPECT_EQ(doubleValue(u"\xA0-1.5"), -1.5);
}

TEST(TextNumbers, ReadsTruth) {
  for (const TextView text : {u"YES", u" -010", u"true", u"y", u"T", u"+9", u"\tY", u"\xA0-1"})
    EXPECT_TRUE(boolValue(text)) << utf8(text);
  for (const TextView text :
       {u"", u"on", u"0", u"NO", u"false", u"0.1", u"-", u"--1", u"00Y", u"-t", u"\x661", u"\x174"})
    EXPECT_FALSE(boolValue(text)) << utf8(text);
}

TEST(TextNumbers, PrintsTheShortestDecimalThatReadsBack) {
  EXPECT_EQ(shortestDecimal(0.1), u"0.1");
  EXPECT_EQ(shortestDecimal(0.1F), u"0.1");
  EXPECT_EQ(shortestDecimal(-0.0), u"-0");
  EXPECT_EQ(shortestDecimal(-NaN), u"nan");
}

}  // namespace
