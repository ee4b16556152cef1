#include <QWidget>

#include "Graphics/QNBadgeImage.h"
#include "Platform/Foundation/NSBundle.h"
#include "Qt/Painting/Canvas.h"
#include "Qt/QtDesktop.h"
#include "Support/Testing.h"

namespace {

QImage drawn(const NSImage& image) {
  Canvas canvas(static_cast<int>(image.size().width), 24);
  canvas.draw([&](auto&) { image.compositeToPoint({0, 0}, NSCompositingOperation::Copy); });
  return canvas.image;
}

// Where the digits stand, and how the parts of a drag image are put together, is held by the picture of the gallery.
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
  // Whoever counts nothing, or does not know, gets no digits.
  for (const std::int64_t number : {std::int64_t{-5}, most})
    EXPECT_EQ(drawn(*series.imageWithNumber(number)), drawn(*series.imageWithNumber(0))) << number;
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
