#include <cstdlib>
#include <limits>

#include "Graphics/QNBadgeImage.h"
#include "Support/CapturedSystemLog.h"
#include "Support/FakeDesktop.h"
#include "Support/RecordingDesktop.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

class BadgeImage : public testing::Test {
 protected:
  void addPicture(const std::string& name, const char* contents) { myFolder.write("Resources/" + name, contents); }
  QNBadgeImage badge(TextView name) const {
    return QNBadgeImage::badgeWithImageName(name, NSBundle(myFolder.text("program")));
  }

  TemporaryFolder myFolder;
  std::shared_ptr<RecordingDesktop> myDesktop = RecordingDesktop::installed();
  CapturedSystemLog myLog;
};

TEST_F(BadgeImage, TakesTheNarrowestPictureThatHoldsTheDigits) {
  addPicture("B1.png", "20x21");
  addPicture("B2.tiff", "28x21");
  addPicture("B2.png", "99x99");
  addPicture("B3.png", "40x21");
  addPicture("B5.png", "80x21");
  const Text font = NSFont::boldSystemFontOfSize(11)->description();
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  const struct {
    std::int64_t number;
    const char* width;
    const char* digits;
  } rows[] = {{1, "28", "1 at 9,5"},
              {16, "40", "16 at 10,5"},
              {123456, "40", "123456 at -10,5"},
              {0, "20", ""},
              {-5, "20", ""},
              {most, "20", ""},
              {most - 1, "40", "-2 at 10,5"},
              {std::int64_t{7} << 32, "28", "0 at 9,5"}};
  const QNBadgeImage series = badge(u"B");
  EXPECT_THAT(myLog.take(), IsEmpty());
  for (const auto& row : rows) {
    EXPECT_EQ(series.imageWithNumber(row.number)->size(), (CGSize{std::atof(row.width), 21}));
    const std::string all = "{{0, 0}, {" + std::string(row.width) + ", 21}}";
    std::vector<std::string> drawn{"bitmap " + std::string(row.width) + " to " + all + " from " + all + " by 2 at 1"};
    if (*row.digits) drawn.push_back(row.digits + (" NSColor:NSCalibratedWhiteColorSpace 1 1 NSFont:" + utf8(font)));
    EXPECT_EQ(myDesktop->drawn, drawn) << row.number;
  }
}

TEST_F(BadgeImage, ASeriesWithoutPictures) {
  addPicture("Broken1.png", "no image");
  addPicture("Broken2.png", "20x20");
  for (const Text name : {u"None", u"Broken"}) {
    const QNBadgeImage empty = badge(name);
    EXPECT_THAT(myLog.takeWithoutPlaces(), ElementsAre(u"ERROR - Can't load badge image '" + name + u"1'."));
    EXPECT_EQ(empty.imageWithNumber(3), nullptr);
    EXPECT_THAT(myLog.takeWithoutPlaces(), ElementsAre(u"ERROR - No images available to create a badge."));
  }
}

TEST_F(BadgeImage, DragImagesKeepTheBaseUnderThePointer) {
  const auto imageOf = [](std::int64_t width, std::int64_t height) {
    auto image = std::make_shared<NSImage>();
    image->addRepresentation(bitmapOf(width, height));
    return image;
  };
  const auto base = imageOf(64, 64);
  FakeView flipped;
  flipped.myIsFlipped = true;
  const FakeView unflipped;
  const std::pair<const NSView*, CGPoint> rows[] = {
      {&flipped, {110, 105}}, {&unflipped, {110, 95}}, {nullptr, {110, 95}}};
  for (const auto& [view, moved] : rows) {
    CGPoint mouse{100, 100};
    EXPECT_EQ(QNBadgeImage::dragImageWithBaseImage(base, imageOf(30, 20), &mouse, view)->size(), (CGSize{84, 74}));
    EXPECT_EQ(mouse, moved);
    EXPECT_THAT(myDesktop->drawn, ElementsAre("bitmap 64 to {{0, 10}, {64, 64}} from {{0, 0}, {64, 64}} by 2 at 0.8",
                                              "bitmap 30 to {{54, 0}, {30, 20}} from {{0, 0}, {30, 20}} by 2 at 0.8"));
  }
  // Without a badge the overlap still counts; without anything, nothing is drawn.
  EXPECT_EQ(QNBadgeImage::dragImageWithBaseImage(base, nullptr, nullptr, nullptr)->size(), (CGSize{54, 54}));
  const auto none = QNBadgeImage::dragImageWithBaseImage(nullptr, nullptr, nullptr, nullptr);
  EXPECT_TRUE(none->size() == (CGSize{-10, -10}) && none->representations().empty());
}

}  // namespace
}  // namespace kelvane
