#include <QWidget>

#include "Graphics/QNBadgeImage.h"
#include "Platform/Foundation/NSBundle.h"
#include "Qt/Painting/Canvas.h"
#include "Qt/QtDesktop.h"
#include "Support/Testing.h"

namespace {

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
  const auto base = imageOf({bitmapOf(64, 64, 0xFF0000FF)});
  const auto image = QNBadgeImage::dragImageWithBaseImage(base, 3, nullptr, nullptr);
  ASSERT_EQ(image->size(), (CGSize{64 + 24 - 10, 64 + 24 - 10}));
  Canvas canvas(78, 78);
  canvas.draw([&](auto&) { image->compositeToPoint({0, 0}, NSCompositingOperation::Copy); });
  // The base at the upper left, nothing beside it, the badge at the lower right on nothing and on the base.
  const std::pair<QPoint, int> alphas[] = {{{5, 5}, 204}, {{70, 5}, 0}, {{5, 70}, 0}, {{66, 72}, 204}, {{60, 60}, 245}};
  for (const auto& [place, alpha] : alphas) EXPECT_NEAR(qAlpha(canvas.image.pixel(place)), alpha, 4) << place.x();
  EXPECT_GT(qBlue(canvas.image.pixel(5, 5)), 200);
  EXPECT_GT(qRed(canvas.image.pixel(66, 72)), 150);
}

TEST(BadgePictures, TheNarrowestThatHoldsTheDigits) {
  using enum NSBitmapImageFileType;
  CapturedSystemLog log;
  const TemporaryFolder folder;
  const auto add = [&](const std::string& name, std::int64_t width, NSBitmapImageFileType type) {
    const auto data = bitmapOf(width, 24, 0xFF000000)->representationUsingType(type, nullptr);
    folder.write("Resources/" + name, {reinterpret_cast<const char*>(data->bytes().data()), data->length()});
  };
  add("B1.png", 22, PNG);
  add("B2.tiff", 30, TIFF);
  add("B2.png", 99, PNG);
  add("B3.png", 40, PNG);
  add("B5.png", 80, PNG);
  add("Broken2.png", 20, PNG);
  folder.write("Resources/Broken1.png", "no image");
  const NSBundle bundle(folder.text("program"));
  const QNBadgeImage series = QNBadgeImage::badgeWithImageName(u"B", bundle);
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  const std::pair<std::int64_t, double> rows[] = {{1, 22}, {16, 30}, {123, 40},  {123456, 40},
                                                  {0, 22}, {-5, 22}, {most, 22}, {most - 1, 30}};
  for (const auto& [number, width] : rows)
    EXPECT_EQ(series.imageWithNumber(number)->size(), (CGSize{width, 24})) << number;
  // Digits are those of the lower 32 bits.
  EXPECT_EQ(drawn(*series.imageWithNumber((std::int64_t{7} << 32) + 16)), drawn(*series.imageWithNumber(16)));
  EXPECT_NE(drawn(*series.imageWithNumber(17)), drawn(*series.imageWithNumber(16)));
  EXPECT_THAT(log.take(), IsEmpty());
  for (const Text name : {u"None", u"Broken"}) {
    const QNBadgeImage empty = QNBadgeImage::badgeWithImageName(name, bundle);
    EXPECT_EQ(empty.imageWithNumber(3), nullptr);
    EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"ERROR - Can't load badge image '" + name + u"1'.",
                                                     u"ERROR - No images available to create a badge."));
  }
}

TEST(BadgePictures, DragImagesKeepTheBaseUnderThePointer) {
  const auto base = imageOf({bitmapOf(64, 64)});
  QWidget flipped, unflipped;
  setViewFlipped(flipped, true);
  const std::pair<const NSView*, CGPoint> rows[] = {
      {viewFor(flipped).get(), {110, 105}}, {viewFor(unflipped).get(), {110, 95}}, {nullptr, {110, 95}}};
  for (const auto& [view, moved] : rows) {
    CGPoint mouse{100, 100};
    const auto image = QNBadgeImage::dragImageWithBaseImage(base, imageOf({bitmapOf(30, 20)}), &mouse, view);
    EXPECT_EQ(image->size(), (CGSize{84, 74}));
    EXPECT_EQ(mouse, moved);
  }
  EXPECT_EQ(QNBadgeImage::dragImageWithBaseImage(base, nullptr, nullptr, nullptr)->size(), (CGSize{54, 54}));
  const auto none = QNBadgeImage::dragImageWithBaseImage(nullptr, nullptr, nullptr, nullptr);
  EXPECT_TRUE(none->size() == (CGSize{-10, -10}) && none->representations().empty());
}

}  // namespace
