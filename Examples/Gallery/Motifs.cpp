#include "Motifs.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Extensions/NSBezierPath-QNExtensions.h"
#include "Extensions/NSGraphicsContext-QNExtensions.h"
#include "Extensions/NSImage-QNExtensions.h"
#include "Extensions/NSString-QNExtensions.h"
#include "Graphics/QNBadgeImage.h"
#include "Graphics/QNDebug.h"
#include "Platform/Desktop/NSImage.h"
#include "Platform/Desktop/NSStringDrawing.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Style.h"

using namespace kelvane;
using namespace kelvane::NSBezierPathExtensions;

namespace gallery {
namespace {

Text number(std::int64_t value) { return textFromUTF8(std::to_string(value)); }

// Filled, with its edge inside.
void show(NSBezierPath path) {
  use(paleBlue);
  path.fill();
  use(blue);
  // Whole pixels at every scale.
  path.setLineWidth(alignSizeToDeviceSpace(NSGraphicsContext::currentContext(), {2, 2}).width);
  strokeInside(path);
}

void drawPlates() {
  show(bezierPathWithLeftPlateInRect({8, 24, 88, 28}));
  show(bezierPathWithPlateInRect({116, 24, 88, 28}));
  show(bezierPathWithRightPlateInRect({224, 24, 88, 28}));
  caption(u"left plate", 52, 6);
  caption(u"plate", 160, 6);
  caption(u"right plate", 268, 6);
}

void drawRoundedRectangles() {
  const std::pair<double, TextView> radii[] = {{0, u"radius 0"}, {5, u"5"}, {10, u"10"}, {50, u"50, so 16"}};
  double x = 8;
  for (const auto& [radius, label] : radii) {
    show(bezierPathWithRoundedRect({x, 24, 64, 32}, radius));
    caption(label, x + 32, 6);
    x += 80;
  }
}

void drawCornerMasks() {
  for (std::uint32_t mask = 0; mask < 16; ++mask) {
    const double x = 4 + 40.0 * (mask % 8);
    const double y = mask < 8 ? 76 : 20;
    show(bezierPathWithRoundedRect({x, y, 32, 28}, 10, mask));
    caption(number(mask), x + 16, y - 16);
  }
}

void drawInsideStrokes() {
  const auto outlined = [](double x, void (*stroke)(NSBezierPath&, const CGRect&)) {
    const CGRect rect(x, 28, 72, 36);
    NSBezierPath path = bezierPathWithPlateInRect(rect);
    use(paleBlue);
    path.fill();
    path.setLineWidth(6);
    use(blue);
    stroke(path, rect);
    path.setLineWidth(0);
    use(ink);
    path.stroke();
  };
  outlined(20, [](NSBezierPath& path, const CGRect&) { path.stroke(); });
  outlined(124, [](NSBezierPath& path, const CGRect&) { strokeInside(path); });
  outlined(228, [](NSBezierPath& path, const CGRect& rect) {
    strokeInsideWithinRect(path, {rect.origin, {rect.size.width / 2, rect.size.height}});
  });
  caption(u"stroke", 56, 6);
  caption(u"inside", 160, 6);
  caption(u"inside, left half", 264, 6);
}

// The badges of a series beside one another, in the middle.
void drawSeries(const QNBadgeImage& badge, double y) {
  constexpr double distance = 10;
  std::vector<Ref<NSImage>> images;
  double width = -distance;
  for (const std::int64_t count : {0, 7, 42, 365, 1984, 31415})
    if (auto image = badge.imageWithNumber(count)) {
      width += distance + image->size().width;
      images.push_back(std::move(image));
    }
  double x = (motifWidth - width) / 2;
  for (const auto& image : images) {
    image->compositeToPoint({x, y}, NSCompositingOperation::SourceOver);
    x += distance + image->size().width;
  }
}

void drawBadges() {
  fillRounded({0, 44, motifWidth, 40}, 8, sand);
  drawSeries(QNBadgeImage::badgeWithDragImages(), 52);
  drawSeries(QNBadgeImage::badgeWithGreenImages(), 8);
}

// What is dragged: a sheet with a landscape on it.
Ref<NSImage> landscape() {
  return NSImage::imageWithSize({64, 64}, [] {
    NSGraphicsContext* const context = NSGraphicsContext::currentContext();
    fillRounded({0, 0, 64, 64}, 6, faint);
    fillRounded({1, 1, 62, 62}, 5, sheet);
    const GraphicsStateScope state(context);
    const CGRect view(6, 6, 52, 52);
    bezierPathWithRoundedRect(view, 2).addClip();
    fillRounded(view, 0, paleBlue);
    fillRounded({38, 38, 12, 12}, 6, sand);
    NSBezierPath hill;
    hill.moveToPoint({0, 6});
    hill.curveToPoint({64, 18}, {20, 52}, {34, 8});
    hill.lineToPoint({64, 0});
    hill.lineToPoint({0, 0});
    use(blue);
    hill.fill();
  });
}

void drawDragImages() {
  const auto base = landscape();
  double x = 8;
  for (const std::int64_t count : {3, 24, 1200}) {
    const auto image = QNBadgeImage::dragImageWithBaseImage(base, count, nullptr, nullptr);
    image->compositeToPoint({x, 8}, NSCompositingOperation::SourceOver);
    x += image->size().width + 16;
  }
}

void drawChiselled() {
  fillRounded({0, 0, motifWidth, 56}, 8, blue);
  const auto attributes = boldText(24, sheet);
  drawChiseledInRect(u"Chiselled", {16, 8, 160, 38}, attributes);
  const auto small = boldText(13, sheet);
  drawChiseledInRect(fitTextInRect(u"in one rectangle or another", {0, 0, 128, 24}, small), {176, 8, 136, 30}, small);
}

void drawDebugRectangles() {
  QNDebug::drawRect({8, 24, 136, 40}, blue);
  fillRounded({176, 24, 136, 40}, 8, sand);
  QNDebug::drawRect({176, 24, 136, 40}, blue, false);
  caption(u"filled", 76, 4);
  caption(u"not filled", 244, 4);
}

// Lines a pixel wide, a little more than 7 points apart.
void drawLines(double x, bool areAligned) {
  NSGraphicsContext* const context = NSGraphicsContext::currentContext();
  const auto scale = context->userSpaceToDeviceSpaceTransform().transformStruct().m11;
  const double pixel = 1 / scale;
  const auto fill = [&](CGRect rect) {
    if (areAligned) rect.origin = alignPointToDeviceSpace(context, rect.origin);
    NSBezierPath path;
    path.appendBezierPathWithRect(rect);
    path.fill();
  };
  use(ink);
  for (int i = 0; i < 10; ++i) fill({x + 7.37 * i, 22.3, pixel, 40});
  for (int i = 0; i < 6; ++i) fill({x + 80.4, 22.3 + 7.37 * i, 56, pixel});
}

void drawAlignment() {
  drawLines(8.4, false);
  drawLines(176.4, true);
  caption(u"as told", 76, 4);
  caption(u"aligned to the device", 244, 4);
}

void drawImages() {
  const auto image = landscape();
  const std::tuple<double, double, TextView> rows[] = {
      {48, 1.0, u"centred"}, {64, 0.6, u"at 60 %"}, {24, 1.0, u"smaller"}, {56, 0.3, u"at 30 %"}};
  double x = 8;
  for (const auto& [side, fraction, label] : rows) {
    const CGRect rect(x, 24, 64, 64);
    fillRounded(rect, 4, paper);
    drawCenteredInRect(*image, rect, {side, side}, NSCompositingOperation::SourceOver, fraction);
    caption(label, x + 32, 6);
    x += 80;
  }
}

constexpr std::array allMotifs{
    Motif{u"Plates", u"Half circles at both ends or at one", 56, drawPlates},
    Motif{u"Rounded rectangles", u"A radius is half the shorter side at most", 60, drawRoundedRectangles},
    Motif{u"Corner masks", u"1 top left, 2 top right, 4 bottom left, 8 bottom right", 108, drawCornerMasks},
    Motif{u"Inside strokes", u"Six points wide; a thin line shows the outline", 72, drawInsideStrokes},
    Motif{u"Badges", u"The drag series and the green one: 0, 7, 42, 365, 1984 and 31415", 84, drawBadges},
    Motif{u"Drag images", u"The badge overlaps what is dragged", 92, drawDragImages},
    Motif{u"Chiselled text", u"The edge lies a point above; what does not fit ends in three dots", 56, drawChiselled},
    Motif{u"Debug rectangles", u"Outline and diagonals, two points wide", 72, drawDebugRectangles},
    Motif{u"Alignment", u"Lines a pixel wide, wherever they fall and on whole pixels", 72, drawAlignment},
    Motif{u"Images", u"In the middle of a rectangle, in sizes and fractions", 92, drawImages},
};

}  // namespace

std::span<const Motif> motifs() { return allMotifs; }

}  // namespace gallery
