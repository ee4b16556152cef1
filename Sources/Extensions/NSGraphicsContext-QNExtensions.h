#pragma once

#include "Platform/Desktop/NSGraphicsContext.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"

// Snapping to whole device pixels, for lines and images that are to be sharp at any scale. The receiver, often the
// current context, may be null: then nothing is drawn, and what is to be aligned comes back as it was; so it does where
// the context's transform cannot be turned round. As the context says for threads.
namespace kelvane {

// These take the value to device space, round each of its numbers down, and bring it back. Sizes are rounded down, too:
// an aligned rectangle may be smaller than the given one by up to a device pixel along each side. What turns or flips
// turns points as they are, sizes without their place, which makes them negative, and rectangles to what surrounds
// them.

// alignPointToDeviceSpace:
//   at scale 2: {10.3, 4.8} => {10, 4.5}
KELVANE_EXPORT CGPoint alignPointToDeviceSpace(const NSGraphicsContext* receiver, const CGPoint& point);
// alignSizeToDeviceSpace:
KELVANE_EXPORT CGSize alignSizeToDeviceSpace(const NSGraphicsContext* receiver, const CGSize& size);
// alignRectToDeviceSpace:
//   at scale 1: {{0.25, 0.25}, {10.5, 10.5}} => {{0, 0}, {10, 10}}
KELVANE_EXPORT CGRect alignRectToDeviceSpace(const NSGraphicsContext* receiver, const CGRect& rect);

// contextClearRect:  Makes the rectangle transparent.
KELVANE_EXPORT void contextClearRect(NSGraphicsContext* receiver, const CGRect& rect);
// setAlpha:  What all that is drawn from now on has its alpha multiplied by.
KELVANE_EXPORT void setAlpha(NSGraphicsContext* receiver, double alpha);

}  // namespace kelvane
