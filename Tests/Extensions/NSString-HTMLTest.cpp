#include "Extensions/NSString-HTML.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/VectorTargets.h"
#include "Support/Testing.h"
#include "Support/TextBeforeAGap.h"

namespace {

Text plainlyEscaped(TextView text) {
  Text out;
  for (const char16_t unit : text) {
    const std::string number = std::to_string(static_cast<unsigned>(unit));
    if (unit >= 128)
      out += u"&#" + Text(number.begin(), number.end()) + u";";
    else if (unit == u'\n' || unit == u'"')
      out += unit == u'"' ? u"&quot;" : u"<br/>";
    else if (unit == u'&' || unit == u'<' || unit == u'>')
      out += unit == u'&' ? u"&amp;" : unit == u'<' ? u"&lt;" : u"&gt;";
    else
      out += unit;
  }
  return out;
}

TEST(HTMLString, EscapesEveryUnitOnEveryInstructionSet) {
  Text all;
  for (char32_t unit = 0; unit <= 0xFFFF; ++unit) {
    all += static_cast<char16_t>(unit);
    all.append(unit % 7 * (unit % 5), u'x');
  }
  // Of a long text only some blocks are looked at for how long it gets: here those in which nothing is escaped, or all.
  Text few(40'000, u'x'), many = few;
  for (std::size_t i = 0; i < few.size(); ++i) (i / 512 % 16 == 0 ? many : few)[i] = u'\xFFFF';
  const std::int64_t supported = supportedVectorTargets();
  for (std::int64_t left = supported; left != 0; left &= left - 1) {
    useVectorTargets(left & -left);
    for (const Text& text : {all, few, many}) EXPECT_TRUE(htmlString(text) == plainlyEscaped(text));
    for (std::size_t length = 0; length < 1200; length += length < 150 ? 1 : 7) {
      const TextBeforeAGap piece(TextView(all).substr(length * 37, length));
      ASSERT_EQ(htmlString(piece.text()), plainlyEscaped(piece.text())) << length;
    }
  }
  useVectorTargets(supported);
}

TEST(FlattenHTML, ReadsShortTextThroughMacOSRoman) {
  const std::pair<TextView, TextView> rows[] = {
      {u"", u""},
      {u"\xE9", u"\x17D"},         // 8E
      {u"<\x6771>", u"<\x6771>"},  // so the text itself, tag or not
      {u"\xD4\xAA\xF8", u""},      // EF BB BF, the mark of UTF-8
      {u"caf\xE9", u"caf\xE9"},    // four units are read as they are
      {u"<p>\x6771<p>b", u"\x6771\nb"},
  };
  for (const auto& [text, flat] : rows) EXPECT_EQ(flattenHTML(text), flat) << testing::PrintToString(text);
  EXPECT_EQ(NSStringExtensions::stringWithHTMLString(u"\xE9&eacute;"), u"\xE9\xE9");
  EXPECT_EQ(NSStringExtensions::stringWithHTMLString(std::nullopt), std::nullopt);
}

TEST(EncodeLegally, EscapesWhatNoURLMayHold) {
  const std::pair<TextView, TextView> rows[] = {
      {u"a b/\xE9?q=1&r=+#x", u"a%20b/%C3%A9?q=1&r=+#x"},
      {u"%20 100%", u"%20%20100%"},
      {u"<>\"{}|\\^[]`\x7F\n", u"%3C%3E%22%7B%7D%7C%5C%5E%5B%5D%60%7F%0A"},
      {u"AZaz09-_.!~*'();/?:@&=+$,", u"AZaz09-_.!~*'();/?:@&=+$,"},
      {u"\xD83D\xDE00\xD800", u"%F0%9F%98%80%EF%BF%BD"},
  };
  for (const auto& [text, encoded] : rows) EXPECT_EQ(encodeLegally(text), encoded);
}

TEST(Hyperlink, CarriesItsAttributesOverAllOfIt) {
  const NSAttributedString link = hyperlink(u"https://example.org");
  NSRange range;
  const Ref<NSDictionary>& attributes = link.attributesAtIndex(3, &range);
  EXPECT_EQ(range, (NSRange{0, link.length()}));
  EXPECT_TRUE(isEqual(attributes->objectForKey(NSLinkAttributeName), box(u"https://example.org")));
  EXPECT_TRUE(isEqual(attributes->objectForKey(NSUnderlineStyleAttributeName), box(1)));
  EXPECT_TRUE(isEqual(attributes->objectForKey(NSForegroundColorAttributeName),
                      box(NSColor::colorWithCalibratedRed(0.1, 0.1, 1, 1))));
  const auto font = NSFont::systemFontOfSize(NSFont::smallSystemFontSize());
  EXPECT_TRUE(isEqual(attributes->objectForKey(NSFontAttributeName), box(font)));
}

}  // namespace
