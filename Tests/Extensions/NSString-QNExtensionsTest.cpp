#include <regex>

#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Desktop/Desktop.h"
#include "Support/Testing.h"

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

// What is trimmed, filtered, cut and replaced is judged by the plain ways of TextFuzz, TSVFuzz and SearchFuzz.
TEST(NSStringTrim, TakesFourBlanksAndNoOthers) {
  EXPECT_EQ(trim(u"\r\n\t a\0b \t\n"sv), u"a\0b"sv);
  EXPECT_EQ(trim(Text(u" \xA0\v ")), u"\xA0\v"sv);
}

TEST(NSStringTokens, MissingTokensAreAnsweredDifferently) {
  const TextView text = u"key=a=b";
  EXPECT_EQ(substringToToken(text, u"="sv), u"key"sv);
  EXPECT_EQ(substringFromToken(text, u"="sv), u"a=b"sv);
  for (const OptionalText token : {OptionalText(u"?"sv), OptionalText(u""sv), OptionalText()}) {
    EXPECT_EQ(substringToToken(text, token), token ? OptionalText(text) : std::nullopt);
    EXPECT_EQ(substringFromToken(text, token), std::nullopt);
  }
}

TEST(NSStringContains, ComparesCodeUnits) {
  EXPECT_TRUE(containsString(u"abc", u"bc"sv) && containsString(u"\xD83D\xDE00", u"\xDE00"sv));
  for (const OptionalText needle : {OptionalText(u"BC"sv), OptionalText(u""sv), OptionalText()})
    EXPECT_FALSE(containsString(u"abc", needle));
  EXPECT_TRUE(isEmpty(u"") && !isEmpty(u" "));
}

TEST(NSStringRemoval, OfBlanksLinebreaksAndWhatIsNoDigit) {
  EXPECT_EQ(stringByRemovingWhitespace(u" a\xA0\x2028\x0B\x3000z\x200B\x180E"), u"az\x200B\x180E"sv);
  EXPECT_EQ(stringByRemovingLinebreaks(u"a\nb\r\nc\x2028"), u"a b\r c\x2028"sv);
  EXPECT_EQ(digitsOnly(u"+49 (30) 1-\x0663\xFF17\xB2\xBD\xD835\xDFCE"), u"49301\x0663\xFF17"sv);
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

// TextFuzz judges both.
TEST(NSStringQuotes, AreEscapedOrRemoved) {
  EXPECT_EQ(escapeQuots(u"a\\\"'\x2222"), u"a\\\\\"\\'\x2222"sv);
  EXPECT_EQ(removeQuots(u"a\\\"'\x2222"), u"a\\\x2222"sv);
  EXPECT_EQ(escapeFilesystemCharacters(u"/a/b:c\\"), u":a:b:c\\"sv);
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
  EXPECT_EQ(replaceAllTextFromDictionary(u"AaA", *b, NSCaseInsensitiveSearch), u"bbb"sv);
  EXPECT_EQ(replaceAllTextFromDictionary(u"aXa", *b, NSBackwardsSearch), u"aXb"sv);
  for (const NSRange range : {NSRange{8, 0}, NSRange{0, 8}, NSRange{5, ~std::size_t{0}}})
    EXPECT_THROW(replaceAllTextFromDictionary(u"aXaXaXa", *b, 0, range), std::out_of_range);
}

TEST(NSStringReplacement, LaterKeysFindWhatEarlierOnesPutIn) {
  const auto chain = dictionaryOf({{u"", box(u"never")}, {u"a", box(u"bb")}, {u"b", box(7)}});
  EXPECT_EQ(replaceAllTextFromDictionary(u"a-b-c", *chain), u"77-7-c"sv);
  // The range grows with what the first key put in, and still spares the last "b".
  EXPECT_EQ(replaceAllTextFromDictionary(u"baab", *chain, 0, NSRange{1, 2}), u"b7777b"sv);
  const auto shrink = dictionaryOf({{u"aa", box(u"")}, {u"b", box(u"c")}});
  EXPECT_EQ(replaceAllTextFromDictionary(u"baabb", *shrink, 0, NSRange{1, 3}), u"bcb"sv);
}

// Each code unit is 10 points wide, or what `measure` says.
struct MeasuringDesktop : Desktop {
  CGSize sizeOfText(TextView text, const NSDictionary&) override { return {measure(text), 12}; }
  void runModalAlert(const ModalAlert&) override {}

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
