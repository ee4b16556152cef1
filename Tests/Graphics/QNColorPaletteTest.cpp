#include "Extensions/NSColor-QNExtensions.h"
#include "Graphics/QNColorPalette.h"
#include "Support/Testing.h"

namespace {

NSColor rgb(double red, double green, double blue) { return NSColor::colorWithCalibratedRed(red, green, blue, 1); }

// How a definition is read is judged by the plain way of ColourFuzz.
TEST(QNColorPalette, ReadsNamesAndDefinitions) {
  const std::tuple<TextView, double, double, double, double> rows[] = {
      {u"FFF", 15, 15, 15, 15},
      {u"#FF80Oo", 255, 128, 0, 255},
      {u"bad", 11, 10, 13, 15},
      {u" ", 0, 0, 0, 15},
      {u"Navy", 0, 0, 128, 255},
      {u" Navy", 0, 0, 0, 15},
      {u"REBECCAPURPLE", 0x66, 0x33, 0x99, 255},
      {u"lightGoldenrodYellow", 0xFA, 0xFA, 0xD2, 255},
      {u"blac\x212A", 0, 0, 0, 255},
      {u"grey", 128, 128, 128, 255},
  };
  for (const auto& [text, red, green, blue, most] : rows) {
    const auto color = QNColorPalette::colorForString(text);
    ASSERT_TRUE(color);
    EXPECT_TRUE(color->isEqual(rgb(red / most, green / most, blue / most)))
        << testing::PrintToString(text) << " gave " << testing::PrintToString(color->description());
  }
  EXPECT_FALSE(QNColorPalette::colorForString(u""));
  EXPECT_FALSE(NSColorExtensions::colorWithHtmlDefinition(std::nullopt));
  EXPECT_TRUE(colorForHexString(u"navy").isEqual(rgb(0, 0, 0)));
}

TEST(QNColorPalette, WritesDefinitions) {
  const std::tuple<NSColor, TextView> rows[] = {
      {rgb(1, 128.0 / 255, 0), u"#ff8000"},
      // Halves go to the even step.
      {rgb(0.5 / 255, 1.5 / 255, 2.5 / 255), u"#000202"},
      {rgb(-1, 2, NaN), u"#00ff00"},
      {rgb(-infinity, infinity, 0.999), u"#00ffff"},
      {NSColor::colorWithDeviceWhite(0.2, 0.5), u"#333333"},
      {NSColor::colorWithDeviceRed(0.2, 0.4, 0.6, 0), u"#336699"},
  };
  for (const auto& [color, text] : rows) EXPECT_EQ(htmlDefinition(color), text);
  EXPECT_EQ(QNColorPalette::stringForColor(nullptr), std::nullopt);
  EXPECT_EQ(QNColorPalette::stringForColor(&std::get<NSColor>(rows[0])), u"#ff8000");
}

TEST(QNColorPalette, GammaThereAndBack) {
  EXPECT_DOUBLE_EQ(QNColorPalette::colorForString(u"#008000", 2.2)->greenComponent(), std::pow(128.0 / 255, 2.2));
  EXPECT_DOUBLE_EQ(QNColorPalette::colorForString(u"green", 2.2)->greenComponent(), std::pow(128.0 / 255, 2.2));
  for (const double gamma : {1.0, 1.8, 2.2, 0.0, -3.0, NaN}) {
    for (int step = 0; step < 256; ++step) {
      const Text text = QNColorPalette::stringForColor(rgb(step / 255.0, 0, 1), gamma);
      const auto color = QNColorPalette::colorForString(text, gamma);
      // Half a step of the definition is that much more of the component.
      ASSERT_NEAR(color->redComponent(), step / 255.0, 1.11 / 255.0) << gamma;
      ASSERT_EQ(color->blueComponent(), 1);
    }
  }
}

TEST(QNColorPalette, ContrastingColor) {
  EXPECT_TRUE(contrastingColor(rgb(0.5, 0.5, 0.5)).isEqual(NSColor::blackColor()));
  EXPECT_TRUE(contrastingColor(NSColor::colorWithDeviceWhite(0.49, 1)).isEqual(NSColor::whiteColor()));
  EXPECT_TRUE(contrastingColor(rgb(0, NaN, 0)).isEqual(NSColor::blackColor()));
}

TEST(NSColor, SpacesAndEquality) {
  const NSColor gray = NSColor::grayColor();
  const auto same = gray.colorUsingColorSpace(NSColor::Space::CalibratedRGB);
  EXPECT_EQ(same->description(), u"NSCalibratedRGBColorSpace 0.5 0.5 0.5 1");
  EXPECT_EQ(gray.description(), u"NSCalibratedWhiteColorSpace 0.5 1");
  EXPECT_FALSE(same->isEqual(gray));
  EXPECT_TRUE(gray.copy()->isEqual(gray) && gray.copy()->hash() == gray.hash());
  EXPECT_EQ(rgb(1, 0, 0).colorUsingColorSpace(NSColor::Space::DeviceWhite)->description(),
            u"NSDeviceWhiteColorSpace 0.3 1");
  EXPECT_FALSE(rgb(0, 0, NaN).colorUsingColorSpace(NSColor::Space::CalibratedRGB));
}

}  // namespace
