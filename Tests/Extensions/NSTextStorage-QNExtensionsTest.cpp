#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Extensions/NSTextStorage-QNExtensions.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSFont.h"
#include "Support/TextPrinting.h"

namespace kelvane {
namespace {

using testing::ElementsAre;

Ref<NSDictionary> attributesOf(const NSFont& font) {
  return NSDictionary::dictionaryWithEntries({{Text(NSFontAttributeName), box(font)}, {u"mark", box(1)}});
}

std::vector<Text> fontsOf(const NSTextStorage& text) {
  std::vector<Text> fonts;
  for (const AttributeRun run : text.runs()) fonts.push_back(description(run.attributes->objectForKey(u"NSFont")));
  return fonts;
}

TEST(NSTextStorageExtensions, ScalesFacesAndSetsPlainOnes) {
  const auto plain = NSFont::fontWithName(u"DejaVu Sans", 13);
  const auto bold = NSFont::fontWithName(u"DejaVu Sans Bold", 20);
  ASSERT_TRUE(plain && bold);
  NSTextStorage text;
  const auto unstyled = NSDictionary::dictionaryWithEntries({{u"mark", box(2)}});
  text.appendString(u"plain", attributesOf(*plain));
  text.appendString(u"none", unstyled);
  text.appendString(u"bold", attributesOf(*bold));
  text.appendString(u"lost", attributesOf(NSFont::fontWithFamily(u"No Such", NSItalicFontMask, 5, 10)));
  text.appendString(u"small", attributesOf(plain->fontWithSize(1)));
  text.appendString(u"odd", NSDictionary::dictionaryWithEntries({{Text(NSFontAttributeName), box(u"DejaVu Sans")}}));
  const NSTextStorage before = text;

  EXPECT_EQ(&scaleAttributedStringUsingFactor(text, 0), &text);
  EXPECT_EQ(&setFontSize(text, 0), &text);
  EXPECT_TRUE(text.isEqual(before));

  scaleAttributedStringUsingFactor(text, 1.5);
  EXPECT_THAT(fontsOf(text), ElementsAre(u"DejaVu Sans 19", u"(null)", u"DejaVu Sans Bold 30", u"No Such Italic 15",
                                         u"DejaVu Sans 1", u"DejaVu Sans"));
  EXPECT_EQ(text.attributesAtIndex(5), unstyled);
  EXPECT_TRUE(isEqual(text.attribute(u"mark", 0), box(1)));
  // 0.5 points would be none, which leaves the run.
  scaleAttributedStringUsingFactor(text, 0.5);
  EXPECT_THAT(fontsOf(text), ElementsAre(u"DejaVu Sans 9", u"(null)", u"DejaVu Sans Bold 15", u"No Such Italic 7",
                                         u"DejaVu Sans 1", u"DejaVu Sans"));
  scaleAttributedStringUsingFactor(text, -1);
  EXPECT_EQ(fontsOf(text).front(), u"DejaVu Sans 9");

  setFontSize(text, 18.5);
  EXPECT_THAT(fontsOf(text), ElementsAre(u"DejaVu Sans 18.5", u"(null)", u"DejaVu Sans 18.5", u"No Such 18.5",
                                         u"DejaVu Sans 18.5", u"DejaVu Sans"));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(std::isnan(
      as<NSFont>(scaleAttributedStringUsingFactor(text, nan).attribute(NSFontAttributeName, 0))->pointSize()));
  NSTextStorage empty;
  EXPECT_EQ(setFontSize(scaleAttributedStringUsingFactor(empty, 2), 2).length(), 0U);
}

TEST(NSTextStorageExtensions, ARunThatComesToEqualTheNextIsScaledOnce) {
  const auto font = NSFont::fontWithName(u"DejaVu Sans", 12);
  ASSERT_TRUE(font);
  NSTextStorage text;
  text.appendString(u"ab", attributesOf(*font));
  text.appendString(u"cd", attributesOf(font->fontWithSize(24)));
  EXPECT_THAT(fontsOf(scaleAttributedStringUsingFactor(text, 2)), ElementsAre(u"DejaVu Sans 24", u"DejaVu Sans 48"));
  // And equal ones become one.
  EXPECT_THAT(fontsOf(setFontSize(text, 7)), ElementsAre(u"DejaVu Sans 7"));
}

}  // namespace
}  // namespace kelvane
