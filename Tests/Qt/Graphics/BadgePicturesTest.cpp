#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Graphics/QNBadgeImage.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Qt/Painting/Canvas.h"
#include "Support/CapturedSystemLog.h"

namespace kelvane {
namespace {

using testing::IsEmpty;

NSImage seriesPicture(TextView name, int number) {
  const auto path =
      NSBundle::libraryBundle().pathForResource(Text(name) + textFromUTF8(std::to_string(number)), u"png");
  const auto image = path ? NSImage::imageWithContentsOfFile(*path) : nullptr;
  return image ? *image : NSImage();
}

TEST(BadgePictures, GrowInWidthAndAreSharpAtScale2) {
  for (const TextView series : {u"QNDragBadge", u"QNGreenBadge"}) {
    double width = 0;
    for (int number = 1; number <= 4; ++number) {
      const NSImage picture = seriesPicture(series, number);
      ASSERT_EQ(picture.representations().size(), 1U);
      EXPECT_GT(picture.size().width, width);
      width = picture.size().width;
      EXPECT_EQ(picture.size().height, 24);
      // Whole pixels at each of the usual scales.
      EXPECT_EQ(std::fmod(width, 4), 0);
      EXPECT_EQ(as<NSBitmapImageRep>(picture.representations()[0])->pixelsWide(), 2 * width);
    }
    EXPECT_TRUE(seriesPicture(series, 5).representations().empty());
  }
}

QImage drawn(const NSImage& image) {
  Canvas canvas(static_cast<int>(image.size().width), 24);
  canvas.draw([&](auto&) { image.compositeToPoint({0, 0}, NSCompositingOperation::Copy); });
  return canvas.image;
}

// The rectangle around all that differs.
QRect difference(const QImage& a, const QImage& b) {
  QRect around;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x)
      if (qGreen(a.pixel(x, y)) - qGreen(b.pixel(x, y)) > 60) around |= QRect(x, y, 1, 1);
  return around;
}

TEST(BadgePictures, HoldTheirDigitsInTheMiddle) {
  CapturedSystemLog log;
  const auto drag = QNBadgeImage::badgeWithDragImages();
  const auto green = QNBadgeImage::badgeWithGreenImages();
  constexpr auto nobodyKnows = std::numeric_limits<std::int64_t>::max();
  const std::pair<std::int64_t, int> rows[] = {{0, 1},  {-3, 1},  {nobodyKnows, 1}, {7, 1},
                                               {42, 2}, {365, 3}, {1984, 4},        {31415, 4}};
  for (const auto& [number, picture] : rows) {
    for (const auto& [badge, series] : {std::pair(&drag, u"QNDragBadge"), std::pair(&green, u"QNGreenBadge")}) {
      const auto image = badge->imageWithNumber(number);
      ASSERT_NE(image, nullptr);
      const NSImage background = seriesPicture(series, picture);
      ASSERT_EQ(image->size(), background.size()) << number;
      const QRect digits = difference(drawn(*image), drawn(background));
      const bool hasDigits = number > 0 && number != nobodyKnows;
      EXPECT_EQ(!digits.isEmpty(), hasDigits) << number;
      if (!hasDigits) continue;
      EXPECT_NEAR(digits.center().x() + 0.5, image->size().width / 2, 1.5) << number;
      // The plate lies above its shadow. Green digits are the larger ones.
      EXPECT_NEAR(digits.center().y() + 0.5, 11, 1.5) << number;
      EXPECT_NEAR(digits.height(), badge == &green ? 11 : 9, 1.5) << number;
    }
  }
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST(BadgePictures, ADragImageKeepsItsPartsALittleTransparent) {
  auto base = std::make_shared<NSImage>();
  base->addRepresentation(bitmapOfPixels(std::vector<std::uint32_t>(64 * 64, 0xFF0000FF), 64));
  const auto image = QNBadgeImage::dragImageWithBaseImage(base, 3, nullptr, nullptr);
  ASSERT_EQ(image->size(), (CGSize{64 + 24 - 10, 64 + 24 - 10}));
  Canvas canvas(78, 78);
  canvas.draw([&](auto&) { image->compositeToPoint({0, 0}, NSCompositingOperation::Copy); });
  EXPECT_NEAR(qAlpha(canvas.image.pixel(5, 5)), 204, 1);  // upper left
  EXPECT_EQ(qAlpha(canvas.image.pixel(5, 5)), qBlue(canvas.image.pixel(5, 5)));
  EXPECT_EQ(qAlpha(canvas.image.pixel(70, 5)), 0);
  EXPECT_EQ(qAlpha(canvas.image.pixel(5, 70)), 0);
  // The badge at the lower right, on nothing and on the base.
  EXPECT_NEAR(qAlpha(canvas.image.pixel(66, 72)), 204, 3);
  EXPECT_GT(qRed(canvas.image.pixel(66, 72)), 150);
  EXPECT_NEAR(qAlpha(canvas.image.pixel(60, 60)), 245, 4);
}

}  // namespace
}  // namespace kelvane
