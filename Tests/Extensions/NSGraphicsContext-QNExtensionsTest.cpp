#include <cmath>
#include <random>

#include "Extensions/NSGraphicsContext-QNExtensions.h"
#include "Support/RecordingDesktop.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

NSAffineTransform transformOf(double m11, double m12, double m21, double m22, double tX, double tY) {
  return NSAffineTransform({m11, m12, m21, m22, tX, tY});
}

TEST(NSGraphicsContextExtensions, AlignsDownToDevicePixels) {
  const struct {
    NSAffineTransform transform;
    CGPoint point;
    CGPoint alignedPoint;
    CGRect rect;
    CGRect alignedRect;
  } rows[] = {
      {NSAffineTransform(), {-0.5, 4.8}, {-1, 4}, {0.25, 0.25, 10.5, 10.5}, {0, 0, 10, 10}},
      {transformOf(2, 0, 0, 2, 0, 0), {10.3, 4.8}, {10, 4.5}, {0.6, -0.1, 1.9, 0.4}, {0.5, -0.5, 1.5, 0}},
      {transformOf(1.25, 0, 0, 1.25, 0, 0), {1, 2}, {0.8, 1.6}, {1, 2, 3.3, 4}, {0.8, 1.6, 3.2, 4}},
      // Flipped and turned: the point is rounded down on the device, the rectangle is what surrounds it there.
      {transformOf(1, 0, 0, -1, 0, 100), {1.5, 20.25}, {1, 21}, {1.5, 20.25, 4.5, 9.5}, {1, 21, 4, 9}},
      {transformOf(0, 1, -1, 0, 0, 0), {1.5, 2.25}, {1, 3}, {1.5, 2.25, 4.5, 9.5}, {1, 3, 4, 9}},
      // What cannot be brought back stays.
      {transformOf(1, 0, 0, 0, 0, 0), {1.5, 2.5}, {1.5, 2.5}, {1.5, 2.5, 3.5, 4.5}, {1.5, 2.5, 3.5, 4.5}},
  };
  RecordingContext context;
  for (const auto& row : rows) {
    context.setTransform(row.transform);
    EXPECT_EQ(shown(alignPointToDeviceSpace(&context, row.point)), shown(row.alignedPoint));
    EXPECT_EQ(shown(alignRectToDeviceSpace(&context, row.rect)), shown(row.alignedRect));
  }
  context.setTransform(transformOf(1, 0, 0, -1, 0, 100));
  EXPECT_EQ(alignSizeToDeviceSpace(&context, {3.5, 3.5}), (CGSize{3, 4}));
}

TEST(NSGraphicsContextExtensions, AlignedPlacesAreWholeOnTheDevice) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> number(-3, 3);
  std::uniform_real_distribution<double> place(-500, 500);
  RecordingContext context;
  for (int round = 0; round < 2000; ++round) {
    const double scale = 1 + std::abs(std::round(number(random) * 4)) / 4;  // as screens have them
    const NSAffineTransform transform =
        round % 2 ? transformOf(scale, 0, 0, -scale, place(random), place(random))
                  : transformOf(number(random), number(random), number(random), number(random), place(random), 0);
    const auto& m = transform.transformStruct();
    if (std::abs(m.m11 * m.m22 - m.m12 * m.m21) < 0.01) continue;
    context.setTransform(transform);
    const CGPoint point{place(random), place(random)};
    const CGPoint before = transform.transformPoint(point);
    const CGPoint after = transform.transformPoint(alignPointToDeviceSpace(&context, point));
    EXPECT_NEAR(after.x, std::floor(before.x), 1e-8);
    EXPECT_NEAR(after.y, std::floor(before.y), 1e-8);
    const CGSize size{point.x, point.y};
    const CGSize sizeBefore = transform.transformSize(size);
    const CGSize sizeAfter = transform.transformSize(alignSizeToDeviceSpace(&context, size));
    EXPECT_NEAR(sizeAfter.width, std::floor(sizeBefore.width), 1e-8);
    EXPECT_NEAR(sizeAfter.height, std::floor(sizeBefore.height), 1e-8);
  }
}

TEST(NSGraphicsContextExtensions, WithoutAContextNothingChanges) {
  EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
  EXPECT_EQ(alignPointToDeviceSpace(nullptr, {0.5, 1.5}), (CGPoint{0.5, 1.5}));
  contextClearRect(nullptr, {0, 0, 1, 1});
  setAlpha(nullptr, 0.5);
  {
    RecordingContext context;
    NSGraphicsContext::setCurrentContext(&context);
    contextClearRect(&context, {0, 0, 1, 2});
    setAlpha(&context, 0.5);
    EXPECT_THAT(context.take(), ElementsAre("clear {{0, 0}, {1, 2}}", "alpha 0.5"));
  }
  EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
}

}  // namespace
}  // namespace kelvane
