#include "Extensions/NSImage-QNExtensions.h"
#include "Platform/Desktop/Desktop.h"
#include "Qt/Painting/Canvas.h"
#include "Support/Testing.h"

namespace {

using enum NSCompositingOperation;

Ref<NSImageRep> drawing(const CGSize& size) { return std::make_shared<NSImageRep>(size); }

std::string text(const NSData& data) { return {data.bytes().begin(), data.bytes().end()}; }

TEST(NSImage, FindsTheFirstOfExactlyTheSize) {
  const auto large = bitmapOf(32, 32);
  const auto image = imageOf({bitmapOf(16, 16), large, bitmapOf(32, 32), drawing({8, 8}), drawing({NaN, 8})});
  EXPECT_EQ(representationForSize(*image, {32, 32}), large);
  EXPECT_EQ(representationForSize(*image, {16, 16.5}), nullptr);
  const auto extracted = extractImageWithRepresentationOfSize(*image, {32, 32});
  ASSERT_EQ(extracted->representations().size(), 1U);
  EXPECT_NE(extracted->representations()[0], large);
  EXPECT_EQ(extracted->size(), (CGSize{32, 32}));
  EXPECT_EQ(extractImageWithRepresentationOfSize(*image, {8, 8}), nullptr);
}

TEST(NSImage, NormalSizeIsAPointPerPixel) {
  const auto bitmap = bitmapOf(60, 60);
  bitmap->setSize({14, 14});
  const auto image = imageOf({drawing({10, 10}), bitmap});
  image->setSize({14, 14});
  EXPECT_EQ(&normalizeSize(*image), image.get());
  EXPECT_EQ(image->size(), (CGSize{60, 60}));
  EXPECT_EQ(bitmap->size(), (CGSize{60, 60}));
}

TEST(NSImage, JPEGOfTheFirstBitmap) {
  const TemporaryFolder folder;
  const Text path = folder.text("a.jpg");
  CapturedSystemLog log;
  const auto image = imageOf({drawing({9, 9}), bitmapOf(3, 2), bitmapOf(4, 4)});
  writeJPGRepresentationToFile(*image, path);
  EXPECT_EQ(NSImage::imageWithContentsOfFile(path)->size(), (CGSize{3, 2}));
  const std::string written = folder.bytes("a.jpg");
  EXPECT_EQ(written, text(*JPGRepresentationWithCompression(*image, 0.8F)));
  writeJPGRepresentationToFile(*image, u"/no/such/folder/a.jpg");
  EXPECT_THAT(log.take(), IsEmpty());

  writeJPGRepresentationToFile(*imageOf({drawing({9, 9})}), path);
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"ERROR - Can't find bitmap representation of image.",
                                                   u"ERROR - Can't make image into data."));
  EXPECT_EQ(JPGRepresentationWithCompression(NSImage({5, 5}), 1), nullptr);
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"ERROR - No image representations on image."));
  const auto desktop = Desktop::install(nullptr);
  writeJPGRepresentationToFile(*image, path);
  Desktop::install(desktop);
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"ERROR - Can't make image into data."));
  EXPECT_EQ(folder.bytes("a.jpg"), written);
  EXPECT_THAT(folder.names(), ElementsAre("a.jpg"));
}

TEST(NSImage, LoadsFromABundle) {
  const TemporaryFolder folder;
  const NSBundle bundle(folder.text("program"));
  folder.write("Resources/good.png",
               text(*bitmapOf(7, 5)->representationUsingType(NSBitmapImageFileType::PNG, nullptr)));
  folder.write("Resources/bad.png", "no image");
  using NSImageExtensions::imageNamed;
  EXPECT_EQ(imageNamed(u"good", u"png", &bundle)->size(), (CGSize{7, 5}));
  for (const std::optional<TextView> name : {std::optional<TextView>(u"bad"), {u"missing"}, {}})
    EXPECT_EQ(imageNamed(name, u"png", &bundle), nullptr);
  EXPECT_EQ(imageNamed(u"good.png", std::nullopt, &bundle), nullptr);
}

TEST(NSImage, DrawsTheRepresentationThatIsSharpEnough) {
  const auto image = imageOf({bitmapOf(20, 10), bitmapOf(80, 40), bitmapOf(40, 20), drawing({20, 10})});
  const std::pair<double, std::int64_t> rows[] = {{0.5, 20}, {1, 20}, {1.25, 40}, {2, 40}, {3, 80}, {9, 80}};
  for (const auto& [scale, width] : rows)
    EXPECT_EQ(as<NSBitmapImageRep>(image->representationForScale(scale))->pixelsWide(), width) << scale;
  // A part of the image is the same part of each representation.
  std::vector<std::uint32_t> greenOverBlue(8, 0xFF00FF00);
  greenOverBlue.resize(16, 0xFF0000FF);
  const auto fine = imageOf({bitmapOf(2, 2), bitmapOfPixels(std::move(greenOverBlue), 4)});
  Canvas canvas(2, 1, 2);
  canvas.draw([&](auto&) { fine->drawInRect({0, 0, 2, 1}, {0, 1, 2, 1}, SourceOver, 1); });
  EXPECT_THAT(canvas.rows(), ElementsAre("GGGG", "GGGG"));
}

TEST(NSImage, DrawsInTheMiddle) {
  Canvas canvas(7, 5);
  canvas.image.fill(Qt::black);
  canvas.draw([&](auto&) { drawCenteredInRect(*imageOf({bitmapOf(8, 4)}), {0, 0, 6, 5}, {3, 2}, Copy, 0.5); });
  EXPECT_THAT(canvas.rows(), ElementsAre("KKKKKKK", "KK555KK", "KK555KK", "KKKKKKK", "KKKKKKK"));
}

// The frame's far edge is where the picture begins: in a flipped view it is the lower one.
TEST(NSImage, CompositesByWayOfAPicture) {
  CapturedSystemLog log;
  const auto image = imageOf({bitmapOfPixels({0xFFFF0000, 0xFFFF0000, 0xFF0000FF, 0xFF0000FF}, 2)});
  const auto composited = [&](const CGRect& frame, QtPainting::YAxis axis) {
    return Canvas(7, 5, 1, axis).draw([&](auto&) { compositScaledImageToFrame(*image, frame, nullptr); }).rows();
  };
  EXPECT_THAT(composited({1, 1, 2, 2}, QtPainting::YAxis::Upwards),
              ElementsAre(".RR....", ".BB....", ".......", ".......", "......."));
  EXPECT_THAT(composited({1, 1, 4, 4}, QtPainting::YAxis::Downwards),
              ElementsAre(".......", ".RRRR..", ".????..", ".????..", ".BBBB.."));
  const auto desktop = Desktop::install(nullptr);
  compositScaledImageToFrame(*image, {10, 20, 40, 30}, nullptr);
  Desktop::install(desktop);
  EXPECT_THAT(log.take(), ElementsAre(u"START", u"STOP", u"START", u"STOP", u"START", u"STOP"));
}

}  // namespace
