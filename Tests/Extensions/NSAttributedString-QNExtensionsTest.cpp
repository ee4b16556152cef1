#include "Extensions/NSAttributedString-QNExtensions.h"
#include "Extensions/NSTextStorage-QNExtensions.h"
#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/TextNumbers.h"
#include "Support/Process.h"
#include "Support/Testing.h"

namespace {

using namespace std::literals;

// Each run's text and style: "Hello [12]bold[b12]"; "[]" where there are no attributes.
Text runsOf(const NSAttributedString& text) {
  Text out;
  for (const AttributeRun run : text.runs()) {
    out += TextView(text.string()).substr(run.range.location, run.range.length);
    out += u'[';
    if (const auto font = as<NSFont>(run.attributes->objectForKey(NSFontAttributeName))) {
      EXPECT_EQ(font->familyName(), u"Helvetica");
      EXPECT_EQ(run.attributes->count(), 2U);
      if (font->isBold()) out += u'b';
      if (font->isItalic()) out += u'i';
      if (unbox<bool>(run.attributes->objectForKey(NSUnderlineStyleAttributeName))) out += u'u';
      out += shortestDecimal(font->pointSize());
    } else {
      EXPECT_EQ(run.attributes->count(), 0U);
    }
    out += u']';
  }
  return out;
}

struct Piece {
  TextView text;
  NSDictionary::Entries attributes;
};

NSAttributedString styled(std::initializer_list<Piece> pieces) {
  NSMutableAttributedString text;
  for (const Piece& piece : pieces) text.appendString(piece.text, std::make_shared<NSDictionary>(piece.attributes));
  return text;
}

NSDictionary::Entries::value_type font(NSFontTraitMask traits, double size) {
  return {Text(NSFontAttributeName), box(NSFont::fontWithFamily(u"Helvetica", traits, 5, size))};
}
NSDictionary::Entries::value_type link(const Ref<NSObject>& to) { return {Text(NSLinkAttributeName), to}; }
NSDictionary::Entries::value_type color(const Ref<NSColor>& color) {
  return {Text(NSForegroundColorAttributeName), color};
}
NSDictionary::Entries::value_type underline(int style) { return {Text(NSUnderlineStyleAttributeName), box(style)}; }

const Ref<NSColor> red = box(NSColor::redColor());
const Ref<NSColor> black = box(NSColor::blackColor());
constexpr NSFontTraitMask plain = 0;

// First, since nothing takes `didLoad` back.
TEST(StyledTextAsHTML, WithoutDidLoad) {
  EXPECT_EQ(runsOf(attributedStringWithHTML(u"a &b&&c & & d")), u"a &b&&c &c &d [12]");
  EXPECT_EQ(htmlString(styled({{u"x", {color(black)}}})), u"<font color=\"#000000\">x</font>");
  EXPECT_EQ(NSAttributedStringExtensions::closeTags(), u"");
}

// StyledHTMLFuzz judges the text alone.
TEST(StyledTextAsHTML, Reads) {
  NSAttributedStringExtensions::didLoad();
  NSAttributedStringExtensions::didLoad();
  const std::pair<TextView, TextView> rows[] = {
      {u"a<p>b<br> c", u"a[12]\n\n[]b[12]\n[]c [12]"},
      {u"<b>a<i>b</b>c</i>d<u>e</u>f", u"a[b12]b[bi12]c[i12]d[12]e[u12]f [12]"},
      {u"<B>a</B><br/>b<!-- c --></p><a href='d'>e", u"abe [12]"},
      // Brackets.
      {u"<<b>>a", u"a [b12]"},
      {u"<b >a<>b", u"ab [12]"},
      // Sizes.
      {u"<font size=5>a</font>b", u"a[14]b [12]"},
      {u"<font size=+1>a<font size=+-2>b", u"a[22]b [29]"},
      {u"<font size = 1.5em>a", u"a [10.5]"},
      {u"<font size=-12>a", u"a [-3]"},
      {u"<font size=inf>a<font size=1e999>b", u"ab [inf]"},
      {u"<font size=\"3\">a<font size=>b<font size=x>c<font size=--1>d<font sizes=3>e<font size=+x>f", u"abcdef [12]"},
      {u"<font size=0x>a<font size=infin>b", u"ab [12]"},
  };
  for (const auto& [html, runs] : rows) {
    NSAttributedStringExtensions::setUnderline(true);
    EXPECT_EQ(runsOf(attributedStringWithHTML(html)), runs) << testing::PrintToString(html);
  }
  // What is open at the end stays.
  attributedStringWithHTML(u"<i><font size=5>a");
  NSAttributedStringExtensions::setBold(true);
  NSAttributedStringExtensions::setItalic(false);
  NSMutableAttributedString text(u"b");
  NSAttributedStringExtensions::setCurrentAttributes(text);
  EXPECT_EQ(runsOf(text), u"b[b14]");
}

TEST(StyledTextAsHTML, Writes) {
  NSAttributedStringExtensions::didLoad();
  const Ref<NSObject> address = box(u"a\"b");
  const NSDictionary::Entries bold = {font(NSBoldFontMask, 12)};
  const std::pair<NSAttributedString, TextView> rows[] = {
      {NSAttributedString(u"a<\xE9"), u"a&lt;&#233;"},
      {styled({{u"a", bold}, {u"b", {font(plain, 12)}}}), u"<b>a</b>b"},
      {styled({{u"a", {font(NSItalicFontMask, 14)}}, {u"b", {}}}), u"<font size=\"5\"><i>a</i></font>b"},
      {styled({{u"a", {font(NSItalicFontMask, 14)}}}), u"<font size=\"5\"><i>a</i></font>"},
      {styled({{u"a", bold}, {u"b", {font(3, 12)}}, {u"c", {font(NSItalicFontMask, 12)}}}),
       u"<b>a<i>b</i></b><i>c</i>"},
      {styled({{u"a", {font(3, 12), underline(1)}}, {u"b", {underline(9)}}}), u"<i><b><u>a</u></b><u></u></i><u>b</u>"},
      {styled({{u"a", {font(plain, 12.9)}}, {u"b", {font(plain, 8)}}, {u"c", {font(plain, 0)}}}),
       u"<font size=\"3\">a</font><font size=\"-1\">b</font><font size=\"-9\">c</font>"},
      {styled({{u"a", {font(plain, 14), color(red)}}}), u"<font size=\"5\"><font color=\"#ff0000\">a</font>"},
      {styled({{u"a", {color(red)}}, {u"b", {color(red), underline(1)}}, {u"c", {color(box(*red))}}}),
       u"<font color=\"#ff0000\">a<u>b</u></font><font color=\"#ff0000\">c</font>"},
      {styled({{u"a", {link(address), font(NSBoldFontMask, 14)}}, {u"b", {}}}), u"<a href=\"a\"b\">a</a>b"},
      {styled({{u"a", {link(address)}}, {u"b", {link(box(u"a\"b")), underline(1)}}}),
       u"<a href=\"a\"b\">a<u>b</u></a>"},
      {styled({{u"a", {link(NSURL::URLWithString(u"x:y"))}}}), u"<a href=\"x:y\">a</a>"},
      // What is of another class is not there.
      {styled({{u"a", {{Text(NSFontAttributeName), box(1)}, {u"other", box(2)}}}}), u"a"},
  };
  for (const auto& [text, html] : rows) EXPECT_EQ(htmlString(text), html);
}

TEST(StyledTextAsHTML, FailsWhereAStyleEndsThatWasNotWritten) {
  NSAttributedStringExtensions::didLoad();
  const Ref<NSObject> link_ = box(u"x");
  const NSAttributedString text = styled({{u"a", {link(link_), font(NSBoldFontMask, 12)}}, {u"b", {link(link_)}}});
  EXPECT_THAT([&] { htmlString(text); }, ThrowsMessage<std::invalid_argument>("popUntil: no such tag is open '<b>'"));
  EXPECT_EQ(NSAttributedStringExtensions::closeTags(), u"");
}

// What is written between two dictionaries is worked out once; where no dictionary comes by twice, each time.
TEST(StyledTextAsHTML, WritesTheSameForSharedDictionariesAsForCopies) {
  NSAttributedStringExtensions::didLoad();
  const Ref<NSObject> plainLink = box(u"x:y");
  // Longer than what is kept short, and beyond ASCII.
  const Ref<NSObject> longLink = box(Text(40, u'y')), otherLink = box(u"\x6771");
  std::vector<Ref<NSDictionary>> styles;
  for (const double size : {12, 14})
    for (const NSFontTraitMask traits : {0U, 1U, 2U, 3U})
      for (const auto& extra : {underline(1), color(red), link(plainLink), link(longLink), link(otherLink)})
        styles.push_back(std::make_shared<NSDictionary>(NSDictionary::Entries{font(traits, size), extra}));
  const auto writtenOf = [](const NSAttributedString& text) {
    try {
      return htmlString(text);
    } catch (const std::invalid_argument& failure) {
      return textFromUTF8(failure.what());
    }
  };
  std::mt19937 random(11);
  std::size_t failures = 0;
  for (int round = 0; round < 400; ++round) {
    NSMutableAttributedString shared, copied;
    const std::size_t used = 1 + random() % styles.size();
    for (std::size_t run = random() % 60; run > 0; --run) {
      const Ref<NSDictionary>& style = styles[random() % used];
      const Text text = Text(u"a<b>\x6771 and what is plain ").substr(random() % 20) + Text(random() % 200, u'x');
      shared.appendString(text, style);
      copied.appendString(text, std::make_shared<NSDictionary>(*style));
    }
    const Text written = writtenOf(shared);
    ASSERT_EQ(written, writtenOf(copied));
    if (written.starts_with(u"popUntil:")) ++failures;
  }
  EXPECT_GT(failures, 10U);
  EXPECT_LT(failures, 390U);
}

std::string throughUnRTF(const NSAttributedString& text) {
  const TemporaryFolder folder;
  const std::vector<std::uint8_t> bytes = rtf(text);
  folder.write("text.rtf", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  return runProcess({KELVANE_UNRTF, "--nopict", "--html", folder.path("text.rtf")}).out;
}

TEST(StyledTextAsRTF, OpensInAnotherProgram) {
  const std::string html = throughUnRTF(styled({
      {u"plain {\\} ", {}},
      {u"bold\n", {font(NSBoldFontMask, 12)}},
      {u"\xE9\x20AC\x6771\t", {font(NSItalicFontMask, 20)}},
      {u"red", {color(red), underline(1)}},
      {u"label", {link(box(u"http://example.org/"))}},
  }));
  for (const char* part : {"plain {\\} ", "<b>bold<br>", "<i>&eacute;&euro;&#26481;", "20pt",
                           "<u><font color=\"#ff0000\">red", "http://example.org/"})
    EXPECT_THAT(html, HasSubstr(part));
}

TEST(StyledTextAsRTF, IsWrittenInASCII) {
  const std::vector<std::uint8_t> bytes = rtf(styled({
      {u"a\r\nb\rc\x2028\f\0\x1\xD83D\xDE00\x7F"sv, {link(box(u"q\"\\\n\xE9"))}},
      {u"d", {font(plain, -3), link(box(u"q\"\\\n\xE9"))}},
  }));
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()),
            "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n{\\fonttbl{\\f0\\fnil\\fcharset0 Helvetica;}}\n{\\colortbl;}\n"
            "\\pard {\\field{\\*\\fldinst{HYPERLINK \"q%22\\\\\\\\\\u233?\"}}{\\fldrslt {\\f0\\fs24 a\\par\nb\\par\n"
            "c\\line\n\\page\n\\u-10179?\\u-8704?\\u127?}{\\f0\\fs1 d}}}\n}\n");
}

