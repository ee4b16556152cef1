#pragma once

#include <optional>

#include "Platform/Desktop/NSImage.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/Text.h"

// Loading, drawing, sizes and JPEG forms of images. Failures are logged. One thread at a time.
//
// ```cpp
// if (const Ref<NSImage> photo = NSImage::imageWithContentsOfFile(u"/tmp/garden.png"))
//   writeJPGRepresentationToFile(normalizeSize(*photo), u"/tmp/garden.jpg");
// ```
namespace kelvane {

class NSView;

// representationForSize:  The first representation of exactly this size; nil when there is none.
KELVANE_EXPORT Ref<NSImageRep> representationForSize(const NSImage& receiver, const CGSize& size);

// extractImageWithRepresentationOfSize:  A new image, of its size, with a copy of that representation; nil when there
// is none, or it cannot be copied.
KELVANE_EXPORT Ref<NSImage> extractImageWithRepresentationOfSize(const NSImage& receiver, const CGSize& size);

// normalizeSize  Makes the image, and its first bitmap, a point large for each pixel of that bitmap; without a bitmap
// nothing changes. Returns the receiver.
KELVANE_EXPORT NSImage& normalizeSize(NSImage& receiver);

// JPGRepresentationWithCompression:  The image as a JPEG file that does not come in passes, made of its first bitmap;
// the factor goes from 0.0, the smallest file, to 1.0, the best image. Nil when there is no bitmap, which is logged
// (nothing else is made into one), and when the desktop cannot encode it.
KELVANE_EXPORT Ref<NSData> JPGRepresentationWithCompression(const NSImage& receiver, double compression);

// writeJPGRepresentationToFile:  The same, with a factor of 0.8, as the contents of the file, old or new and never half
// of it (AtomicFile.h, which tells its permissions, too). Where there is no JPEG form that is logged, and the file
// stays; trouble in writing goes unreported.
KELVANE_EXPORT void writeJPGRepresentationToFile(const NSImage& receiver, TextView path);

// These draw in the current context; nothing where there is none.

// compositScaledImageToFrame:inView:  The image scaled to the frame's size, by way of a picture of that size, whose
// corner at the lower left on the screen is put to the frame's (x, y + height): its corner there in a flipped view.
// "START" and "STOP" go to the system log each time. The view is not asked and may be null.
KELVANE_EXPORT void compositScaledImageToFrame(const NSImage& receiver, const CGRect& frame, const NSView* inView);

// drawCenteredInRect:size:operation:fraction:  The image scaled to `size`, in the middle of the rectangle: half of what
// is left, or lacks, rounded up, is to its left and below. The alpha is that of the image times `fraction`.
KELVANE_EXPORT void drawCenteredInRect(const NSImage& receiver, const CGRect& rect, const CGSize& size,
                                       NSCompositingOperation operation, double fraction);

namespace NSImageExtensions {

// imageNamed:ofType:inBundle:  The image in the bundle's file "name.ofType"; nil when one of the three is nil, there is
// no such file, or it cannot be read as an image (NSImage::imageWithContentsOfFile).
KELVANE_EXPORT Ref<NSImage> imageNamed(std::optional<TextView> name, std::optional<TextView> ofType,
                                       const NSBundle* inBundle);

}  // namespace NSImageExtensions

}  // namespace kelvane
