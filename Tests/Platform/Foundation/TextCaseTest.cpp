#include "Platform/Foundation/TextCase.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextJoin.h"
#include "Platform/Foundation/TextWellFormed.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

TEST(TextCase, MapsWholeTexts) {
  const struct {
    TextView text, lower, upper;
  } rows[] = {
      {u"", u"", u""},
      {u"aZ@[`{19", u"az@[`{19", u"AZ@[`{19"},
      {u"Straße", u"straße", u"STRASSE"},
      {u"ΟΔΟΣ", u"οδος", u"ΟΔΟΣ"},
      {u"İi", u"i\x307i", u"İI"},
      {u"ŉﬁŉﬁŉﬁ", u"ŉﬁŉﬁŉﬁ", u"\x2BCNFI\x2BCNFI\x2BCNFI"},
      {u"\xD801\xDC00\xD801", u"\xD801\xDC28\xD801", u"\xD801\xDC00\xD801"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(lowercaseString(row.text), row.lower);
    EXPECT_EQ(uppercaseString(row.text), row.upper);
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

TEST(TextJoin, PutsPartsTogether) {
  const TextView parts[] = {u"a", u"", u"bc"};
  EXPECT_EQ(concatenate({u"/", parts[0], parts[2]}), u"/abc");
  EXPECT_EQ(componentsJoinedByString(parts, u", "), u"a, , bc");
  EXPECT_EQ(componentsJoinedByString(std::span<const Text>(), u", "), u"");
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

}  // namespace
}  // namespace kelvane
