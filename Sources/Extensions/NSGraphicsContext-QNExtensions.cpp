#include "Extensions/NSGraphicsContext-QNExtensions.h"

#include <optional>
#include <stdexcept>

namespace kelvane {
namespace {

CGPoint floorOf(const CGPoint& point) { return {CGFloor(point.x), CGFloor(point.y)}; }
CGSize floorOf(const CGSize& size) { return {CGFloor(size.width), CGFloor(size.height)}; }
CGRect floorOf(const CGRect& rect) { return {floorOf(rect.origin), floorOf(rect.size)}; }

std::optional<NSAffineTransform> inverseOf(NSAffineTransform transform) {
  try {
    transform.invert();
  } catch (const std::invalid_argument&) {
    return std::nullopt;
  }
  return transform;
}

// `convert` takes a value through a transform.
template <class Value, class Convert>
Value aligned(const NSGraphicsContext* context, const Value& value, Convert convert) {
  if (!context) return value;
  const NSAffineTransform toDevice = context->userSpaceToDeviceSpaceTransform();
  const auto toUser = inverseOf(toDevice);
  return toUser ? convert(*toUser, floorOf(convert(toDevice, value))) : value;
}

}  // namespace

CGPoint alignPointToDeviceSpace(const NSGraphicsContext* receiver, const CGPoint& point) {
  return aligned(receiver, point, [](const auto& transform, const auto& p) { return transform.transformPoint(p); });
}

CGSize alignSizeToDeviceSpace(const NSGraphicsContext* receiver, const CGSize& size) {
  return aligned(receiver, size, [](const auto& transform, const auto& s) { return transform.transformSize(s); });
}

CGRect alignRectToDeviceSpace(const NSGraphicsContext* receiver, const CGRect& rect) {
  return aligned(receiver, rect, [](const auto& transform, const auto& r) { return transform.transformRect(r); });
}

void contextClearRect(NSGraphicsContext* receiver, const CGRect& rect) {
  if (receiver) receiver->clearRect(rect);
}

void setAlpha(NSGraphicsContext* receiver, double alpha) {
  if (receiver) receiver->setAlpha(alpha);
}

}  // namespace kelvane
