#include <QWidget>

#include "Extensions/NSBezierPath-QNExtensions.h"
#include "Extensions/NSGraphicsContext-QNExtensions.h"
#include "Extensions/NSImage-QNExtensions.h"
#include "Graphics/QNDebug.h"
#include "Platform/Desktop/NSView.h"
#include "Qt/Painting/Canvas.h"
#include "Qt/QtDesktop.h"
#include "Support/Testing.h"

namespace {

using enum NSCompositingOperation;
using enum QtPainting::YAxis;

NSBezierPath rectangle(const CGRect& rect) {
  NSBezierPath path;
  path.appendBezierPathWithRect(rect);
  return path;
}

void fill(const CGRect& rect) { rectangle(rect).fill(); }

Ref<NSImage> flag() { return imageOf({bitmapOfPixels({0xFFFF0000, 0xFFFF0000, 0xFF0000FF, 0xFF0000FF}, 2)}); }

std::vector<std::string> drawn(const std::function<void(NSGraphicsContext&)>& draw, QtPainting::YAxis yAxis = Upwards) {
  return Canvas(7, 5, 1, yAxis).draw(draw).rows();
}

// The picture of the gallery shows the other outlines.
TEST(QtGraphicsContext, StrokesInsideAndClears) {
  NSBezierPath path = rectangle({1, 1, 5, 3});
  EXPECT_THAT(drawn([&](auto&) { strokeInside(path); }),
              ElementsAre(".......", ".KKKKK.", ".K...K.", ".KKKKK.", "......."));
  EXPECT_EQ(path.lineWidth(), 2) << "doubled for good";
  // Inside and outline of what is debugged, then what is left of both.
  EXPECT_THAT(drawn([](auto& context) {
                QNDebug::drawRect({1, 1, 5, 3}, NSColor::redColor());
                contextClearRect(&context, {0, 0, 7, 4});
              }),
              ElementsAre("RRRRRRR", ".......", ".......", ".......", "......."));
}

TEST(QtGraphicsContext, StatesAreStacked) {
  EXPECT_THAT(drawn([](NSGraphicsContext& context) {
                context.restoreGraphicsState();  // there is none
                context.saveGraphicsState();
                context.clipToRect({0, 0, 7, 1});
                context.setFillColor(NSColor::greenColor());
                context.setAlpha(7);
                context.concatTransform(NSAffineTransform({1, 0, 0, 1, 2, 0}));
                context.saveGraphicsState();
                context.setAlpha(0.5);
                fill({0, 0, 1, 5});
                context.restoreGraphicsState();
                fill({1, 0, 1, 5});
                context.restoreGraphicsState();
                fill({0, 0, 1, 5});
                context.clipToPath(NSBezierPath());  // leaves nothing, as does a rectangle that is none
                fill({0, 0, 7, 5});
              }),
              ElementsAre("K......", "K......", "K......", "K......", "K.5G..."));
  // The painter is as it was, whatever has been left on the stack.
  QImage image(2, 2, QImage::Format_ARGB32_Premultiplied);
  QPainter painter(&image);
  painter.setOpacity(0.25);
  painter.translate(1, 0);
  {
    const QtPainting painting(painter, 2);
    EXPECT_EQ(NSGraphicsContext::currentContext(), &painting.context());
    painting.context().saveGraphicsState();
    painting.context().setAlpha(1);
    painting.context().clipToRect({0, 0, 0, 0});
  }
  EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
  EXPECT_TRUE(painter.opacity() == 0.25 && painter.transform().dx() == 1 && !painter.hasClipping());
}

TEST(QtGraphicsContext, PicturesStandUprightWhicheverWayYGoes) {
  const auto draw = [](auto& context) {
    flag()->drawInRect({1, 1, 2, 2}, CGRectZero, SourceOver, 1);
    // The upper half alone, twice as large.
    flag()->drawInRect({4, 0, 3, 2}, {0, 1, 2, 1}, SourceOver, 1);
    flag()->compositeToPoint({4, context.isFlipped() ? 5.0 : 3.0}, SourceOver);
  };
  EXPECT_THAT(drawn(draw), ElementsAre("....RR.", "....BB.", ".RR....", ".BB.RRR", "....RRR"));
  EXPECT_THAT(drawn(draw, Downwards), ElementsAre("....RRR", ".RR.RRR", ".BB....", "....RR.", "....BB."));
}

// What has no pixels draws itself: green with red above.
struct Drawing : NSImageRep {
  Drawing() : NSImageRep({2, 2}) {}
  void draw() const override {
    NSGraphicsContext::currentContext()->setColor(NSColor::greenColor());
    fill({0, 0, 2, 2});
    NSGraphicsContext::currentContext()->setColor(NSColor::redColor());
    fill({0, 1, 2, 7});
  }
};

TEST(QtGraphicsContext, WhatHasNoPixelsDrawsItself) {
  NSImage image;
  image.addRepresentation(std::make_shared<Drawing>());
  for (const auto axis : {Upwards, Downwards}) {
    EXPECT_THAT(drawn([&](auto&) { image.drawInRect({1, 1, 4, 3}, CGRectZero, SourceOver, 1); }, axis)[2], ".????..");
    const auto rows = drawn(
        [&](auto& context) {
          image.drawInRect({1, 1, 4, 2}, CGRectZero, SourceOver, 1);
          // Parts that overlap are faded as one.
          image.drawInRect({5, context.isFlipped() ? 1.0 : 2.0, 2, 2}, CGRectZero, Copy, 0.5);
        },
        axis);
    EXPECT_THAT(rows, axis == Upwards ? ElementsAre(".......", ".....55", ".RRRR55", ".GGGG..", ".......")
                                      : ElementsAre(".......", ".RRRR55", ".GGGG55", ".......", "......."));
  }
}

// Of a quarter of red, put in whole or at half of twice as much, with three quarters of green. On opaque ground, darker
// is what is there less what the source lacks of white.
TEST(QtGraphicsContext, OperationsMixPixels) {
  const std::tuple<NSCompositingOperation, std::uint32_t, std::uint32_t> rows[] = {
      {Clear, 0xC000C000, 0},
      {Copy, 0xC000C000, 0x40400000},
      {SourceOver, 0xC000C000, 0xD0409000},
      {SourceIn, 0xC000C000, 0x30300000},
      {SourceOut, 0xC000C000, 0x10100000},
      {SourceAtop, 0xC000C000, 0xC0309000},
      {DestinationOver, 0xC000C000, 0xD010C000},
      {DestinationIn, 0xC000C000, 0x30003000},
      {DestinationOut, 0xC000C000, 0x90009000},
      {DestinationAtop, 0xC000C000, 0x40103000},
      {XOR, 0xC000C000, 0xA0109000},
      {PlusDarker, 0xFFC0C010, 0xFFC08000},
      {PlusLighter, 0xE0C00000, 0xFFFF0000},
  };
  for (const auto& [operation, ground, mixed] : rows)
    for (const auto& [source, fraction] : {std::pair(0x40400000U, 1.0), std::pair(0x80800000U, 0.5)}) {
      Canvas canvas(1, 1);
      auto& result = *reinterpret_cast<std::uint32_t*>(canvas.image.bits());
      result = ground;
      canvas.draw([&](NSGraphicsContext& context) {
        context.drawRepresentation(*bitmapOf(1, 1, source), {0, 0, 1, 1}, {0, 0, 1, 1}, operation, fraction);
      });
      for (unsigned shift = 0; shift < 32; shift += 8)
        EXPECT_NEAR(result >> shift & 0xFFU, mixed >> shift & 0xFFU, 3.5)
            << static_cast<int>(operation) << " " << shift;
    }
}

TEST(QtGraphicsContext, WhatIsNoNumberDrawsNothing) {
  for (const double bad : {NaN, infinity, -infinity}) {
    const auto rows = drawn([bad](NSGraphicsContext& context) {
      const auto attributes = NSDictionary();
      for (const CGRect& rect :
           {CGRect(bad, 0, 5, 5), CGRect(0, bad, 5, 5), CGRect(0, 0, bad, 5), CGRect(0, 0, 5, bad)}) {
        flag()->drawInRect(rect, CGRectZero, SourceOver, 1);
        flag()->drawInRect({0, 0, 5, 5}, rect, SourceOver, 1);
        context.drawText(u"text", rect, 1, attributes);
        context.drawText(u"text", rect, 0, attributes);
        context.drawText(u"text", rect.origin == CGPoint{0, 0} ? CGPoint{bad, bad} : rect.origin, attributes);
        context.clearRect(rect);
      }
      NSBezierPath path = rectangle({0, 0, 5, 5});
      path.setLineWidth(bad);
      path.stroke();
      const GraphicsStateScope state(&context);
      context.concatTransform(NSAffineTransform({1, 0, 0, bad, 0, 0}));
      fill({0, 0, 5, 5});
      flag()->drawInRect({0, 0, 5, 5}, CGRectZero, SourceOver, 1);
    });
    EXPECT_THAT(rows, Each(".......")) << bad;
  }
  // Numbers that only are too large for the surface.
  EXPECT_THAT(drawn([](auto& context) {
                for (const double far : {1e5, 1e9, 1e18, 1e300}) {
                  NSBezierPath path = NSBezierPathExtensions::bezierPathWithPlateInRect({-far, -far, 2 * far, 2 * far});
                  for (const double width : {0.0, 0.5, 3.0, far}) {
                    path.setLineWidth(width);
                    strokeInside(path);
                  }
                  path.fill();
                  context.drawText(u"far", CGPoint{far, -far}, NSDictionary());
                  context.drawText(u"far", CGRect{-far, 0, 2 * far, far}, 1, NSDictionary());
                }
                context.clearRect({-1e9, -1e9, 2e9, 2e9});
                flag()->drawInRect({-1e12, -1e12, 2e12, 2e12}, CGRectZero, SourceOver, 1);
                flag()->drawInRect({0, 0, 5, 5}, {-1e12, -1e12, 2e12, 2e12}, SourceOver, 1);
                context.concatTransform(NSAffineTransform({0, 0, 0, 0, 0, 0}));
                fill({0, 0, 5, 5});
              }),
              testing::SizeIs(5));
  // Coordinates that have no place in the painter's.
  Canvas canvas(7, 5);
  {
    QPainter painter(&canvas.image);
    const QtPainting painting(painter, NaN);
    fill({0, 0, 5, 5});
  }
  EXPECT_THAT(canvas.rows(), Each("......."));
}

TEST(QtGraphicsContext, AlignsDownToDevicePixels) {
  const std::tuple<NSAffineTransform, CGPoint, CGPoint, CGRect, CGRect> rows[] = {
      {NSAffineTransform({1.25, 0, 0, 1.25, 0, 0}), {1, 2}, {0.8, 1.6}, {1, 2, 3.3, 4}, {0.8, 1.6, 3.2, 4}},
      // Flipped and turned: the point is rounded down on the device, the rectangle is what surrounds it there.
      {NSAffineTransform({1, 0, 0, -1, 0, 100}), {1.5, 20.25}, {1, 21}, {1.5, 20.25, 4.5, 9.5}, {1, 21, 4, 9}},
      {NSAffineTransform({0, 1, -1, 0, 0, 0}), {1.5, 2.25}, {1, 3}, {1.5, 2.25, 4.5, 9.5}, {1, 3, 4, 9}},
      {NSAffineTransform({1, 0, 0, 0, 0, 0}), {1.5, 2.5}, {1.5, 2.5}, {1.5, 2.5, 3.5, 4.5}, {1.5, 2.5, 3.5, 4.5}},
  };
  for (const auto& [transform, point, alignedPoint, rect, alignedRect] : rows)
    Canvas(9, 9).draw([&](NSGraphicsContext& context) {
      context.concatTransform(transform);
      EXPECT_EQ(alignPointToDeviceSpace(&context, point), alignedPoint);
      EXPECT_EQ(alignRectToDeviceSpace(&context, rect), alignedRect);
    });
  EXPECT_EQ(alignPointToDeviceSpace(nullptr, {0.5, 1.5}), (CGPoint{0.5, 1.5}));
  contextClearRect(nullptr, {0, 0, 1, 1});
  setAlpha(nullptr, 0.5);
}

TEST(QtGraphicsContext, AlignedPlacesAreWholeOnTheDevice) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> number(-3, 3);
  std::uniform_real_distribution<double> place(-500, 500);
  for (int round = 0; round < 1000; ++round) {
    const double scale = 1 + std::abs(std::round(number(random) * 4)) / 4;  // as screens have them
    Canvas(9, 9, scale, round % 4 < 2 ? Upwards : Downwards).draw([&](NSGraphicsContext& context) {
      if (round % 2 == 0)
        context.concatTransform(
            NSAffineTransform({number(random), number(random), number(random), number(random), place(random), 0}));
      const NSAffineTransform transform = context.userSpaceToDeviceSpaceTransform();
      const auto& m = transform.transformStruct();
      if (std::abs(m.m11 * m.m22 - m.m12 * m.m21) < 0.01) return;
      const CGPoint point{place(random), place(random)};
      const CGPoint before = transform.transformPoint(point);
      const CGPoint after = transform.transformPoint(alignPointToDeviceSpace(&context, point));
      EXPECT_NEAR(after.x, std::floor(before.x), 1e-8);
      EXPECT_NEAR(after.y, std::floor(before.y), 1e-8);
      const CGSize sizeBefore = transform.transformSize({point.x, point.y});
      const CGSize sizeAfter = transform.transformSize(alignSizeToDeviceSpace(&context, {point.x, point.y}));
      EXPECT_NEAR(sizeAfter.width, std::floor(sizeBefore.width), 1e-8);
      EXPECT_NEAR(sizeAfter.height, std::floor(sizeBefore.height), 1e-8);
    });
  }
}

