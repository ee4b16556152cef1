#include <numbers>

#include "Platform/Desktop/NSAffineTransform.h"
#include "Platform/Desktop/NSBezierPath.h"
#include "Platform/Desktop/NSGradient.h"
#include "Platform/Desktop/NSIndexPath.h"
#include "Platform/Desktop/NSShadow.h"
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
  both.rotateByRadians(std::numbers::pi / 2);
  EXPECT_NEAR(both.transformPoint({1, 1}).x, -4, 1e-9);
  EXPECT_NEAR(both.transformPoint({1, 1}).y, 5, 1e-9);
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

// What is equal has the same hash, copies are equal, and each part counts.
TEST(DrawingValues, AreEqualByTheirParts) {
  const auto shadow = [](const CGSize& offset, double blur, const NSColor& color) {
    auto made = std::make_shared<NSShadow>();
    made->setShadowOffset(offset);
    made->setShadowBlurRadius(blur);
    made->setShadowColor(color);
    return made;
  };
  const auto path = [](double width, const std::function<void(NSBezierPath&)>& add) {
    auto made = std::make_shared<NSBezierPath>();
    made->setLineWidth(width);
    made->moveToPoint({1, 2});
    if (add) add(*made);
    return made;
  };
  const auto arc = [](double end) {
    return [end](NSBezierPath& to) { to.appendBezierPathWithArcWithCenter({1, 2}, 3, 0, end); };
  };
  const auto corner = [](double radius) {
    return [radius](NSBezierPath& to) { to.appendBezierPathWithArcFromPoint({1, 2}, {3, 4}, radius); };
  };
  const auto curve = [](const CGPoint& control) {
    return [control](NSBezierPath& to) { to.curveToPoint({1, 2}, {3, 4}, control); };
  };
  const auto makeAll = [&] {
    return std::vector<Ref<NSObject>>{shadow({1, 2}, 3, NSColor::redColor()),
                                      shadow({1, 3}, 3, NSColor::redColor()),
                                      shadow({1, 2}, 4, NSColor::redColor()),
                                      shadow({1, 2}, 3, NSColor::blueColor()),
                                      path(1, nullptr),
                                      path(2, nullptr),
                                      path(1, arc(90)),
                                      path(1, arc(91)),
                                      path(1, corner(5)),
                                      path(1, corner(6)),
                                      path(1, curve({5, 6})),
                                      path(1, curve({5, 7})),
                                      path(1, &NSBezierPath::closePath),
                                      std::make_shared<NSAffineTransform>(),
                                      std::make_shared<NSAffineTransform>(NSAffineTransformStruct{1, 0, 0, 1, 0, 9})};
  };
  const auto all = makeAll(), again = makeAll();
  for (std::size_t i = 0; i < all.size(); ++i) {
    EXPECT_EQ(all[i]->hash(), again[i]->hash()) << i;
    EXPECT_TRUE(all[i]->copy()->isEqual(*all[i])) << i;
    for (std::size_t k = 0; k < all.size(); ++k) EXPECT_EQ(all[i]->isEqual(*again[k]), i == k) << i << " and " << k;
  }
}

TEST(NSBezierPath, TakesInOthersAndItself) {
  NSBezierPath path, other;
  path.moveToPoint({1, 2});
  other.lineToPoint({3, 4});
  path.appendBezierPath(other);
  path.appendBezierPath(path);
  EXPECT_THAT(path.elements(), ElementsAre(PathMove{{1, 2}}, PathLine{{3, 4}}, PathMove{{1, 2}}, PathLine{{3, 4}}));
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
