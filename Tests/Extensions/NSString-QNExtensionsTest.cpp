#include <regex>

#include "Extensions/NSString-QNExtensions.h"
#include "Support/FakeDesktop.h"
#include "Support/Testing.h"

namespace {

using namespace std::string_view_literals;
using namespace std::string_literals;
using OptionalText = std::optional<TextView>;

// What compiles with a temporary: trimming gives an owner; what would leave a view of it behind refuses.
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

// What is trimmed, cut, filtered, rewritten and replaced is judged by the plain ways of TextFuzz, TSVFuzz and
// SearchFuzz.
TEST(NSStringTokens, MayBeNil) {
  EXPECT_EQ(substringToToken(u"abc", std::nullopt), std::nullopt);
  EXPECT_EQ(substringFromToken(u"abc", std::nullopt), std::nullopt);
  EXPECT_FALSE(containsString(u"abc", std::nullopt));
  EXPECT_TRUE(isEmpty(u"") && !isEmpty(u" "));
  EXPECT_EQ(trim(Text(u" a ")), u"a"sv) << "of what is gone afterwards";
}

TEST(NSStringMaking, RepeatsAndBlanks) {
  EXPECT_EQ(NSStringExtensions::stringWithSequenz(u"ab", 3), u"ababab"sv);
  EXPECT_THROW(NSStringExtensions::stringWithSequenz(u"ab", ~std::uint64_t{0} / 2 + 1), std::length_error);
  EXPECT_EQ(NSStringExtensions::stringWithWhiteSpace(std::numeric_limits<std::int64_t>::min()), u""sv);
  EXPECT_THAT([] { NSStringExtensions::stringWithWhiteSpace(std::numeric_limits<std::int64_t>::max()); },
              ThrowsMessage<std::length_error>("stringWithWhiteSpace: no text can be that long"));
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

TEST(NSStringNormalizePath, ReadsPathsAndFileURLs) {
  ASSERT_EQ(setenv("HOME", "/home/ann", 1), 0);
  const std::tuple<TextView, OptionalText> rows[] = {
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
  for (const auto& [text, path] : rows) EXPECT_EQ(normalizePath(text), path) << utf8(text);
}

TEST(NSStringReplacement, KeepsToTheRange) {
  const auto b = dictionaryOf({{u"a", box(u"b")}});
  EXPECT_EQ(replaceAllTextFromDictionary(u"aXaXaXa", *b, 0, NSRange{2, 3}), u"aXbXbXa"sv);
  for (const NSRange range : {NSRange{8, 0}, NSRange{0, 8}, NSRange{5, ~std::size_t{0}}})
    EXPECT_THROW(replaceAllTextFromDictionary(u"aXaXaXa", *b, 0, range), std::out_of_range);
}

TEST(NSStringReplacement, LaterKeysFindWhatEarlierOnesPutIn) {
  const auto chain = dictionaryOf({{u"", box(u"never")}, {u"a", box(u"bb")}, {u"b", box(7)}});
  // The range grows with what the first key put in, and still spares the last "b".
  EXPECT_EQ(replaceAllTextFromDictionary(u"baab", *chain, 0, NSRange{1, 2}), u"b7777b"sv);
  const auto shrink = dictionaryOf({{u"aa", box(u"")}, {u"b", box(u"c")}});
  EXPECT_EQ(replaceAllTextFromDictionary(u"baabb", *shrink, 0, NSRange{1, 3}), u"bcb"sv);
}

// Each code unit is 10 points wide, or what `measure` says.
struct MeasuringDesktop : FakeDesktop {
  CGSize sizeOfText(TextView text, const NSDictionary&) override { return {measure(text), 12}; }

  double (*measure)(TextView text) = [](TextView text) { return 10.0 * static_cast<double>(text.size()); };
};

TEST(NSStringExtensions, FitsTextByItsWidth) {
  const auto desktop = std::make_shared<MeasuringDesktop>();
  Desktop::install(desktop);
  const std::tuple<CGSize, TextView, TextView> rows[] = {
      {{60, 1}, u"abcdef", u"abcdef"}, {{59, 99}, u"abcdef", u"ab..."}, {{30, 1}, u"abcdef", u"..."},
      {{29, 1}, u"abcdef", u""},       {{0, 1}, u"abcdef", u""},        {{99, 0}, u"abcdef", u""},
      {{NaN, 1}, u"a", u""},           {{99, NaN}, u"a", u"a"},         {{40, 1}, u"\U0001F600abc", u"\xD83D..."}};
  for (const auto& [size, text, fitted] : rows) EXPECT_EQ(fitTextInRect(text, {{7, 7}, size}, nullptr), fitted);
  // A shorter text may be the wider one: the longest that fits counts.
  desktop->measure = [](TextView text) { return text == u"abc..." ? 50.0 : 100.0; };
  EXPECT_EQ(fitTextInRect(u"abcdef", {0, 0, 60, 1}, nullptr), u"abc...");
  Desktop::install(nullptr);
  EXPECT_EQ(fitTextInRect(u"abcdef", {0, 0, 1, 1}, nullptr), u"abcdef");
}

}  // namespace
