#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QWidget>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "Extensions/NSBezierPath-QNExtensions.h"
#include "Extensions/NSGraphicsContext-QNExtensions.h"
#include "Extensions/NSImage-QNExtensions.h"
#include "Graphics/QNDebug.h"
#include "Platform/Desktop/NSView.h"
#include "Qt/Painting/Canvas.h"
#include "Qt/QtDesktop.h"

namespace kelvane {
namespace {

using testing::Each;
using testing::ElementsAre;
using enum NSCompositingOperation;
using enum QtPainting::YAxis;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

NSBezierPath rectangle(const CGRect& rect) {
  NSBezierPath path;
  path.appendBezierPathWithRect(rect);
  return path;
}

void fill(const CGRect& rect) { rectangle(rect).fill(); }

// Red above blue.
Ref<NSImage> flag() {
  auto image = std::make_shared<NSImage>();
  image->addRepresentation(bitmapOfPixels({0xFFFF0000, 0xFFFF0000, 0xFF0000FF, 0xFF0000FF}, 2));
  return image;
}

std::vector<std::string> drawn(const std::function<void(NSGraphicsContext&)>& draw, QtPainting::YAxis yAxis = Upwards) {
  return Canvas(7, 5, 1, yAxis).draw(draw).rows();
}

TEST(QtGraphicsContext, PixelsOfOutlines) {
  EXPECT_THAT(drawn([](auto&) {
                fill({1, 1, 3, 2});
              }),
              ElementsAre(".......", ".......", ".KKK...", ".KKK...", "......."));
  // Half of a stroke lies on either side of the outline, all of an inner one inside. Where its sides meet, what covers
  // a part of a pixel twice is taken for more of it.
  EXPECT_THAT(drawn([](auto&) {
                rectangle({1, 1, 5, 3}).stroke();
              }),
              ElementsAre("3555553", "5K555K5", "55...55", "5K555K5", "3555553"));
  EXPECT_THAT(drawn([](auto&) {
                NSBezierPath path = rectangle({1, 1, 5, 3});
                strokeInside(path);
              }),
              ElementsAre(".......", ".KKKKK.", ".K...K.", ".KKKKK.", "......."));
  EXPECT_THAT(drawn([](auto&) {
                NSBezierPath path = rectangle({1, 1, 5, 3});
                strokeInsideWithinRect(path, {0, 0, 3, 3});
              }),
              ElementsAre(".......", ".......", ".K.....", ".KK....", "......."));
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
  // In a flipped view the frame's far edge is the lower one. Colours flow into one another.
  EXPECT_THAT(drawn(
                  [](auto&) {
                    compositScaledImageToFrame(*flag(), {1, 1, 4, 4}, nullptr);
                  },
                  Downwards),
              ElementsAre(".......", ".RRRR..", ".????..", ".????..", ".BBBB.."));
}

// What has no pixels draws itself: green with red above.
class Drawing : public NSImageRep {
 public:
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
  for (const auto& [operation, formula] : rows) {
    for (int round = 0; round < 40; ++round) {
      const std::uint32_t ground = pixel(operation == PlusDarker ? 255U : static_cast<std::uint32_t>(random() % 256));
      const std::uint32_t source = pixel(static_cast<std::uint32_t>(random() % 256));
      const double fraction = round % 2 ? 1 : 0.6;
      Canvas canvas(1, 1);
      canvas.image.setPixel(0, 0, 0);
      *reinterpret_cast<std::uint32_t*>(canvas.image.bits()) = ground;
      canvas.draw([&](NSGraphicsContext& context) {
        context.drawRepresentation(*bitmapOfPixels({source}, 1), {0, 0, 1, 1}, {0, 0, 1, 1}, operation, fraction);
      });
      const std::uint32_t result = *reinterpret_cast<const std::uint32_t*>(canvas.image.constBits());
      for (const unsigned shift : {0U, 8U, 16U, 24U}) {
        if (operation == PlusDarker && shift == 24) continue;
        const auto part = [shift](std::uint32_t color, unsigned at) { return (color >> at & 0xFFU) / 255.0; };
        const double S = part(source, shift) * fraction;
        const double s = part(source, 24) * fraction;
        EXPECT_NEAR(part(result, shift), formula(S, s, part(ground, shift), part(ground, 24)), 3.5 / 255)
            << static_cast<int>(operation) << " " << shift;
      }
    }
  }
}

TEST(QtGraphicsContext, WhatIsNoNumberDrawsNothing) {
  for (const double bad : {nan, infinity, -infinity}) {
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
    const QtPainting painting(painter, nan);
    fill({0, 0, 5, 5});
  }
  EXPECT_THAT(canvas.rows(), Each("......."));
}

TEST(QtGraphicsContext, AlignsToWholePixels) {
  Canvas(20, 10, 2).draw([](auto& context) {
    EXPECT_EQ(alignPointToDeviceSpace(&context, {10.3, 4.8}), (CGPoint{10, 4.5}));
  });
  std::mt19937 random(11);
  std::uniform_real_distribution<double> place(0, 12);
  for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0})
    for (int round = 0; round < 40; ++round)
      for (const auto axis : {Upwards, Downwards}) {
        Canvas canvas(40, 40, scale, axis);
        canvas.draw([&](NSGraphicsContext& context) {
          context.concatTransform(NSAffineTransform({1 + place(random) / 8, 0, 0, 1, place(random), place(random)}));
          CGRect rect = alignRectToDeviceSpace(&context, {place(random), place(random), 4 + place(random), 5});
          fill(rect);
          // Rounding left the edges on whole pixels, give or take what computing has lost.
          const CGRect device = context.userSpaceToDeviceSpaceTransform().transformRect(rect);
          EXPECT_NEAR(device.size.width, std::round(device.size.width), 1e-9);
        });
        for (const std::string& row : canvas.rows())
          EXPECT_EQ(row.find_first_not_of(".K"), std::string::npos) << scale << " " << row;
      }
}

// A widget that draws with the library, in its view's coordinates.
class Sign : public QWidget {
 private:
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
}  // namespace kelvane