Ref<NSDictionary> attributesOf(const NSFont& font) {
  return dictionaryOf({{Text(NSFontAttributeName), box(font)}, {u"mark", box(1)}});
}

std::vector<Text> fontsOf(const NSTextStorage& text) {
  std::vector<Text> fonts;
  for (const AttributeRun run : text.runs()) fonts.push_back(description(run.attributes->objectForKey(u"NSFont")));
  return fonts;
}

TEST(NSTextStorageExtensions, ScalesFacesAndSetsPlainOnes) {
  const auto sans = NSFont::fontWithName(u"DejaVu Sans", 13);
  const auto bold = NSFont::fontWithName(u"DejaVu Sans Bold", 20);
  ASSERT_TRUE(sans && bold);
  NSTextStorage text;
  const auto unstyled = dictionaryOf({{u"mark", box(2)}});
  text.appendString(u"plain", attributesOf(*sans));
  text.appendString(u"none", unstyled);
  text.appendString(u"bold", attributesOf(*bold));
  text.appendString(u"lost", attributesOf(NSFont::fontWithFamily(u"No Such", NSItalicFontMask, 5, 10)));
  text.appendString(u"small", attributesOf(sans->fontWithSize(1)));
  const NSTextStorage before = text;
  EXPECT_EQ(&setFontSize(scaleAttributedStringUsingFactor(text, 0), 0), &text);
  EXPECT_TRUE(text.isEqual(before));

  scaleAttributedStringUsingFactor(text, 1.5);
  EXPECT_THAT(fontsOf(text), ElementsAre(u"DejaVu Sans 19", u"(null)", u"DejaVu Sans Bold 30", u"No Such Italic 15",
                                         u"DejaVu Sans 1"));
  EXPECT_EQ(text.attributesAtIndex(5), unstyled);
  EXPECT_TRUE(isEqual(text.attribute(u"mark", 0), box(1)));
  // 0.5 points would be none, which leaves the run.
  scaleAttributedStringUsingFactor(text, 0.5);
  EXPECT_EQ(fontsOf(text).back(), u"DejaVu Sans 1");

  setFontSize(text, 18.5);
  EXPECT_THAT(fontsOf(text),
              ElementsAre(u"DejaVu Sans 18.5", u"(null)", u"DejaVu Sans 18.5", u"No Such 18.5", u"DejaVu Sans 18.5"));
  scaleAttributedStringUsingFactor(text, NaN);
  EXPECT_TRUE(std::isnan(as<NSFont>(text.attribute(NSFontAttributeName, 0))->pointSize()));
}

TEST(NSTextStorageExtensions, ARunThatComesToEqualTheNextIsScaledOnce) {
  NSTextStorage text;
  for (const double size : {12, 24}) text.appendString(u"ab", attributesOf(NSFont::fontWithFamily(u"A", 0, 5, size)));
  EXPECT_THAT(fontsOf(scaleAttributedStringUsingFactor(text, 2)), ElementsAre(u"A 24", u"A 48"));
}

}  // namespace
