#include <QWidget>
#include <array>

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

TEST(QtGraphicsContext, PixelsOfOutlines) {
  NSBezierPath path = rectangle({1, 1, 5, 3});
  const std::pair<std::function<void(NSGraphicsContext&)>, std::vector<std::string>> rows[] = {
      {[](auto&) {
         fill({1, 1, 3, 2});
       },
       {".......", ".......", ".KKK...", ".KKK...", "......."}},
      // Half of a stroke lies on either side of the outline, all of an inner one inside. Where its sides meet, what
      // covers a part of a pixel twice is taken for more of it.
      {[&](auto&) { path.stroke(); }, {"3555553", "5K555K5", "55...55", "5K555K5", "3555553"}},
      {[&](auto&) { strokeInside(path); }, {".......", ".KKKKK.", ".K...K.", ".KKKKK.", "......."}},
      {[&](auto&) {
         path = rectangle({1, 1, 5, 3});
         strokeInsideWithinRect(path, {0, 0, 3, 3});
       },
       {".......", ".......", ".K.....", ".KK....", "......."}},
      // Inside and outline of what is debugged, then what is left of both.
      {[](auto& context) {
         QNDebug::drawRect({1, 1, 5, 3}, NSColor::redColor());
         contextClearRect(&context, {0, 0, 7, 4});
       },
       {"RRRRRRR", ".......", ".......", ".......", "......."}},
  };
  for (const auto& [draw, pixels] : rows) EXPECT_EQ(drawn(draw), pixels);
  EXPECT_EQ(path.lineWidth(), 2) << "doubled for good";
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

TEST(QtGraphicsContext, OperationsFollowTheirFormulas) {
  using Formula = double (*)(double S, double s, double D, double d);
  const std::pair<NSCompositingOperation, Formula> rows[] = {
      {Clear, [](double, double, double, double) { return 0.0; }},
      {Copy, [](double S, double, double, double) { return S; }},
      {SourceOver, [](double S, double s, double D, double) { return S + D * (1 - s); }},
      {SourceIn, [](double S, double, double, double d) { return S * d; }},
      {SourceOut, [](double S, double, double, double d) { return S * (1 - d); }},
      {SourceAtop, [](double S, double s, double D, double d) { return S * d + D * (1 - s); }},
      {DestinationOver, [](double S, double, double D, double d) { return S * (1 - d) + D; }},
      {DestinationIn, [](double, double s, double D, double) { return D * s; }},
      {DestinationOut, [](double, double s, double D, double) { return D * (1 - s); }},
      {DestinationAtop, [](double S, double s, double D, double d) { return S * (1 - d) + D * s; }},
      {XOR, [](double S, double s, double D, double d) { return S * (1 - d) + D * (1 - s); }},
      // On opaque ground, with the source on white.
      {PlusDarker, [](double S, double s, double D, double) { return std::max(0.0, S + 1 - s + D - 1); }},
      {PlusLighter, [](double S, double, double D, double) { return std::min(1.0, S + D); }},
  };
  std::mt19937 random(5);
  const auto pixel = [&](std::uint32_t alpha) {
    auto made = alpha << 24U;
    for (const unsigned shift : {0U, 8U, 16U}) made |= static_cast<std::uint32_t>(random() % (alpha + 1)) << shift;
    return made;
  };
  const auto part = [](std::uint32_t color, unsigned at) { return (color >> at & 0xFFU) / 255.0; };
  for (const auto& [operation, formula] : rows)
    for (int round = 0; round < 40; ++round) {
      const std::uint32_t ground = pixel(operation == PlusDarker ? 255U : static_cast<std::uint32_t>(random() % 256));
      const std::uint32_t source = pixel(static_cast<std::uint32_t>(random() % 256));
      const double fraction = round % 2 ? 1 : 0.6;
      Canvas canvas(1, 1);
      auto& result = *reinterpret_cast<std::uint32_t*>(canvas.image.bits());
      result = ground;
      canvas.draw([&](NSGraphicsContext& context) {
        context.drawRepresentation(*bitmapOf(1, 1, source), {0, 0, 1, 1}, {0, 0, 1, 1}, operation, fraction);
      });
      for (unsigned shift = 0; shift < (operation == PlusDarker ? 24 : 32); shift += 8)
        EXPECT_NEAR(
            part(result, shift),
            formula(part(source, shift) * fraction, part(source, 24) * fraction, part(ground, shift), part(ground, 24)),
            3.5 / 255)
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
      {NSAffineTransform(), {-0.5, 4.8}, {-1, 4}, {0.25, 0.25, 10.5, 10.5}, {0, 0, 10, 10}},
      {NSAffineTransform({2, 0, 0, 2, 0, 0}), {10.3, 4.8}, {10, 4.5}, {0.6, -0.1, 1.9, 0.4}, {0.5, -0.5, 1.5, 0}},
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
