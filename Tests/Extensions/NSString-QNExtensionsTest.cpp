#include <cstdlib>
#include <random>
#include <regex>
#include <set>
#include <stdexcept>

#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

using namespace std::string_view_literals;
using namespace std::string_literals;
using OptionalText = std::optional<TextView>;

// What compiles with a temporary: trimming gives an owner; what would leave a view of it behind refuses.
template <class T>
constexpr bool trims = requires(T text) {
  trim(std::forward<T>(text));
};
template <class T>
constexpr bool cuts = requires(T text) {
  firstLine(std::forward<T>(text));
}
|| requires(T text) { componentsSeparatedByLineSeparators(std::forward<T>(text)); }
|| requires(T text) { substringToToken(std::forward<T>(text), u"="sv); }
|| requires(T text) { substringFromToken(std::forward<T>(text), u"="sv); };

static_assert(std::same_as<decltype(trim(Text())), Text>);
static_assert(std::same_as<decltype(stringByRemovingSurroundingWhitespace(Text())), Text>);
static_assert(!cuts<Text> && cuts<Text&> && cuts<TextView>);

// A view that was trimmed or cut is a slice of the receiver, not a copy.
bool isSliceOf(TextView slice, TextView whole) {
  return slice.data() >= whole.data() && slice.data() + slice.size() <= whole.data() + whole.size();
}

// How lines are split stands in TextLinesTest.
TEST(NSStringLines, AreSlices) {
  const Text text = u"a\r\n\nb\x2028";
  EXPECT_EQ(componentsSeparatedByLineSeparators(text), (std::vector<TextView>{u"a", u"", u"b", u""}));
  EXPECT_EQ(numberOfLines(text), 4);
  EXPECT_TRUE(firstLine(text) == u"a" && isSliceOf(firstLine(text), text));
  EXPECT_TRUE(firstLine(u"").empty() && numberOfLines(u"") == 0);
}

TEST(NSStringTrim, TakesFourBlanksAndNoOthers) {
  const std::pair<TextView, TextView> rows[] = {{u" \t\r\n"sv, u""sv},
                                                {u"\r\n\t a b \t\n"sv, u"a b"sv},
                                                {u"\xA0 \v\f\x2028\x85"sv, u"\xA0 \v\f\x2028\x85"sv},
                                                {u" \0 "sv, u"\0"sv}};
  for (const auto& [text, trimmed] : rows) {
    EXPECT_EQ(trim(text), trimmed);
    EXPECT_TRUE(isSliceOf(stringByRemovingSurroundingWhitespace(text), text));
    EXPECT_EQ(trim(Text(text)), trimmed);
  }
}

TEST(NSStringTokens, MissingTokensAreAnsweredDifferently) {
  const TextView text = u"key=a=b";
  EXPECT_EQ(substringToToken(text, u"="sv), u"key"sv);
  EXPECT_EQ(substringFromToken(text, u"="sv), u"a=b"sv);
  EXPECT_EQ(substringToToken(text, u"=b"sv), u"key=a"sv);
  EXPECT_EQ(substringFromToken(text, u"=b"sv), u""sv);
  for (const OptionalText token : {OptionalText(u"?"sv), OptionalText(u""sv), OptionalText(u"key=a=b="sv)}) {
    EXPECT_EQ(substringToToken(text, token), text);
    EXPECT_EQ(substringFromToken(text, token), std::nullopt);
  }
  EXPECT_EQ(substringToToken(text, std::nullopt), std::nullopt);
  EXPECT_EQ(substringFromToken(text, std::nullopt), std::nullopt);
}

TEST(NSStringContains, ComparesCodeUnits) {
  EXPECT_TRUE(containsString(u"abc", u"bc"sv) && containsString(u"\xD83D\xDE00", u"\xDE00"sv));
  for (const OptionalText needle : {OptionalText(u"BC"sv), OptionalText(u""sv), OptionalText()})
    EXPECT_FALSE(containsString(u"abc", needle));
  EXPECT_TRUE(isEmpty(u"") && !isEmpty(u" "));
}

TEST(NSStringRemoval, OfBlanksLinebreaksAndWhatIsNoDigit) {
  EXPECT_EQ(stringByRemovingWhitespace(u" a\t\xA0\x2003\x2028\x85\x0B\x3000"
                                       u"b\x200B\x180E"),
            u"ab\x200B\x180E"sv);
  EXPECT_EQ(stringByRemovingLinebreaks(u"a\nb\r\nc\x2028"), u"a b\r c\x2028"sv);
  EXPECT_EQ(digitsOnly(u"+49 (30) 1-\x0663\xFF17\xB2\xBD\xD835\xDFCE"), u"49301\x0663\xFF17"sv);
  const auto vowels = NSCharacterSet::characterSetWithCharactersInString(u"aeiou");
  EXPECT_EQ(stringByRemovingCharactersInCharacterSet(u"education", vowels), u"dctn"sv);
}

TEST(NSStringNormalizeTrailing0, CutsBothEnds) {
  const std::pair<TextView, TextView> rows[] = {{u"2.50", u"2.5"},   {u"3.000", u"3.0"},   {u"0.25", u".25"},
                                                {u"100", u"1"},      {u"0", u""},          {u"0.0", u".0"},
                                                {u"-0.50", u"-0.5"}, {u"1.0e10", u"1.0e1"}};
  for (const auto& [text, normalized] : rows) EXPECT_EQ(normalizeTrailing0(text), normalized) << utf8(text);
}

