#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Desktop/NSStringDrawing.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSFont.h"
#include "Qt/Painting/Canvas.h"
#include "Support/Testing.h"

namespace {

using enum QtPainting::YAxis;

Ref<NSDictionary> in(const NSFont& font, const NSColor& color = NSColor::blackColor(), int underline = 0) {
  return dictionaryOf({{Text(NSFontAttributeName), box(font)},
                       {Text(NSForegroundColorAttributeName), box(color)},
                       {Text(NSUnderlineStyleAttributeName), box(underline)}});
}

NSFont sans(double size) { return NSFont::fontWithName(u"DejaVu Sans", size).value(); }

// The rectangle around all ink, in user space.
CGRect inkOf(const QImage& image) {
  QRect around;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (qAlpha(image.pixel(x, y)) > 60) around |= QRect(x, y, 1, 1);
  const double bottom = image.height() - around.bottom() - 1;
  return {double(around.left()), bottom, double(around.width()), double(around.height())};
}

TEST(TextDrawing, MeasuresByFontAndLines) {
  const auto ten = in(sans(10));
  const CGSize line = sizeWithAttributes(u"Hamburg", ten);
  EXPECT_NEAR(line.height, 11.64, 0.5);
  // The same at every size, and for each line end that there is.
  EXPECT_NEAR(sizeWithAttributes(u"Hamburg", in(sans(55))).width / line.width, 5.5, 0.02);
  EXPECT_NEAR(sizeWithAttributes(u"Ham\r\nburg\u2028\n", ten).height, 4 * line.height, 0.01);
  EXPECT_EQ(sizeWithAttributes(u"a\nHamburg\nb", ten).width, line.width);
  EXPECT_NEAR(sizeWithAttributes(u"Hamburg  ", ten).width - line.width, 2 * sizeWithAttributes(u" ", ten).width, 0.01);
  EXPECT_NEAR(sizeWithAttributes(u"\u05d0\u05d1 \xD83D \U0001F600", ten).height, line.height, 4);
  EXPECT_EQ(sizeWithAttributes(u"", ten), (CGSize{0, line.height}));
  // Without a font, that of the system in its ordinary size.
  EXPECT_EQ(sizeWithAttributes(u"x", nullptr), sizeWithAttributes(u"x", in(NSFont::systemFontOfSize(13).value())));
  for (const double size : {0.0, -4.0, std::nan("")})
    EXPECT_EQ(sizeWithAttributes(u"x", in(sans(size))), sizeWithAttributes(u"x", in(sans(13))));
  EXPECT_EQ(fitTextInRect(u"Hamburg", {0, 0, line.width, 1}, ten), u"Hamburg");
  EXPECT_EQ(fitTextInRect(u"Hamburg", {0, 0, line.width - 1, 1}, ten), u"Hamb...");
}

TEST(TextDrawing, FindsTheFaceOfAFont) {
  const auto widthIn = [](const NSFont& font) { return sizeWithAttributes(u"Hamburg", in(font)).width; };
  const double plain = widthIn(sans(20));
  EXPECT_GT(widthIn(*NSFont::boldSystemFontOfSize(20)), plain + 2);
  EXPECT_NEAR(widthIn(*NSFont::fontWithName(u"DejaVu Sans Mono", 20)), 7 * 12.04, 0.2);
  EXPECT_GT(widthIn(NSFont::fontWithFamily(u"No Such Family", NSBoldFontMask, 9, 20)), 20);
}

TEST(TextDrawing, StandsUprightOnItsPoint) {
  const auto attributes = in(sans(20));
  const double height = sizeWithAttributes(u"L", attributes).height;
  const QImage upwards = Canvas(40, 40).draw([&](auto&) { drawAtPoint(u"L", {10, 5}, attributes); }).image;
  // It stands above what letters have below the line.
  const CGRect ink = inkOf(upwards);
  EXPECT_NEAR(ink.origin.x, 12, 1);
  EXPECT_NEAR(ink.origin.y, 5 + 0.236 * 20, 1);
  EXPECT_NEAR(ink.size.height, 0.729 * 20, 1);
  Canvas downwards(40, 40, 1, Downwards);
  downwards.draw([&](auto&) { drawAtPoint(u"L", {10, 35 - height}, attributes); });
  EXPECT_EQ(downwards.image, upwards);
  // Without lines to be made, the base line begins at the point.
  for (const auto axis : {Upwards, Downwards}) {
    const CGRect based = inkOf(Canvas(40, 40, 1, axis)
                                   .draw([&](auto&) {
                                     drawWithRect(u"L\nL", {10, 20, 1, 1}, 0, attributes);
                                   })
                                   .image);
    EXPECT_NEAR(based.origin.y, 20, 1);
    EXPECT_NEAR(based.size.height, 0.729 * 20, 1);
  }
}

TEST(TextDrawing, FillsARectangleFromItsTop) {
  const auto attributes = in(sans(10), NSColor::redColor(), 1);
  const double line = sizeWithAttributes(u"m", attributes).height;
  for (const auto axis : {Upwards, Downwards}) {
    const double y = axis == Upwards ? 60 - 5 - 30 : 5;
    const QImage image = Canvas(60, 60, 1, axis)
                             .draw([&](auto&) {
                               drawInRect(u"mmm mmm mmm mmm mmm", {5, y, 40, 30}, attributes);
                             })
                             .image;
    const CGRect ink = inkOf(image);
    // Two letters' words and a half a line, cut off at the lower edge.
    EXPECT_NEAR(CGRectGetMaxY(ink), 60 - 5 - 0.27 * line - 1, 2);
    EXPECT_GE(ink.origin.y, 60 - 5 - 30);
    EXPECT_LT(ink.origin.y, 60 - 5 - 30 + 4);
    EXPECT_LE(CGRectGetMaxX(ink), 45);
    // All of it is red, and underlined: a row of nothing else.
    int underlined = 0;
    for (int row = 0; row < 60; ++row) {
      int count = 0;
      for (int x = 0; x < 60; ++x) {
        EXPECT_EQ(qGreen(image.pixel(x, row)) + qBlue(image.pixel(x, row)), 0);
        count += qAlpha(image.pixel(x, row)) > 100;
      }
      underlined += count > 26;
    }
    EXPECT_GE(underlined, 2);
  }
}

TEST(TextDrawing, ChiselsInTwoPasses) {
  const CGRect rect{1, 2, 30, 15};
  const CGRect above{1, 3, 30, 15};
  const auto plain = in(sans(20), NSColor::redColor());
  const auto edge = in(sans(20), NSColor::colorWithCalibratedWhite(0, 0.9F));
  const auto withoutFont = [](const NSColor& color) {
    return dictionaryOf({{Text(NSForegroundColorAttributeName), box(color)}});
  };
  const auto picture = [](auto draw) { return Canvas(40, 30).draw([&](auto&) { draw(); }).image; };
  EXPECT_EQ(picture([&] { drawChiseledInRect(u"high", rect, plain); }),
            picture([&] { drawInRect(u"high", above, edge), drawInRect(u"high", rect, plain); }));
  EXPECT_EQ(picture([&] { drawChiseledWithRect(u"high", rect, 0, nullptr); }), picture([&] {
              drawWithRect(u"high", above, 0, withoutFont(NSColor::colorWithCalibratedWhite(0, 0.9F)));
              drawWithRect(u"high", rect, 0, withoutFont(NSColor::blackColor()));
            }));
  EXPECT_TRUE(isEqual(plain->objectForKey(NSForegroundColorAttributeName), box(NSColor::redColor())));
}

}  // namespace
