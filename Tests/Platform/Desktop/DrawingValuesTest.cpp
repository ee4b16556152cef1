#include "Platform/Desktop/NSAffineTransform.h"
#include "Platform/Desktop/NSGradient.h"
#include "Platform/Desktop/NSIndexPath.h"
#include "Support/Testing.h"

namespace {

TEST(NSAffineTransform, LaterStepsComeFirst) {
  OSAffineTransform transform;
  transform.translateXBy(10, 20);
  transform.rotateByDegrees(90);
  transform.scaleXBy(2, 3);
  EXPECT_EQ(transform.description(), u"[0, 2, -3, 0, 10, 20]");
  EXPECT_EQ(transform.transformPoint({1, 1}), (CGPoint{7, 22}));
  EXPECT_EQ(transform.transformRect({1, 1, 2, 4}), CGRect(-5, 22, 12, 4));
  for (const double turn : {-360.0, 720.0, 0.0}) transform.rotateByDegrees(turn);
  EXPECT_EQ(transform.description(), u"[0, 2, -3, 0, 10, 20]");

  NSAffineTransform moved, scaled;
  moved.translateXBy(1, 0);
  scaled.scaleBy(5);
  NSAffineTransform both = moved;
  both.appendTransform(scaled);
  EXPECT_EQ(both.transformPoint({1, 1}), (CGPoint{10, 5}));
  both = moved;
  both.prependTransform(scaled);
  EXPECT_EQ(both.transformPoint({1, 1}), (CGPoint{6, 5}));
  EXPECT_TRUE(both.isEqual(*both.copy()) && !both.isEqual(moved));
}

TEST(NSAffineTransform, InversesLeadBack) {
  const NSAffineTransform there({2, 4, -1, 2, 8, 16});
  NSAffineTransform back = there;
  back.invert();
  EXPECT_EQ(back.transformPoint(there.transformPoint({3, 5})), (CGPoint{3, 5}));
  for (NSAffineTransform flat : {NSAffineTransform({1, 2, 2, 4, 0, 0}), NSAffineTransform({1, 0, 0, 1, NaN, 0}),
                                 NSAffineTransform({1e-200, 0, 0, 1e-200, 0, 0})})
    EXPECT_THROW(flat.invert(), std::invalid_argument);
}

TEST(NSGradient, ColoursFlow) {
  const NSColor red = NSColor::redColor(), blue = NSColor::blueColor(), white = NSColor::whiteColor();
  const OSGradient gradient(std::vector<NSColor>{red, blue, white});
  const auto at = [](const NSGradient& of, double location) {
    return of.interpolatedColorAtLocation(location).description();
  };
  EXPECT_EQ(at(gradient, 0.125), u"NSCalibratedRGBColorSpace 0.75 0 0.25 1");
  EXPECT_EQ(at(gradient, 0.75), u"NSCalibratedRGBColorSpace 0.5 0.5 1 1");
  EXPECT_EQ(at(gradient, 7), u"NSCalibratedRGBColorSpace 1 1 1 1");
  EXPECT_EQ(at(gradient, NaN), at(gradient, 0));
  // A hard edge: of two at one place the later one goes on.
  const NSGradient edge(std::vector<NSGradient::Stop>{{white, 9}, {red, 0.5}, {blue, 0.5}, {red, NaN}});
  EXPECT_EQ(at(edge, 0.25), red.description());
  EXPECT_EQ(at(edge, 0.5), blue.description());
  EXPECT_THROW(NSGradient(std::vector<NSColor>()), std::invalid_argument);
}

TEST(NSIndexPath, OrdersPlacesInATree) {
  const auto top = NSIndexPath::indexPathWithIndex(1);
  const auto below = top->indexPathByAddingIndex(0);
  EXPECT_EQ(below->description(), u"(1, 0)");
  EXPECT_THROW(below->indexAtPosition(2), std::out_of_range);
  EXPECT_TRUE(compare(top.get(), below.get()) < 0);
  EXPECT_TRUE(compare(below.get(), NSIndexPath::indexPathWithIndex(2).get()) < 0);
  EXPECT_TRUE(below->isEqual(NSIndexPath({1, 0})) && below->hash() == NSIndexPath({1, 0}).hash());
  EXPECT_EQ(NSIndexPath().description(), u"()");
}

}  // namespace
