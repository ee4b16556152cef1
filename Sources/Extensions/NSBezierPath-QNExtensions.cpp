#include "Extensions/NSBezierPath-QNExtensions.h"

#include <algorithm>

#include "Platform/Desktop/NSGraphicsContext.h"

namespace kelvane {
namespace {

struct Edges {
  double left;
  double bottom;
  double right;
  double top;
};

Edges edgesOf(const CGRect& rect) {
  const auto& [x, y] = rect.origin;
  return {x, y, x + rect.size.width, y + rect.size.height};
}

bool hasArea(const CGRect& rect) { return rect.size.width > 0 && rect.size.height > 0; }

// Appends what needs no round corners, and answers whether that is all.
bool isDoneWithoutCorners(NSBezierPath& path, const CGRect& rect, double radius) {
  if (!hasArea(rect)) return true;
  if (radius > 0) return false;
  path.appendBezierPathWithRect(rect);
  return true;
}

// Where a rounded rectangle starts: in the middle of its top edge.
CGPoint topMiddle(const CGRect& rect) {
  return {rect.origin.x + rect.size.width * 0.5, rect.origin.y + rect.size.height};
}

double radiusWithin(const CGRect& rect, double radius) {
  return std::min(radius, std::min(rect.size.width, rect.size.height) * 0.5);
}

template <class Append>
NSBezierPath newPath(Append append) {
  NSBezierPath path;
  append(path);
  return path;
}

}  // namespace

void appendBezierPathWithPlateInRect(NSBezierPath& receiver, const CGRect& rect) {
  if (!(rect.size.height > 0)) return;
  const auto [left, bottom, right, top] = edgesOf(rect);
  const double radius = rect.size.height * 0.5;
  receiver.moveToPoint({left + radius, top});
  receiver.appendBezierPathWithArcWithCenter({left + radius, bottom + radius}, radius, 90, 270);
  receiver.appendBezierPathWithArcWithCenter({right - radius, bottom + radius}, radius, 270, 90);
  receiver.closePath();
}

void appendBezierPathWithLeftPlateInRect(NSBezierPath& receiver, const CGRect& rect) {
  if (!(rect.size.height > 0)) return;
  const auto [left, bottom, right, top] = edgesOf(rect);
  const double radius = rect.size.height * 0.5;
  receiver.moveToPoint({left + radius, top});
  receiver.appendBezierPathWithArcWithCenter({left + radius, bottom + radius}, radius, 90, 270);
  receiver.lineToPoint({right, bottom});
  receiver.lineToPoint({right, top});
  receiver.closePath();
}

void appendBezierPathWithRightPlateInRect(NSBezierPath& receiver, const CGRect& rect) {
  if (!(rect.size.height > 0)) return;
  const auto [left, bottom, right, top] = edgesOf(rect);
  const double radius = rect.size.height * 0.5;
  receiver.moveToPoint({left + radius, top});
  receiver.lineToPoint({left, top});
  receiver.lineToPoint({left, bottom});
  receiver.appendBezierPathWithArcWithCenter({right - radius, bottom + radius}, radius, 270, 90);
  receiver.closePath();
}

void appendBezierPathWithRoundedRect(NSBezierPath& receiver, const CGRect& rect, double cornerRadius) {
  if (isDoneWithoutCorners(receiver, rect, cornerRadius)) return;
  const auto [left, bottom, right, top] = edgesOf(rect);
  const double radius = radiusWithin(rect, cornerRadius);
  receiver.moveToPoint(topMiddle(rect));
  receiver.appendBezierPathWithArcFromPoint({left, top}, {left, bottom}, radius);
  receiver.appendBezierPathWithArcFromPoint({left, bottom}, {right, bottom}, radius);
  receiver.appendBezierPathWithArcFromPoint({right, bottom}, {right, top}, radius);
  receiver.appendBezierPathWithArcFromPoint({right, top}, {left, top}, radius);
  receiver.closePath();
}

void appendBezierPathWithRoundedRect(NSBezierPath& receiver, const CGRect& rect, double cornerRadius,
                                     std::uint32_t corners) {
  if (isDoneWithoutCorners(receiver, rect, cornerRadius)) return;
  const auto [left, bottom, right, top] = edgesOf(rect);
  const double radius = radiusWithin(rect, cornerRadius);
  receiver.moveToPoint(topMiddle(rect));
  if (corners & QNTopLeftCorner)
    receiver.appendBezierPathWithArcFromPoint({left, top}, {left, bottom}, radius);
  else
    receiver.lineToPoint({left, top});
  // Behind a round top left corner the bottom left one is left to the next step, which reaches it only by a line.
  if (corners & QNBottomLeftCorner)
    receiver.appendBezierPathWithArcFromPoint({left, bottom}, {right, bottom}, radius);
  else if (!(corners & QNTopLeftCorner))
    receiver.lineToPoint({left, bottom});
  if (corners & QNBottomRightCorner) {
    receiver.appendBezierPathWithArcFromPoint({right, bottom}, {right, top}, radius);
  } else {
    receiver.lineToPoint({left, bottom});
    receiver.lineToPoint({right, bottom});
  }
  if (corners & QNTopRightCorner) {
    receiver.appendBezierPathWithArcFromPoint({right, top}, {left, top}, radius);
  } else {
    receiver.lineToPoint({right, top});
    receiver.lineToPoint({left, top});
  }
  receiver.closePath();
}

void strokeInside(NSBezierPath& receiver) { strokeInsideWithinRect(receiver, CGRectZero); }

void strokeInsideWithinRect(NSBezierPath& receiver, const CGRect& rect) {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  const GraphicsStateScope state(context);
  // What lies outside is clipped away, so half of the doubled width remains. It is not put back.
  receiver.setLineWidth(receiver.lineWidth() * 2);
  receiver.addClip();
  if (context && hasArea(rect)) context->clipToRect(rect);
  receiver.stroke();
}

NSBezierPath NSBezierPathExtensions::bezierPathWithPlateInRect(const CGRect& rect) {
  return newPath([&](NSBezierPath& path) { appendBezierPathWithPlateInRect(path, rect); });
}

NSBezierPath NSBezierPathExtensions::bezierPathWithLeftPlateInRect(const CGRect& rect) {
  return newPath([&](NSBezierPath& path) { appendBezierPathWithLeftPlateInRect(path, rect); });
}

NSBezierPath NSBezierPathExtensions::bezierPathWithRightPlateInRect(const CGRect& rect) {
  return newPath([&](NSBezierPath& path) { appendBezierPathWithRightPlateInRect(path, rect); });
}

NSBezierPath NSBezierPathExtensions::bezierPathWithRoundedRect(const CGRect& rect, double cornerRadius) {
  return newPath([&](NSBezierPath& path) { appendBezierPathWithRoundedRect(path, rect, cornerRadius); });
}

NSBezierPath NSBezierPathExtensions::bezierPathWithRoundedRect(const CGRect& rect, double cornerRadius,
                                                               std::uint32_t corners) {
  return newPath([&](NSBezierPath& path) { appendBezierPathWithRoundedRect(path, rect, cornerRadius, corners); });
}

}  // namespace kelvane