// A widget that draws with the library, in its view's coordinates.
struct Sign : QWidget {
  void paintEvent(QPaintEvent*) override {
    const QtPainting painting(*this);
    painting.context().setColor(NSColor::whiteColor());
    fill({-9, -9, 18, 18});
    painting.context().setColor(NSColor::redColor());
    fill({1, 1, 2, 1});
    const CGPoint corner = alignPointToDeviceSpace(&painting.context(), {1.5, 1.5});
    EXPECT_EQ(corner, (CGPoint{1, painting.context().isFlipped() ? 2.0 : 1.0}));
  }
};

TEST(QtGraphicsContext, PaintsInWidgets) {
  Sign sign;
  sign.resize(7, 5);
  const auto rows = [&] {
    Canvas canvas(7, 5);
    canvas.image = sign.grab().toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    return canvas.rows();
  };
  EXPECT_THAT(rows(), ElementsAre("WWWWWWW", "WWWWWWW", "WWWWWWW", "WRRWWWW", "WWWWWWW"));
  viewFor(sign)->translateOriginToPoint({1, 1});
  EXPECT_THAT(rows(), ElementsAre("WWWWWWW", "WWWWWWW", "WWRRWWW", "WWWWWWW", "WWWWWWW"));
  setViewFlipped(sign, true);
  EXPECT_THAT(rows(), ElementsAre("WWWWWWW", "WWWWWWW", "WWRRWWW", "WWWWWWW", "WWWWWWW"));
  viewFor(sign)->translateOriginToPoint({-1, -1});
  EXPECT_THAT(rows(), ElementsAre("WWWWWWW", "WRRWWWW", "WWWWWWW", "WWWWWWW", "WWWWWWW"));
}

}  // namespace
