#include <cmath>
#include <limits>

#include "Extensions/NSTextStorage-QNExtensions.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSFont.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

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
  scaleAttributedStringUsingFactor(text, std::numeric_limits<double>::quiet_NaN());
  EXPECT_TRUE(std::isnan(as<NSFont>(text.attribute(NSFontAttributeName, 0))->pointSize()));
}

TEST(NSTextStorageExtensions, ARunThatComesToEqualTheNextIsScaledOnce) {
  NSTextStorage text;
  for (const double size : {12, 24}) text.appendString(u"ab", attributesOf(NSFont::fontWithFamily(u"A", 0, 5, size)));
  EXPECT_THAT(fontsOf(scaleAttributedStringUsingFactor(text, 2)), ElementsAre(u"A 24", u"A 48"));
}

}  // namespace
}  // namespace kelvane
