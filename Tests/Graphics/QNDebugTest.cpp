#include "Graphics/QNDebug.h"
#include "Support/RecordingDesktop.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

TEST(QNDebug, OutlinesAndCrosses) {
  QNDebug::drawRect({0, 0, 1, 1}, NSColor::redColor());
  RecordingContext context;
  const CurrentContextScope scope(&context);
  const std::string red = "colour NSCalibratedRGBColorSpace 1 0 0 1";
  const std::string grey = "colour NSCalibratedWhiteColorSpace 0.5 1";
  const std::string outline = "M1,2 L5,2 L5,4 L1,4 Z";
  const std::string crossed = outline + " M1,2 L5,4 M1,4 L5,2";
  QNDebug::drawRect({1, 2, 4, 2}, NSColor::redColor());
  EXPECT_THAT(context.take(), ElementsAre("save", "fill " + grey, "stroke " + grey, "fill " + outline, "fill " + red,
                                          "stroke " + red, "stroke 2 " + crossed, "restore"));
  QNDebug::drawRect({1, 2, 4, 2}, NSColor::redColor(), false);
  EXPECT_THAT(context.take(), ElementsAre("save", "fill " + red, "stroke " + red, "stroke 2 " + crossed, "restore"));
}

}  // namespace
}  // namespace kelvane
