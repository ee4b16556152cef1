#include <cstdlib>
#include <memory>
#include <string>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSFont.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace kelvane {
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
  const struct {
    NSFontTraitMask traits;
    int weight;
    TextView name;
    int itsWeight;
  } rows[] = {
      {0, 5, u"Gutenberg Textura", 5},
      {NSBoldFontMask, 5, u"Gutenberg Textura Bold", 9},
      {NSItalicFontMask, 3, u"Gutenberg Textura Italic", 3},
      {NSItalicFontMask | NSBoldFontMask | 64, 11, u"Gutenberg Textura Bold Italic", 11},
  };
  for (const auto& row : rows) {
    const NSFont font = NSFont::fontWithFamily(u"Gutenberg Textura", row.traits, row.weight, 14);
    EXPECT_EQ(font.fontName(), row.name);
    EXPECT_EQ(font.familyName(), u"Gutenberg Textura");
    EXPECT_EQ(font.traits(), row.traits & 3U);
    EXPECT_EQ(font.weight(), row.itsWeight);
    const NSFont again = NSFont::fontWithFamily(u"Gutenberg Textura", row.traits, row.weight, 14);
    EXPECT_TRUE(font.isEqual(again) && font.hash() == again.hash());
    EXPECT_TRUE(isEqual(font.copy()->valueForKey(u"fontName"), box(row.name)));
  }
}

TEST(NSFont, AMachineWithoutFonts) {
  const TemporaryFolder folder;
  folder.write("fonts.conf", "<fontconfig/>");
  ::setenv("FONTCONFIG_FILE", folder.path("fonts.conf").c_str(), 1);
  EXPECT_FALSE(NSFont::systemFontOfSize(12));
  EXPECT_FALSE(NSFont::fontWithName(u"DejaVu Sans", 12));
  EXPECT_EQ(NSFont::fontWithFamily(u"DejaVu Sans", NSBoldFontMask, 5, 12).fontName(), u"DejaVu Sans Bold");
}

}  // namespace
}  // namespace kelvane
