#include "Platform/Desktop/NSBezierPath.h"

#include <functional>
#include <memory>

#include "Platform/Desktop/NSGraphicsContext.h"

namespace kelvane {

void NSBezierPath::appendBezierPath(const NSBezierPath& path) {
  // By index and with room made first, since a path may be appended to itself.
  const std::size_t count = path.myElements.size();
  myElements.reserve(myElements.size() + count);
  for (std::size_t i = 0; i < count; ++i) myElements.push_back(path.myElements[i]);
}

void NSBezierPath::appendBezierPathWithRect(const CGRect& rect) {
  const auto& [x, y] = rect.origin;
  const double maxX = x + rect.size.width;
  const double maxY = y + rect.size.height;
  moveToPoint({x, y});
  lineToPoint({maxX, y});
  lineToPoint({maxX, maxY});
  lineToPoint({x, maxY});
  closePath();
}

void NSBezierPath::fill() const {
  if (NSGraphicsContext* context = NSGraphicsContext::currentContext()) context->fillPath(*this);
}

void NSBezierPath::stroke() const {
  if (NSGraphicsContext* context = NSGraphicsContext::currentContext()) context->strokePath(*this);
}

void NSBezierPath::addClip() const {
  if (NSGraphicsContext* context = NSGraphicsContext::currentContext()) context->clipToPath(*this);
}

bool NSBezierPath::isEqual(const NSObject& other) const {
  const NSBezierPath* path = as<NSBezierPath>(&other);
  return path && path->myLineWidth == myLineWidth && path->myElements == myElements;
}

std::size_t NSBezierPath::hash() const { return myElements.size() * 31 + std::hash<double>()(myLineWidth); }

Ref<NSObject> NSBezierPath::copy() const { return std::make_shared<NSBezierPath>(*this); }

}  // namespace kelvane
