#include "Extensions/NSFont-QNExtensions.h"
#include "Platform/Foundation/NSFont.h"
#include "Support/Testing.h"

namespace {

TEST(NSFont, FindsWhatTheMachineHas) {
  const auto plain = NSFont::fontWithName(u"dejavu sans", 12);
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->fontName(), u"DejaVu Sans");
  EXPECT_EQ(plain->weight(), 5);
  EXPECT_EQ(plain->traits(), 0U);
  for (const TextView name : {u"DejaVu Sans Bold", u"DejaVuSans-Bold"}) {
    const auto bold = NSFont::fontWithName(name, 13.5);
    ASSERT_TRUE(bold) << name.size();
    EXPECT_EQ(bold->description(), u"DejaVu Sans Bold 13.5");
    EXPECT_EQ(bold->familyName(), u"DejaVu Sans");
    EXPECT_TRUE(bold->isBold() && !bold->isItalic() && bold->weight() == 9);
    EXPECT_TRUE(bold->isEqual(NSFont::fontWithFamily(u"DejaVu Sans", NSBoldFontMask, 5, 13.5)));
    EXPECT_TRUE(bold->fontWithSize(12).isEqual(*NSFont::fontWithName(bold->fontName(), 12)));
    EXPECT_FALSE(bold->isEqual(*plain));
  }
  for (const TextView name : {TextView(u"No Such Font"), TextView(), TextView(u"DejaVu Sans\0", 12)})
    EXPECT_FALSE(NSFont::fontWithName(name, 12)) << name.size();
  ASSERT_TRUE(NSFont::systemFontOfSize(NSFont::smallSystemFontSize()));
  EXPECT_EQ(NSFont::systemFontOfSize(11)->pointSize(), 11);
}

TEST(NSFont, NamesFontsThatTheMachineLacks) {
  const std::tuple<NSFontTraitMask, int, TextView, int> rows[] = {
      {0, 5, u"Gutenberg Textura", 5},
      {NSBoldFontMask, 5, u"Gutenberg Textura Bold", 9},
      {NSItalicFontMask, 3, u"Gutenberg Textura Italic", 3},
      {NSItalicFontMask | NSBoldFontMask | 64, 11, u"Gutenberg Textura Bold Italic", 11},
  };
  for (const auto& [traits, weight, name, itsWeight] : rows) {
    const NSFont font = NSFont::fontWithFamily(u"Gutenberg Textura", traits, weight, 14);
    EXPECT_TRUE(isEqual(font.valueForKey(u"fontName"), box(name)));
    EXPECT_EQ(font.familyName(), u"Gutenberg Textura");
    EXPECT_EQ(font.traits(), traits & 3U);
    EXPECT_EQ(font.weight(), itsWeight);
    EXPECT_TRUE(font.isEqual(*font.copy()) && font.hash() == font.copy()->hash());
  }
}

using namespace NSFontExtensions;

TEST(NSFontExtensions, FallsBackStepByStep) {
  CapturedSystemLog log;
  const NSFont system = *NSFont::systemFontOfSize(14);
  EXPECT_TRUE(fontWithName(system.fontName(), 14, std::nullopt)->isEqual(*NSFont::fontWithName(system.fontName(), 14)));
  EXPECT_THAT(log.takeWithoutPlaces(), IsEmpty());

  const NSFont other = system.fontWithSize(9);
  EXPECT_TRUE(fontWithName(u"No Such", 14, other)->isEqual(other));
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"WARN - Can't find font 'No Such'. Fallback to default font."));

  EXPECT_TRUE(fontWithName(u"", 14, std::nullopt)->isEqual(system));
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"WARN - Can't find font ''. Fallback to default font.",
                                                   u"ERROR - Can't find default font. Fallback to system font."));

  const auto fourth = fontWithNameAlternatives({u"No A", u"No B", u"No C", system.fontName(), u"No D"}, 14);
  EXPECT_EQ(fourth->fontName(), system.fontName());
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"ERROR - Can't find font 'No A'. Will try next alternative",
                                                   u"ERROR - Can't find font 'No B'. Will try next alternative",
                                                   u"ERROR - Can't find font 'No C'. Will try next alternative"));

  EXPECT_TRUE(fontWithNameAlternatives({}, 14)->isEqual(system));
  EXPECT_THAT(log.takeWithoutPlaces(),
              ElementsAre(u"ERROR - Can't find font from alternatives. Will fallback to system font."));
}

TEST(NSFontExtensions, AMachineWithoutFonts) {
  const TemporaryFolder folder;
  folder.write("fonts.conf", "<fontconfig/>");
  ::setenv("FONTCONFIG_FILE", folder.path("fonts.conf").c_str(), 1);
  CapturedSystemLog log;
  EXPECT_FALSE(fontWithName(u"A", 14, std::nullopt));
  EXPECT_FALSE(fontWithNameAlternatives({}, 14));
  EXPECT_FALSE(NSFont::boldSystemFontOfSize(14) || NSFont::fontWithName(u"DejaVu Sans", 12));
  EXPECT_EQ(NSFont::fontWithFamily(u"DejaVu Sans", NSBoldFontMask, 5, 12).fontName(), u"DejaVu Sans Bold");
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(testing::_, testing::_, u"FATAL - Can't find system font.",
                                                   testing::_, u"FATAL - Can't find system font."));
}

}  // namespace
