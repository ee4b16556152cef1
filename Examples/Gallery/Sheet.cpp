#include "Sheet.h"

#include "Extensions/NSBezierPath-QNExtensions.h"
#include "Motifs.h"
#include "Platform/Desktop/NSStringDrawing.h"
#include "Style.h"

using namespace kelvane;

namespace gallery {
namespace {

constexpr double margin = 40;
constexpr double captionWidth = 184;
constexpr double padding = 20;
// The scale stands above the motif.
constexpr double headroom = 26;
constexpr double gap = 12;
constexpr double rowGap = 28;
constexpr double headHeight = 116;

double stripHeight() {
  double height = 0;
  for (const Motif& motif : motifs()) height += motif.height;
  return height;
}

// The last strip stands to the right of the others, which stand below one another.
struct Layout {
  explicit Layout(const std::vector<Strip>& strips) {
    for (const Strip& strip : strips)
      if (&strip != &strips.back()) {
        leftWidth = CGMax(leftWidth, motifWidth * strip.scale + 2 * padding);
        leftScale += strip.scale;
        leftFrame += 2 * headroom + gap;
      }
    rightWidth = motifWidth * strips.back().scale + 2 * padding;
  }

  double rowHeight(const Motif& motif) const { return motif.height * leftScale + leftFrame - gap; }
  CGSize sheetSize() const {
    double height = headHeight + margin - rowGap;
    for (const Motif& motif : motifs()) height += rowHeight(motif) + rowGap;
    return {2 * margin + captionWidth + leftWidth + gap + rightWidth, height};
  }

  double leftWidth = 0;
  double rightWidth = 0;
  // How high all on the left is together: so much for each point of a motif, and so much besides.
  double leftScale = 0;
  double leftFrame = 0;
};

void drawHead(const CGSize& size) {
  drawAtPoint(u"Gallery", {margin, size.height - margin - 40}, boldText(32, ink));
  drawAtPoint(u"What the library draws, pixel for pixel, on screens of three scales",
              {margin + captionWidth, size.height - margin - 33}, plainText(16, quiet));
}

void drawCaption(const Motif& motif, double top) {
  drawInRect(motif.title, {margin, top - 30, captionWidth - 8, 26}, boldText(14, ink));
  drawInRect(motif.explanation, {margin, top - 112, captionWidth - 20, 80}, plainText(12, quiet));
}

// `fromTop` is where the motif begins in the strip.
void drawPanel(const Motif& motif, double fromTop, const Strip& strip, const CGRect& panel) {
  fillRounded(panel, 8, sheet);
  const CGSize size{motifWidth * strip.scale, motif.height * strip.scale};
  const CGPoint origin{panel.origin.x + CGFloor((panel.size.width - size.width) / 2),
                       panel.origin.y + CGFloor((panel.size.height - size.height) / 2)};
  strip.image->drawInRect({origin, size}, {0, stripHeight() - fromTop - motif.height, motifWidth, motif.height},
                          NSCompositingOperation::SourceOver, 1);
  drawAtPoint(strip.label, {panel.origin.x + 8, CGRectGetMaxY(panel) - 20}, plainText(10, quiet));
}

void drawRow(const Motif& motif, double fromTop, double top, const std::vector<Strip>& strips) {
  const Layout layout(strips);
  drawCaption(motif, top);
  const double left = margin + captionWidth;
  double y = top;
  for (const Strip& strip : strips) {
    if (&strip == &strips.back()) break;
    const double height = motif.height * strip.scale + 2 * headroom;
    drawPanel(motif, fromTop, strip, {left, y - height, layout.leftWidth, height});
    y -= height + gap;
  }
  const double height = layout.rowHeight(motif);
  drawPanel(motif, fromTop, strips.back(), {left + layout.leftWidth + gap, top - height, layout.rightWidth, height});
}

}  // namespace

Ref<NSImage> drawStrip() {
  return NSImage::imageWithSize({motifWidth, stripHeight()}, [] {
    NSGraphicsContext* const context = NSGraphicsContext::currentContext();
    double y = stripHeight();
    for (const Motif& motif : motifs()) {
      y -= motif.height;
      const GraphicsStateScope state(context);
      NSAffineTransform toMotif;
      toMotif.translateXBy(0, y);
      context->concatTransform(toMotif);
      motif.draw();
    }
  });
}

Ref<NSImage> drawSheet(const std::vector<Strip>& strips) {
  const Layout layout(strips);
  const CGSize size = layout.sheetSize();
  return NSImage::imageWithSize(size, [&] {
    fillRounded({{0, 0}, size}, 0, paper);
    drawHead(size);
    double top = size.height - headHeight;
    double fromTop = 0;
    for (const Motif& motif : motifs()) {
      drawRow(motif, fromTop, top, strips);
      fromTop += motif.height;
      top -= layout.rowHeight(motif) + rowGap;
    }
  });
}

}  // namespace gallery
