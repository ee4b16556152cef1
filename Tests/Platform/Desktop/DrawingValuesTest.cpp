#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include "Platform/Desktop/NSAffineTransform.h"
#include "Platform/Desktop/NSGradient.h"
#include "Platform/Desktop/NSIndexPath.h"
#include "Platform/Desktop/NSShadow.h"
#include "Support/TextPrinting.h"

namespace kelvane {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(NSAffineTransform, LaterStepsComeFirst) {
  OSAffineTransform transform;
  transform.translateXBy(10, 20);
  transform.rotateByDegrees(90);
  transform.scaleXBy(2, 3);
  EXPECT_EQ(transform.description(), u"[0, 2, -3, 0, 10, 20]");
  EXPECT_EQ(transform.transformPoint({1, 1}), (CGPoint{7, 22}));
  EXPECT_EQ(transform.transformSize({1, 1}), (CGSize{-3, 2}));
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
  for (const int quarter : {1, 2, 3, -1}) {
    NSAffineTransform exact, close;
    exact.rotateByDegrees(quarter * 90);
    close.rotateByRadians(quarter * std::numbers::pi / 2);
    const CGPoint a = exact.transformPoint({3, 5}), b = close.transformPoint({3, 5});
    EXPECT_NEAR(a.x, b.x, 1e-12);
    EXPECT_NEAR(a.y, b.y, 1e-12);
    EXPECT_EQ(std::abs(a.x) + std::abs(a.y), 8);
  }
}

TEST(NSAffineTransform, InversesLeadBack) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> number(-10, 10);
  for (int round = 0; round < 1000; ++round) {
    NSAffineTransform there(
        {number(random), number(random), number(random), number(random), number(random), number(random)});
    NSAffineTransform back = there;
    back.invert();
    const CGPoint point{number(random), number(random)};
    const CGPoint returned = back.transformPoint(there.transformPoint(point));
    EXPECT_NEAR(returned.x, point.x, 1e-6);
    EXPECT_NEAR(returned.y, point.y, 1e-6);
  }
  for (const NSAffineTransformStruct& flat :
       {NSAffineTransformStruct{1, 2, 2, 4, 0, 0}, NSAffineTransformStruct{0, 0, 0, 0, 1, 1},
        NSAffineTransformStruct{1, 0, 0, 1, nan, 0}, NSAffineTransformStruct{1e-200, 0, 0, 1e-200, 0, 0}}) {
    NSAffineTransform transform(flat);
    EXPECT_THROW(transform.invert(), std::invalid_argument);
    EXPECT_EQ(transform.transformStruct().m11, flat.m11);
  }
}

TEST(NSGradient, ColoursFlow) {
  const NSColor red = NSColor::redColor(), blue = NSColor::blueColor(), white = NSColor::whiteColor();
  const OSGradient gradient(std::vector<NSColor>{red, blue, white});
  EXPECT_EQ(gradient.colorStops()[1].location, 0.5);
  const auto at = [](const NSGradient& of, double location) {
    return of.interpolatedColorAtLocation(location).description();
  };
  EXPECT_EQ(at(gradient, 0.125), u"NSCalibratedRGBColorSpace 0.75 0 0.25 1");
  EXPECT_EQ(at(gradient, 0.75), u"NSCalibratedRGBColorSpace 0.5 0.5 1 1");
  EXPECT_EQ(at(gradient, 7), u"NSCalibratedRGBColorSpace 1 1 1 1");
  EXPECT_EQ(at(gradient, nan), at(gradient, 0));
  // A hard edge: of two at one place the later one goes on.
  const NSGradient edge(std::vector<NSGradient::Stop>{{white, 9}, {red, 0.5}, {blue, 0.5}, {red, nan}});
  EXPECT_EQ(at(edge, 0.25), red.description());
  EXPECT_EQ(at(edge, 0.5), blue.description());
  EXPECT_EQ(at(NSGradient(std::vector<NSColor>{blue}), 1), blue.description());
  EXPECT_THROW(NSGradient(std::vector<NSColor>()), std::invalid_argument);
}

TEST(NSShadow, IsAValue) {
  OSShadow shadow;
  shadow.setShadowOffset({1, 2});
  EXPECT_TRUE(shadow.isEqual(*shadow.copy()) && shadow.hash() == shadow.copy()->hash());
  NSShadow other = shadow;
  other.setShadowColor(NSColor::redColor());
  EXPECT_FALSE(shadow.isEqual(other));
}

TEST(NSIndexPath, OrdersPlacesInATree) {
  const auto top = NSIndexPath::indexPathWithIndex(1);
  const auto below = top->indexPathByAddingIndex(0);
  EXPECT_EQ(below->description(), u"(1, 0)");
  EXPECT_EQ(below->indexAtPosition(1), 0U);
  EXPECT_THROW(below->indexAtPosition(2), std::out_of_range);
  EXPECT_TRUE(compare(top.get(), below.get()) < 0);
  EXPECT_TRUE(compare(below.get(), NSIndexPath::indexPathWithIndex(2).get()) < 0);
  EXPECT_TRUE(below->isEqual(NSIndexPath({1, 0})) && below->hash() == NSIndexPath({1, 0}).hash());
  EXPECT_EQ(NSIndexPath().description(), u"()");
}

}  // namespace
}  // namespace kelvane
