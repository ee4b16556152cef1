#pragma once

#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

class NSWindow;

// A part of a window that draws and is clicked on. For each view of the window system there is one object, so that
// identity tells them apart. A view whose original has gone answers with zero rectangles, nil and nothing, and ignores
// what it is told. Every view ignores rectangles and sizes with a number that is not finite. Main thread only.
class KELVANE_EXPORT NSView : public NSObject {
 public:
  // The view's place in its superview's coordinates; in the window's for one that has no superview.
  virtual CGRect frame() const = 0;
  virtual void setFrame(const CGRect& frame) = 0;
  // setFrameSize:  The origin of the frame stays.
  virtual void setFrameSize(const CGSize& size) = 0;
  // The same area in the view's own coordinates.
  virtual CGRect bounds() const = 0;
  // Whether the view's own y grows downwards.
  virtual bool isFlipped() const = 0;

  // Nil for a view that is in no window; so the superview of one that is in no other.
  virtual Ref<NSWindow> window() const = 0;
  virtual Ref<NSView> superview() const = 0;
  // From back to front.
  virtual std::vector<Ref<NSView>> subviews() const = 0;
  virtual void removeFromSuperview() = 0;

  // convertRect:fromView:  A rectangle of another view of the window in this one's coordinates; nil stands for the
  // window itself.
  virtual CGRect convertRect(const CGRect& rect, const Ref<NSView>& fromView) const = 0;
  // translateOriginToPoint:  What was `point` in the view's own coordinates is (0, 0) from now on.
  virtual void translateOriginToPoint(const CGPoint& point) = 0;
};

}  // namespace kelvane
