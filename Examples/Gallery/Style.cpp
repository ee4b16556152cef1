#include "Style.h"

#include <optional>

#include "Extensions/NSBezierPath-QNExtensions.h"
#include "Platform/Desktop/NSGraphicsContext.h"
#include "Platform/Desktop/NSStringDrawing.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSFont.h"

using namespace kelvane;

namespace gallery {
namespace {

NSColor rgb(int red, int green, int blue) {
  return NSColor::colorWithCalibratedRed(red / 255.0, green / 255.0, blue / 255.0, 1);
}

Ref<NSDictionary> textIn(const std::optional<NSFont>& font, const NSColor& color) {
  NSDictionary::Entries entries;
  entries.emplace(NSForegroundColorAttributeName, box(color));
  if (font) entries.emplace(NSFontAttributeName, box(*font));
  return std::make_shared<NSDictionary>(std::move(entries));
}

}  // namespace

const NSColor paper = rgb(244, 243, 239);
const NSColor sheet = rgb(255, 255, 255);
const NSColor ink = rgb(43, 52, 64);
const NSColor quiet = rgb(112, 124, 138);
const NSColor faint = rgb(214, 218, 222);
const NSColor blue = rgb(54, 110, 156);
const NSColor paleBlue = rgb(215, 229, 241);
const NSColor sand = rgb(240, 226, 190);

Ref<NSDictionary> plainText(double pointSize, const NSColor& color) {
  return textIn(NSFont::systemFontOfSize(pointSize), color);
}

Ref<NSDictionary> boldText(double pointSize, const NSColor& color) {
  return textIn(NSFont::boldSystemFontOfSize(pointSize), color);
}

void use(const NSColor& color) {
  if (NSGraphicsContext* context = NSGraphicsContext::currentContext()) context->setColor(color);
}

void drawCentred(TextView text, double x, double y, const Ref<NSDictionary>& attributes) {
  drawAtPoint(text, {x - sizeWithAttributes(text, attributes).width / 2, y}, attributes);
}

void caption(TextView text, double x, double y) { drawCentred(text, x, y, plainText(9, quiet)); }

void fillRounded(const CGRect& rect, double radius, const NSColor& color) {
  use(color);
  NSBezierPathExtensions::bezierPathWithRoundedRect(rect, radius).fill();
}

}  // namespace gallery
