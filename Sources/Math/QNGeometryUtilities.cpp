#include "Math/QNGeometryUtilities.h"

#include <cmath>

#include "Platform/Desktop/Desktop.h"
#include "Platform/Foundation/Format.h"
#include "Utilities/QNLogger.h"

namespace kelvane {
namespace {

void warn(int lineNumber, TextView message) {
  QNLogger::sharedLogger().warn(lineNumber, "Sources/Math/QNGeometryUtilities",
                                "+[QNGeometryUtilities fitImageWithRatio:intoRect:overlapFactor:]", message);
}

// A high image in a high frame: by height, unless that leaves the frame uncovered.
CGSize coverHighByHigh(double ratio, const CGSize& frame, const CGSize& grown) {
  const CGSize byWidth{grown.width, grown.width * ratio};
  if (frame.height > grown.height) return byWidth;
  const CGSize byHeight{grown.height / ratio, grown.height};
  return frame.width > byHeight.width ? byWidth : byHeight;
}

// A wide image in a wide frame: the same with another test.
CGSize coverWideByWide(double ratio, const CGSize& frame, const CGSize& grown) {
  const CGSize byHeight{grown.height / ratio, grown.height};
  if (frame.height > byHeight.height || frame.width > byHeight.width) return {grown.width, grown.width * ratio};
  return byHeight;
}

}  // namespace

CGRect QNGeometryUtilities::alignRectToScreenGrid(const CGRect& rect) {
  return alignRectToScreenGrid(rect, Desktop::current().userSpaceScaleFactor());
}

CGSize QNGeometryUtilities::fitImageWithRatio(double ratio, const CGRect& intoRect, double overlapFactor) {
  const CGSize frame = intoRect.size;
  const CGSize grown{frame.width * overlapFactor + frame.width, frame.height * overlapFactor + frame.height};
  const bool isHighImage = ratio > 1;
  const bool isHighFrame = frame.height / frame.width > 1;
  CGSize size;
  if (isHighImage)
    size = isHighFrame ? coverHighByHigh(ratio, frame, grown) : CGSize{grown.width, grown.width * ratio};
  else
    size = isHighFrame ? CGSize{grown.height / ratio, grown.height} : coverWideByWide(ratio, frame, grown);

  // The line numbers and texts are those that hosts look for in their logs.
  if (frame.height > size.height || frame.width > size.width) {
    if (isHighImage)
      isHighFrame ? warn(145, u"Image does note scale well! 1") : warn(152, u"Image does note scale well! 2");
    else
      isHighFrame ? warn(161, u"Image does note scale well! 3") : warn(172, u"Image does note scale well! 4");
  }
  const double achieved = size.height / size.width;
  if (std::abs(achieved - ratio) >= 1)
    warn(179, format(u"Image ratio has been spoiled. Was %.6f is %.6f", ratio, achieved));
  return size;
}

CGRect QNGeometryUtilities::fillRect(const CGRect& frame, const CGRect& withRect) {
  const CGSize size = fitImageWithRatio(withRect.size.height / withRect.size.width, frame, 0);
  return CGRectIntegral({frame.origin.x - CGFloor((size.width - frame.size.width) * 0.5),
                         frame.origin.y - CGFloor((size.height - frame.size.height) * 0.5), size.width, size.height});
}

}  // namespace kelvane