TEST(NSStringMaking, RepeatsAndBlanks) {
  EXPECT_EQ(NSStringExtensions::stringWithSequenz(u"ab", 3), u"ababab"sv);
  EXPECT_THROW(NSStringExtensions::stringWithSequenz(u"ab", ~std::uint64_t{0} / 2 + 1), std::length_error);
  EXPECT_EQ(NSStringExtensions::stringWithWhiteSpace(std::numeric_limits<std::int64_t>::min()), u""sv);
  Text text = u"a";
  appendStringLn(text, u"b");
  appendStringLn(text, text);
  EXPECT_EQ(text, u"ab\nab\n\n"sv);
  EXPECT_EQ(blockFormatString(u"x"), std::nullopt);
}

TEST(NSStringUniqueString, IsARandomUUID) {
  const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  std::set<Text> all;
  for (int i = 0; i < 100; ++i) all.insert(NSStringExtensions::uniqueString());
  EXPECT_EQ(all.size(), 100U);
  for (const Text& unique : all) EXPECT_TRUE(std::regex_match(utf8(unique), form)) << utf8(unique);
}

TEST(NSStringComments, AreRemovedByLines) {
  EXPECT_EQ(removeCommentedLines(u"a\r\n  # b\r\n\t#\rc#\x2028 d \n"), u"a\nc#\n d \n"sv);
  EXPECT_EQ(removeCommentedLines(u"#a\n #b"), u""sv);
  EXPECT_EQ(removeCommentedLines(u"\n#a\n\n"), u"\n\n"sv);
  EXPECT_EQ(removeCommentedLines(u"\xA0#a"), u"\xA0#a"sv);
}

// The plain way judges the way that copies whole runs: every length around the vector widths, quotes at every place.
TEST(NSStringQuotes, AgreeWithThePlainWay) {
  std::mt19937 random(20260131);
  for (std::size_t length = 0; length < 70; ++length) {
    for (int turn = 0; turn < 20; ++turn) {
      Text text;
      for (std::size_t i = 0; i < length; ++i) text += u"a\\\"'\x2222\x0127"[random() % 6];
      Text escaped, removed;
      for (const char16_t unit : text) {
        const bool isQuote = unit == u'"' || unit == u'\'';
        if (isQuote) escaped += u'\\';
        escaped += unit;
        if (!isQuote) removed += unit;
      }
      ASSERT_EQ(escapeQuots(text), escaped);
      ASSERT_EQ(removeQuots(text), removed);
    }
  }
  EXPECT_EQ(escapeFilesystemCharacters(u"/a/b:c\\"), u":a:b:c\\"sv);
}

TEST(NSStringNormalizePath, ReadsPathsAndFileURLs) {
  ASSERT_EQ(setenv("HOME", "/home/ann", 1), 0);
  const struct {
    TextView text;
    OptionalText path;
  } rows[] = {
      {u"file:///tmp/a%20b/", u"/tmp/a b"sv},
      {u"file://host/tmp/x?q#f", u"/tmp/x"sv},
      {u"file:/a/%2E%2E/b", u"/b"sv},
      {u"file:///a%FF", u"/a\xDCFF"sv},
      {u"file:", std::nullopt},
      {u"file:///a b", std::nullopt},
      {u"file:///a%2", std::nullopt},
      {u"~", u"/home/ann"sv},
      {u"", u""sv},
  };
  for (const auto& row : rows) EXPECT_EQ(normalizePath(row.text), row.path) << utf8(row.text);
}

TEST(NSStringReplacement, OfOneText) {
  const TextView rows[][4] = {{u"aaa", u"aa", u"b", u"ba"}, {u"aaa", u"a", u"aa", u"aaaaaa"},
                              {u"abc", u"", u"x", u"abc"},  {u"abc", u"abcd", u"x", u"abc"},
                              {u"a b", u" ", u"", u"ab"},   {u"aXa", u"A", u"b", u"aXa"}};
  for (const auto& [text, target, replacement, result] : rows)
    EXPECT_EQ(replaceAllOccurencesOfString(text, target, replacement), result) << utf8(text);
}

TEST(NSStringReplacement, KeepsToTheRange) {
  const auto b = NSDictionary::dictionaryWithEntries({{u"a", box(u"b")}});
  EXPECT_EQ(replaceAllTextFromDictionary(u"aXaXaXa", *b, 0, NSRange{2, 3}), u"aXbXbXa"sv);
  EXPECT_EQ(replaceAllTextFromDictionary(u"AaA", *b, NSCaseInsensitiveSearch), u"bbb"sv);
  EXPECT_EQ(replaceAllTextFromDictionary(u"aXa", *b, NSBackwardsSearch), u"aXb"sv);
  for (const NSRange range : {NSRange{8, 0}, NSRange{0, 8}, NSRange{5, ~std::size_t{0}}})
    EXPECT_THROW(replaceAllTextFromDictionary(u"aXaXaXa", *b, 0, range), std::out_of_range);
}

TEST(NSStringReplacement, LaterKeysFindWhatEarlierOnesPutIn) {
  const auto chain = NSDictionary::dictionaryWithEntries({{u"", box(u"never")}, {u"a", box(u"bb")}, {u"b", box(7)}});
  EXPECT_EQ(replaceAllTextFromDictionary(u"a-b-c", *chain), u"77-7-c"sv);
  // The range grows with what the first key put in, and still spares the last "b".
  EXPECT_EQ(replaceAllTextFromDictionary(u"baab", *chain, 0, NSRange{1, 2}), u"b7777b"sv);
  // And shrinks.
  const auto shrink = NSDictionary::dictionaryWithEntries({{u"aa", box(u"")}, {u"b", box(u"c")}});
  EXPECT_EQ(replaceAllTextFromDictionary(u"baabb", *shrink, 0, NSRange{1, 3}), u"bcb"sv);
}

}  // namespace
}  // namespace kelvane
