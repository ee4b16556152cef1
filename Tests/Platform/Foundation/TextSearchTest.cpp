#include <limits>
#include <random>
#include <stdexcept>

#include "Platform/Foundation/TextSearch.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

constexpr NSStringCompareOptions backwards = NSBackwardsSearch;
constexpr NSStringCompareOptions anyCase = NSCaseInsensitiveSearch;

std::optional<NSRange> plainlyFound(TextView text, TextView needle, bool goesBackwards, std::size_t from,
                                    std::size_t end) {
  std::optional<NSRange> found;
  if (needle.empty()) return found;
  for (std::size_t place = from; place < text.size() && place + needle.size() <= std::min(end, text.size()); ++place) {
    if (text.substr(place, needle.size()) != needle) continue;
    found = NSRange{place, needle.size()};
    if (!goesBackwards) break;
  }
  return found;
}

Text randomText(std::mt19937& random, std::size_t length, TextView alphabet) {
  Text text;
  while (text.size() < length) text += alphabet[random() % alphabet.size()];
  return text;
}

// Texts of few letters make nearly all the near misses there are. One finder serves many searches, also after its plain
// search gave up; long repetitive needles bring it there.
TEST(TextSearch, FindsWhatAPlainSearchFinds) {
  std::mt19937 random(2);
  for (int round = 0; round < 3000; ++round) {
    const bool isLong = round % 10 == 0;
    const TextView alphabet = round % 3 == 0 ? u"aaaaaaaab" : round % 3 == 1 ? u"ab" : u"aB\x101";
    const Text text = randomText(random, random() % (isLong ? 3000 : 40), alphabet);
    Text needle = randomText(random, random() % (isLong ? 60 : 6), isLong ? u"aaaaaaaaaaaaaaaaab" : alphabet);
    if (!text.empty() && round % 4 == 0) needle = text.substr(random() % text.size(), random() % 200);
    TextFinder forwardsFinder(text, needle, NSLiteralSearch | 0xF0);
    TextFinder backwardsFinder(text, needle, backwards);
    for (int search = 0; search < 20; ++search) {
      const std::size_t from = random() % (text.size() + 3);
      const std::size_t end = search % 2 ? text.size() : random() % (text.size() + 3);
      SCOPED_TRACE(testing::Message() << testing::PrintToString(needle) << " in " << testing::PrintToString(text)
                                      << " from " << from << " to " << end);
      ASSERT_EQ(forwardsFinder.find(from, end), plainlyFound(text, needle, false, from, end));
      ASSERT_EQ(backwardsFinder.find(from, end), plainlyFound(text, needle, true, from, end));
    }
  }
}

TEST(TextSearch, ComparesByOptions) {
  const struct {
    const char* name;
    TextView text, needle;
    NSStringCompareOptions options;
    std::optional<NSRange> found;
  } rows[] = {
      {"empty needle backwards", u"abc", u"", backwards, std::nullopt},
      {"case does not count", u"xSTRASSE", u"strasse", anyCase, NSRange(1, 7)},
      {"case, backwards", u"aAbA", u"aa", anyCase | backwards, NSRange(0, 2)},
      {"capital sharp s", u"STRA\x1E9E.", u"stra\xDF", anyCase, NSRange(0, 5)},
      {"no full folding", u"STRASSE", u"stra\xDF", anyCase, std::nullopt},
      {"Kelvin sign, final sigma", u"\x212A\x3A3", u"k\x3C2", anyCase, NSRange(0, 2)},
      {"dotted capital i is no i", u"\x130", u"i", anyCase, std::nullopt},
      {"beyond the basic plane", u"x\xD801\xDC00", u"\xD801\xDC28", anyCase, NSRange(1, 2)},
      {"no composition", u"e\x301", u"\xE9", anyCase, std::nullopt},
      {"begins within CR LF", u"a\r\nb", u"\nb", anyCase, NSRange(2, 2)},
      {"begins within a pair", u"\xD83D\xDE00x", u"\xDE00x", 0, NSRange(1, 2)},
      {"ends within a pair", u"x\xD83D\xDE00", u"x\xD83D", anyCase, NSRange(0, 2)},
  };
  for (const auto& row : rows) EXPECT_EQ(rangeOfString(row.text, row.needle, row.options), row.found) << row.name;
}

TEST(TextSearch, RangesBeyondTheTextAreRefused) {
  constexpr std::size_t huge = std::numeric_limits<std::size_t>::max();
  EXPECT_EQ(rangeOfString(u"abab", u"ab", 0, {1, 3}), NSRange(2, 2));
  for (const NSRange& range : {NSRange{5, 0}, NSRange{4, 1}, NSRange{1, huge}, NSRange{huge, 1}})
    EXPECT_THAT([&] { rangeOfString(u"abab", u"ab", 0, range); },
                testing::ThrowsMessage<std::out_of_range>(
                    testing::AllOf(testing::HasSubstr("rangeOfString:options:range:"),
                                   testing::HasSubstr(testing::PrintToString(range)), testing::HasSubstr("4"))));
}

TEST(TextSearch, FoldsCaseInPlace) {
  EXPECT_EQ(foldCase(u"A\xC4\x1E9E\x130\xD801\xDC00\xD801.\xDC00Z"), u"a\xE4\xDF\x130\xD801\xDC28\xD801.\xDC00z");
}

}  // namespace
}  // namespace kelvane
