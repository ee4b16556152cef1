
#include "Extensions/NSImage-QNExtensions.h"
#include "Support/CapturedSystemLog.h"
#include "Support/RecordingDesktop.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

using enum NSCompositingOperation;

Ref<NSImage> imageOf(std::initializer_list<Ref<NSImageRep>> representations) {
  auto image = std::make_shared<NSImage>();
  for (const auto& representation : representations) image->addRepresentation(representation);
  return image;
}

Ref<NSImageRep> drawing(const CGSize& size) { return std::make_shared<NSImageRep>(size); }

TEST(NSImageExtensions, FindsTheFirstOfExactlyTheSize) {
  const auto small = bitmapOf(16, 16);
  const auto large = bitmapOf(32, 32);
  const auto image = imageOf({small, large, bitmapOf(32, 32), drawing({8, 8}), drawing({nan, 8})});
  EXPECT_EQ(representationForSize(*image, {32, 32}), large);
  EXPECT_EQ(representationForSize(*image, {16, 16.5}), nullptr);

  const auto extracted = extractImageWithRepresentationOfSize(*image, {32, 32});
  ASSERT_EQ(extracted->representations().size(), 1U);
  EXPECT_NE(extracted->representations()[0], large);
  EXPECT_EQ(extracted->size(), (CGSize{32, 32}));
  // There is such a one, but it cannot be copied.
  EXPECT_EQ(extractImageWithRepresentationOfSize(*image, {8, 8}), nullptr);
}

TEST(NSImageExtensions, NormalSizeIsAPointPerPixel) {
  const auto bitmap = bitmapOf(600, 600);
  bitmap->setSize({144, 144});
  const auto image = imageOf({drawing({10, 10}), bitmap});
  image->setSize({144, 144});
  EXPECT_EQ(&normalizeSize(*image), image.get());
  EXPECT_EQ(image->size(), (CGSize{600, 600}));
  EXPECT_EQ(bitmap->size(), (CGSize{600, 600}));
}

TEST(NSImageExtensions, JPEGOfTheFirstBitmap) {
  const auto desktop = RecordingDesktop::installed();
  const TemporaryFolder folder;
  const Text path = folder.text("a.jpg");
  CapturedSystemLog log;
  const auto image = imageOf({drawing({9, 9}), bitmapOf(3, 2), bitmapOf(4, 4)});
  writeJPGRepresentationToFile(*image, path);
  EXPECT_EQ(desktop->encoded, "3 type 3 NSImageCompressionFactor:0.800000011920929 NSImageProgressive:0");
  EXPECT_EQ(folder.bytes("a.jpg"), "JPG");
  writeJPGRepresentationToFile(*image, u"/no/such/folder/a.jpg");
  EXPECT_THAT(log.take(), IsEmpty());

  // Nothing is written over what is there.
  writeJPGRepresentationToFile(*imageOf({drawing({9, 9})}), path);
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"ERROR - Can't find bitmap representation of image.",
                                                   u"ERROR - Can't make image into data."));
  EXPECT_EQ(JPGRepresentationWithCompression(NSImage({5, 5}), 1), nullptr);
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"ERROR - No image representations on image."));
  Desktop::install(nullptr);
  writeJPGRepresentationToFile(*image, path);
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"ERROR - Can't make image into data."));
  EXPECT_EQ(folder.bytes("a.jpg"), "JPG");
  EXPECT_THAT(folder.names(), ElementsAre("a.jpg"));
}

TEST(NSImageExtensions, LoadsFromABundle) {
  const auto desktop = RecordingDesktop::installed();
  const TemporaryFolder folder;
  const NSBundle bundle(folder.text("program"));
  folder.write("Resources/good.png", "7x5");
  folder.write("Resources/bad.png", "no image");
  using NSImageExtensions::imageNamed;
  EXPECT_EQ(imageNamed(u"good", u"png", &bundle)->size(), (CGSize{7, 5}));
  EXPECT_EQ(imageNamed(u"bad", u"png", &bundle), nullptr);
  EXPECT_EQ(imageNamed(u"missing", u"png", &bundle), nullptr);
  EXPECT_EQ(imageNamed(std::nullopt, u"png", &bundle), nullptr);
  EXPECT_EQ(imageNamed(u"good.png", std::nullopt, &bundle), nullptr);
}

TEST(NSImageExtensions, DrawsInTheMiddle) {
  const auto image = imageOf({bitmapOf(8, 4)});
  RecordingContext context;
  const CurrentContextScope scope(&context);
  drawCenteredInRect(*image, {0, 0, 101, 101}, {50, 50}, Copy, 0.25);
  EXPECT_THAT(context.take(), ElementsAre("bitmap 8 to {{26, 26}, {50, 50}} from {{0, 0}, {8, 4}} by 1 at 0.25"));
}

TEST(NSImageExtensions, CompositesByWayOfAPicture) {
  CapturedSystemLog log;
  const auto image = imageOf({bitmapOf(8, 4)});
  compositScaledImageToFrame(*image, {10, 20, 40, 30}, nullptr);
  const auto desktop = RecordingDesktop::installed();
  for (const bool flipped : {false, true}) {
    RecordingContext context(flipped);
    const CurrentContextScope scope(&context);
    compositScaledImageToFrame(*image, {10, 20, 40, 30}, nullptr);
    EXPECT_THAT(desktop->drawn, ElementsAre("bitmap 8 to {{0, 0}, {40, 30}} from {{0, 0}, {8, 4}} by 1 at 1"));
    EXPECT_THAT(context.take(), ElementsAre("bitmap 40 to {{10, " + std::string(flipped ? "20" : "50") +
                                            "}, {40, 30}} from {{0, 0}, {40, 30}} by 2 at 1"));
  }
  EXPECT_THAT(log.take(), ElementsAre(u"START", u"STOP", u"START", u"STOP", u"START", u"STOP"));
}

TEST(NSImage, DrawsTheRepresentationThatIsSharpEnough) {
  const auto image = imageOf({bitmapOf(20, 10), bitmapOf(80, 40), bitmapOf(40, 20), drawing({20, 10})});
  const std::pair<double, std::int64_t> rows[] = {{0.5, 20}, {1, 20}, {1.25, 40}, {2, 40}, {3, 80}, {9, 80}};
  for (const auto& [scale, width] : rows)
    EXPECT_EQ(as<NSBitmapImageRep>(image->representationForScale(scale))->pixelsWide(), width) << scale;
  // A part of the image is the same part of each representation.
  RecordingContext context;
  const CurrentContextScope scope(&context);
  context.setTransform(NSAffineTransform({2, 0, 0, 2, 0, 0}));
  image->drawInRect({0, 0, 10, 5}, {10, 5, 10, 5}, SourceOver, 1);
  EXPECT_THAT(context.take(), ElementsAre("bitmap 40 to {{0, 0}, {10, 5}} from {{20, 10}, {20, 10}} by 2 at 1"));
}

}  // namespace
}  // namespace kelvane
