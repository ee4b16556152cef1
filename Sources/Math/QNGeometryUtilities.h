#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"

namespace kelvane {

// Fits rectangles and sizes into one another, and aligns them to pixels. The HW ratio of a rectangle or an image is its
// height divided by its width.
//
// ```cpp
// const CGSize photo{400, 300};
// const CGRect place = QNGeometryUtilities::fitRectWithHWRatio(photo.height / photo.width, {0, 0, 100, 100});
// const CGRect cut = QNGeometryUtilities::cropRectForInputSize(photo, {100, 100});  // {{50, 0}, {300, 300}}
// ```
//
// Nothing is guarded: sizes and ratios of 0, below 0, infinite or NaN flow through the formulas as floating-point
// numbers do, and a NaN is not greater than 1 where a ratio decides. "Integral" means CGRectIntegral. Any thread,
// except where it is said.
class KELVANE_EXPORT QNGeometryUtilities {
 public:
  QNGeometryUtilities() = delete;

  // alignImageRectToScreenGrid:  The rectangle's integral.
  //   {{0.5, 0.5}, {1, 1}} => {{0, 0}, {2, 2}}
  static constexpr CGRect alignImageRectToScreenGrid(const CGRect& rect) { return CGRectIntegral(rect); }

  // alignRectToScreenGrid:  The rectangle's integral in the main screen's pixels, with its origin moved to the middle
  // of a pixel, so that lines one pixel wide along its edges are sharp. Main thread, where the desktop knows the
  // screen.
  static CGRect alignRectToScreenGrid(const CGRect& rect);
  // The same for a screen that has `scaleFactor` pixels per unit.
  //   {{10.2, 20.7}, {30.1, 40}}, 1 => {{10.5, 20.5}, {31, 41}}
  //   {{10.2, 20.7}, {30, 40}}, 2   => {{10.25, 20.75}, {30.5, 40.5}}
  static constexpr CGRect alignRectToScreenGrid(const CGRect& rect, double scaleFactor) {
    const double s = scaleFactor;
    const CGRect r = CGRectIntegral({rect.origin.x * s, rect.origin.y * s, rect.size.width * s, rect.size.height * s});
    return {(r.origin.x + 0.5) / s, (r.origin.y + 0.5) / s, r.size.width / s, r.size.height / s};
  }

  // cropRectForInputSize:outputSize:  The largest part of the input that has the output's proportions, in its middle;
  // not rounded.
  //   400 x 300, 100 x 100 => {{50, 0}, {300, 300}}
  //   300 x 400, 100 x 100 => {{0, 50}, {300, 300}}
  //   0 x 0, 100 x 100     => {{0, 0}, {0, 0}}
  //   400 x 300, 0 x 0     => NaN in x and width: {{nan, 0}, {nan, 300}}
  static constexpr CGRect cropRectForInputSize(const CGSize& input, const CGSize& outputSize) {
    CGSize crop{input.height * outputSize.width / outputSize.height, input.height};
    if (crop.width > input.width) crop = {input.width, outputSize.height * input.width / outputSize.width};
    return {{(input.width - crop.width) * 0.5, (input.height - crop.height) * 0.5}, crop};
  }

  // fillRect:withRect:  The smallest rectangle with the image's proportions that covers the frame, in its middle;
  // integral. Its warnings are those of `fitImageWithRatio`.
  //   {{10, 10}, {100, 100}}, {{0, 0}, {200, 100}} => {{-40, 10}, {200, 100}}
  static CGRect fillRect(const CGRect& frame, const CGRect& withRect);

  // fitRectWithHWRatio:intoRect:  The largest rectangle of that ratio within a frame of `intoRect`'s size, whose origin
  // does not count; integral. It is in the middle with two exceptions: where a ratio up to 1 has to be fitted by width,
  // it stays at the bottom, and where a ratio above 1 meets a frame that is higher than wide, it takes the full width,
  // however far it then stands out above and below.
  //   0.5, 200 x 50   => {{50, 0}, {100, 50}}
  //   0.25, 100 x 100 => {{0, 0}, {100, 25}}
  //   2, 100 x 50     => {{37, 0}, {26, 50}}
  //   3, 100 x 200    => {{0, -50}, {100, 300}}
  //   0, 100 x 100    => {{0, 0}, {100, 0}}
  //   nan, 100 x 100  => {{nan, 0}, {nan, 100}}
  static constexpr CGRect fitRectWithHWRatio(double ratio, const CGRect& intoRect) {
    const auto [w, h] = intoRect.size;
    const bool isHighFrame = h / w > 1;
    if (ratio > 1 && isHighFrame) return CGRectIntegral({0, (h - ratio * w) * 0.5, w, ratio * w});
    CGSize size{h / ratio, h};
    if (!(ratio > 1) && !isHighFrame && size.width > w) size = {w, ratio * w};
    return CGRectIntegral({(w - size.width) * 0.5, 0, size.width, size.height});
  }

  // fitImageWithRatio:intoRect:overlapFactor:  The size of an image of that HW ratio that covers a frame of
  // `intoRect`'s size, made larger by `overlapFactor` times that size.
  //   0.5, 100 x 100, 0 => 200 x 100      2, 100 x 50, 0.1 => 110 x 220
  //   2, 50 x 200, 0    => 100 x 200      3, 100 x 200, 0  => 100 x 300
  //   0.5, 50 x 100, -0.6 => 80 x 40
  // With a factor below 0 the frame may not be covered; where a ratio up to 1 meets a frame that is higher than wide,
  // not even a better size is tried. That, and a result whose own ratio is off by 1 or more, is logged as a warning,
  // and the size given all the same. Threads as for the logger.
  static CGSize fitImageWithRatio(double ratio, const CGRect& intoRect, double overlapFactor);

  // limitMaxWidthHeight:toMaxDimension:  The size made smaller, if need be, so that its larger side fits the smaller
  // one of the limit, and then rounded down.
  //   1000 x 500, 300 x 200 => 200 x 100      150 x 100, 300 x 200 => 150 x 100      0.5 x 0.5, 1 x 1 => 0.5 x 0.5
  static constexpr CGSize limitMaxWidthHeight(const CGSize& size, const CGSize& toMaxDimension) {
    const double limit = CGMin(toMaxDimension.width, toMaxDimension.height);
    const double larger = CGMax(size.width, size.height);
    if (limit >= larger) return size;
    const double scale = limit / larger;
    return {CGFloor(size.width * scale), CGFloor(size.height * scale)};
  }

  // scaleDownFactorForInputSize:outputSize:  What the input is to be multiplied with to fit into the output; 1 when it
  // fits as it is.
  //   400 x 300, 100 x 100 => 0.25      10 x 10, 100 x 100 => 1      0 x 0, 100 x 100 => 1      0 x 0, 0 x 0 => nan
  static constexpr double scaleDownFactorForInputSize(const CGSize& input, const CGSize& outputSize) {
    return CGMin(1, CGMin(outputSize.width / input.width, outputSize.height / input.height));
  }

  // scaleFactorForInputSize:outputSize:  What the input is to be multiplied with to cover the output.
  //   100 x 50, 200 x 200 => 4      0 x 50, 200 x 200 => inf
  static constexpr double scaleFactorForInputSize(const CGSize& input, const CGSize& outputSize) {
    return CGMax(outputSize.height / input.height, outputSize.width / input.width);
  }
};

}  // namespace kelvane
