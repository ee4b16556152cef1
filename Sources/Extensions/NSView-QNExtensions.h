#pragma once

#include "Platform/Desktop/NSView.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/Ref.h"

// Operations on views. Of a nil view, rectangles are zero and answers false; telling it something does nothing. Main
// thread only.
namespace kelvane {

// centerOriginInRect:  Moves the origin of the view's own coordinates to the middle of `rect`, which is in them.
KELVANE_EXPORT void centerOriginInRect(const Ref<NSView>& receiver, const CGRect& rect);
// centerOriginInBounds  The same with the view's bounds.
KELVANE_EXPORT void centerOriginInBounds(const Ref<NSView>& receiver);
// centerOriginInFrame  The same with the view's frame.
KELVANE_EXPORT void centerOriginInFrame(const Ref<NSView>& receiver);

// centerRect:onPoint:  A rectangle of the same size with its middle on the point.
//   {{7, 7}, {10, 20}}, {0, 0} => {{-5, -10}, {10, 20}}
KELVANE_EXPORT CGRect centerRect(const Ref<NSView>& receiver, const CGRect& rect, const CGPoint& onPoint);

// coordinateOrigin  Whether the view's own y grows downwards.
KELVANE_EXPORT bool coordinateOrigin(const Ref<NSView>& receiver);

// setFrameToSize:minSize:maxSize:  Resizes the view, origin unchanged. Width and height are each raised to the minimum
// and then lowered to the maximum, which therefore counts when the two contradict; a limit of 0 is none.
//   50 x 500 within 100 x 0 and 0 x 300 => 100 x 300
KELVANE_EXPORT void setFrameToSize(const Ref<NSView>& receiver, const CGSize& size, const CGSize& minSize,
                                   const CGSize& maxSize);
// allignFrameToMinSize:toMaxSize:  The same with the size that the view has.
KELVANE_EXPORT void allignFrameToMinSize(const Ref<NSView>& receiver, const CGSize& minSize, const CGSize& toMaxSize);

// centerVerticalyInSuperview  Moves the view to its superview's vertical centre line: x changes, and nothing else.
// Without a superview that line is at 0.
//   {{10, 20}, {100, 30}} in one 400 wide => {{150, 20}, {100, 30}}
KELVANE_EXPORT void centerVerticalyInSuperview(const Ref<NSView>& receiver);

// removeAllSubviews  Removes those that are there when it is called, one after the other.
KELVANE_EXPORT void removeAllSubviews(const Ref<NSView>& receiver);

}  // namespace kelvane
