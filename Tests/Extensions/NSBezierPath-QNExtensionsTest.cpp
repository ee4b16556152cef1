#include "Extensions/NSBezierPath-QNExtensions.h"
#include "Support/PathText.h"
#include "Support/Testing.h"

namespace {

using namespace NSBezierPathExtensions;

// The picture of the gallery shows every mask.
TEST(NSBezierPathExtensions, CornersOfAMask) {
  const char* const all = "M21,24 C1,24>1,4r5 C1,4>41,4r5 C41,4>41,24r5 C41,24>1,24r5 Z";
  const std::pair<std::uint32_t, const char*> rows[] = {
      {0, "M21,24 L1,24 L1,4 L1,4 L41,4 L41,24 L1,24 Z"},
      {QNTopLeftCorner, "M21,24 C1,24>1,4r5 L1,4 L41,4 L41,24 L1,24 Z"},
      {QNTopRightCorner | QNBottomLeftCorner, "M21,24 L1,24 C1,4>41,4r5 L1,4 L41,4 C41,24>1,24r5 Z"},
      // The bottom left corner is cut off.
      {QNTopLeftCorner | QNBottomRightCorner, "M21,24 C1,24>1,4r5 C41,4>41,24r5 L41,24 L1,24 Z"},
      {15, all},
  };
  const CGRect rect(1, 4, 40, 20);
  for (const auto& [mask, elements] : rows) {
    EXPECT_EQ(shown(bezierPathWithRoundedRect(rect, 5, mask).elements()), elements) << mask;
    EXPECT_EQ(shown(bezierPathWithRoundedRect(rect, 5, mask | 0xFFFFFFF0).elements()), elements) << mask;
  }
  EXPECT_EQ(shown(bezierPathWithRoundedRect(rect, 5).elements()), all);
}

TEST(NSBezierPathExtensions, DegenerateRoundedRectangles) {
  const char* const plain = "M0,0 L40,0 L40,20 L0,20 Z";
  const char* const ends = "M20,20 C0,20>0,0r10 C0,0>40,0r10 C40,0>40,20r10 C40,20>0,20r10 Z";
  const std::tuple<CGRect, double, const char*> rows[] = {
      {{0, 0, 40, 20}, 50, ends},  {{0, 0, 40, 20}, infinity, ends}, {{0, 0, 40, 20}, 0, plain},
      {{0, 0, 40, 20}, -5, plain}, {{0, 0, 40, 20}, NaN, plain},     {{0, 0, 40, 0}, 5, ""},
      {{0, 0, 0, 20}, 5, ""},      {{40, 0, -40, 20}, 5, ""},        {{0, 20, 40, -20}, 0, ""},
      {{0, 0, NaN, 20}, 5, ""},    {{0, 0, 40, NaN}, NaN, ""},
  };
  for (const auto& [rect, radius, elements] : rows) {
    EXPECT_EQ(shown(bezierPathWithRoundedRect(rect, radius).elements()), elements);
    EXPECT_EQ(shown(bezierPathWithRoundedRect(rect, radius, 15).elements()), elements);
  }
}

TEST(NSBezierPathExtensions, Plates) {
  const std::tuple<CGRect, const char*, const char*, const char*> rows[] = {
      // Narrower than high: the half circles overlap.
      {{5, 5, 10, 20},
       "M15,25 A15,15r10:90-270 A5,15r10:270-90 Z",
       "M15,25 A15,15r10:90-270 L15,5 L15,25 Z",
       "M15,25 L5,25 L5,5 A5,15r10:270-90 Z"},
      {{0, 0, 100, 0}, "", "", ""},
      {{0, 0, 100, -20}, "", "", ""},
      {{0, 0, 100, NaN}, "", "", ""},
  };
  for (const auto& [rect, plate, left, right] : rows) {
    EXPECT_EQ(shown(bezierPathWithPlateInRect(rect).elements()), plate);
    EXPECT_EQ(shown(bezierPathWithLeftPlateInRect(rect).elements()), left);
    EXPECT_EQ(shown(bezierPathWithRightPlateInRect(rect).elements()), right);
  }
}

}  // namespace
