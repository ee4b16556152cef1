#include "Extensions/NSView-QNExtensions.h"

#include "Extensions/SizeLimits.h"

namespace kelvane {

void centerOriginInRect(const Ref<NSView>& receiver, const CGRect& rect) {
  if (receiver) receiver->translateOriginToPoint({CGRectGetMidX(rect), CGRectGetMidY(rect)});
}

void centerOriginInBounds(const Ref<NSView>& receiver) {
  if (receiver) centerOriginInRect(receiver, receiver->bounds());
}

void centerOriginInFrame(const Ref<NSView>& receiver) {
  if (receiver) centerOriginInRect(receiver, receiver->convertRect(receiver->frame(), receiver->superview()));
}

CGRect centerRect(const Ref<NSView>& receiver, const CGRect& rect, const CGPoint& onPoint) {
  if (!receiver) return CGRectZero;
  return {{onPoint.x - rect.size.width * 0.5, onPoint.y - rect.size.height * 0.5}, rect.size};
}

bool coordinateOrigin(const Ref<NSView>& receiver) { return receiver && receiver->isFlipped(); }

void setFrameToSize(const Ref<NSView>& receiver, const CGSize& size, const CGSize& minSize, const CGSize& maxSize) {
  if (receiver) receiver->setFrame({receiver->frame().origin, sizeWithinLimits(size, minSize, maxSize)});
}

void allignFrameToMinSize(const Ref<NSView>& receiver, const CGSize& minSize, const CGSize& toMaxSize) {
  if (receiver) setFrameToSize(receiver, receiver->frame().size, minSize, toMaxSize);
}

void centerVerticalyInSuperview(const Ref<NSView>& receiver) {
  if (!receiver) return;
  const CGRect frame = receiver->frame();
  const Ref<NSView> superview = receiver->superview();
  const double width = superview ? superview->frame().size.width : 0;
  receiver->setFrame({{(width - frame.size.width) * 0.5, frame.origin.y}, frame.size});
}

void removeAllSubviews(const Ref<NSView>& receiver) {
  if (!receiver) return;
  // A copy, since the view's own list shrinks meanwhile.
  const std::vector<Ref<NSView>> subviews = receiver->subviews();
  for (const Ref<NSView>& subview : subviews) subview->removeFromSuperview();
}

}  // namespace kelvane
