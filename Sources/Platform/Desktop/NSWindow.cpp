#include "Platform/Desktop/NSWindow.h"

namespace kelvane {

CGRect NSWindow::constrainFrameRect(const CGRect& frame, const NSScreen& toScreen) const {
  // Not by CGRectGetMaxY: in a window lower than its title bar the content's height is below zero.
  const CGRect content = contentRectForFrameRect(frame);
  const double titleBar = frame.origin.y + frame.size.height - (content.origin.y + content.size.height);
  return constrained(frame, titleBar, toScreen.visibleFrame());
}

CGRect NSWindow::constrained(const CGRect& frame, double titleBar, const CGRect& visible) {
  const double grip = CGMin(titleBar, frame.size.width);
  const double bottom = CGRectGetMinY(visible) + titleBar - frame.size.height;
  const double top = CGRectGetMaxY(visible) - frame.size.height;
  const double left = CGRectGetMinX(visible) + grip - frame.size.width;
  const double right = CGRectGetMaxX(visible) - grip;
  // The upper and the left limit count last, so that they hold on a screen that is too small for both.
  return {{CGMax(left, CGMin(right, frame.origin.x)), CGMin(top, CGMax(bottom, frame.origin.y))}, frame.size};
}

}  // namespace kelvane
