#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>

#include "Graphics/QNBadgeImage.h"
#include "Platform/Desktop/NSView.h"
#include "Support/CapturedSystemLog.h"
#include "Support/RecordingDesktop.h"
#include "Support/TemporaryFolder.h"
#include "Support/TextPrinting.h"

namespace kelvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BadgeImage : public testing::Test {
 protected:
  BadgeImage() { std::filesystem::create_directory(myFolder.path("Resources")); }

  void addPicture(const std::string& name, const char* contents) {
    std::ofstream(myFolder.path("Resources/" + name)) << contents;
  }
  QNBadgeImage badge(TextView name) const {
    return QNBadgeImage::badgeWithImageName(name, NSBundle(textFromFileSystem(myFolder.path("program"))));
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
  const auto font = NSFont::boldSystemFontOfSize(11);
  ASSERT_TRUE(font);
  const struct {
    std::int64_t number;
    int width;
    const char* digits;
    int x;
  } rows[] = {
      {1, 28, "1", 9},
      {16, 40, "16", 10},
      {123, 40, "123", 5},
      {123456, 40, "123456", -10},
      {0, 20, "", 0},
      {-5, 20, "", 0},
      {std::numeric_limits<std::int64_t>::max(), 20, "", 0},
      {std::numeric_limits<std::int64_t>::max() - 1, 40, "-2", 10},
      {std::int64_t{7} << 32, 28, "0", 9},
  };
  const QNBadgeImage series = badge(u"B");
  EXPECT_THAT(myLog.take(), IsEmpty());
  for (const auto& row : rows) {
    EXPECT_EQ(series.imageWithNumber(row.number)->size(), (CGSize{static_cast<double>(row.width), 21}));
    const std::string width = std::to_string(row.width);
    const std::string all = "{{0, 0}, {" + width + ", 21}}";
    std::vector<std::string> drawn{"bitmap " + width + " to " + all + " from " + all + " by 2 at 1"};
    // ceil((21 - 12) / 2) = 5
    if (*row.digits)
      drawn.push_back(row.digits + (" at " + std::to_string(row.x)) + ",5 NSColor:NSCalibratedWhiteColorSpace 1 1" +
                      " NSFont:" + utf8(font->description()));
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

struct DraggedView : NSView {
  explicit DraggedView(bool flipped) : myFlipped(flipped) {}
  CGRect frame() const override { return {}; }
  void setFrame(const CGRect&) override {}
  void setFrameSize(const CGSize&) override {}
  CGRect bounds() const override { return {}; }
  bool isFlipped() const override { return myFlipped; }
  Ref<NSWindow> window() const override { return nullptr; }
  Ref<NSView> superview() const override { return nullptr; }
  std::vector<Ref<NSView>> subviews() const override { return {}; }
  void removeFromSuperview() override {}
  CGRect convertRect(const CGRect& rect, const Ref<NSView>&) const override { return rect; }
  void translateOriginToPoint(const CGPoint&) override {}
  bool myFlipped;
};

TEST_F(BadgeImage, DragImagesKeepTheBaseUnderThePointer) {
  const auto imageOf = [](std::int64_t width, std::int64_t height) {
    auto image = std::make_shared<NSImage>();
    image->addRepresentation(bitmapOf(width, height));
    return image;
  };
  const auto base = imageOf(64, 64);
  const auto badge = imageOf(30, 20);
  const DraggedView flipped(true);
  const DraggedView unflipped(false);
  const std::tuple<const NSView*, CGPoint> rows[] = {
      {&flipped, {110, 105}}, {&unflipped, {110, 95}}, {nullptr, {110, 95}}};
  for (const auto& [view, moved] : rows) {
    CGPoint mouse{100, 100};
    EXPECT_EQ(QNBadgeImage::dragImageWithBaseImage(base, badge, &mouse, view)->size(), (CGSize{84, 74}));
    EXPECT_EQ(mouse, moved);
    EXPECT_THAT(myDesktop->drawn, ElementsAre("bitmap 64 to {{0, 10}, {64, 64}} from {{0, 0}, {64, 64}} by 2 at 0.8",
                                              "bitmap 30 to {{54, 0}, {30, 20}} from {{0, 0}, {30, 20}} by 2 at 0.8"));
  }
  // Without a badge it still loses the 10 points of the overlap; without anything, nothing is drawn.
  EXPECT_EQ(QNBadgeImage::dragImageWithBaseImage(base, nullptr, nullptr, nullptr)->size(), (CGSize{54, 54}));
  const auto none = QNBadgeImage::dragImageWithBaseImage(nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(none->size(), (CGSize{-10, -10}));
  EXPECT_TRUE(none->representations().empty());
}

}  // namespace
}  // namespace kelvane
