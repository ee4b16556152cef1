#include "Platform/Foundation/Geometry.h"
#include "Support/Testing.h"

namespace {

static_assert(CGRectIsNull(CGRectNull) && CGRectIsEmpty(CGRectNull) && !CGRectIsNull(CGRectZero));
static_assert(CGRectStandardize({1, 2, -3, -4}) == CGRect(-2, -2, 3, 4));

// All rectangles of a small grid, backward ones too, against the definition: the cells that they cover. Edges count.
TEST(Geometry, RectanglesCoverCells) {
  const auto covers = [](const CGRect& rect, int x, int y) { return CGRectContainsPoint(rect, {x + 0.5, y + 0.5}); };
  std::mt19937 random(4);
  const auto between = [&random](int low, int high) {
    return low + static_cast<int>(random() % unsigned(high - low + 1));
  };
  for (int round = 0; round < 5000; ++round) {
    const CGRect a(between(-3, 3), between(-3, 3), between(-3, 3), between(-3, 3));
    const CGRect b(between(-3, 3), between(-3, 3), between(-3, 3), between(-3, 3));
    const CGRect common = CGRectIntersection(a, b);
    const CGRect around = CGRectUnion(a, b);
    SCOPED_TRACE(testing::PrintToString(a) + testing::PrintToString(b));
    bool anyCommon = false;
    bool anyOfA = false;
    for (int x = -7; x < 7; ++x) {
      for (int y = -7; y < 7; ++y) {
        ASSERT_EQ(covers(common, x, y), covers(a, x, y) && covers(b, x, y));
        ASSERT_TRUE(covers(around, x, y) || (!covers(a, x, y) && !covers(b, x, y)));
        anyCommon |= covers(common, x, y);
        anyOfA |= covers(a, x, y);
      }
    }
    ASSERT_EQ(CGRectIntersectsRect(a, b), anyCommon);
    ASSERT_EQ(CGRectIsNull(common), !anyCommon);
    ASSERT_EQ(CGRectIsEmpty(a), !anyOfA);
    ASSERT_EQ(CGRectGetMinX(around), std::min(CGRectGetMinX(a), CGRectGetMinX(b)));
    ASSERT_EQ(CGRectGetMaxY(around), std::max(CGRectGetMaxY(a), CGRectGetMaxY(b)));
    ASSERT_EQ(CGRectGetMidX(a), (CGRectGetMinX(a) + CGRectGetMaxX(a)) / 2);
  }
}

TEST(Geometry, EdgesNullAndNaN) {
  const CGRect square(0, 0, 2, 2);
  EXPECT_FALSE(CGRectContainsPoint(square, {NaN, 1}));
  EXPECT_TRUE(CGRectIsEmpty({0, 0, 1, NaN}));
  EXPECT_FALSE(CGRectIntersectsRect(square, {2, 0, 1, 1})) << "they only touch";
  EXPECT_FALSE(CGRectIntersectsRect(square, {NaN, 0, 1, 1}));
  EXPECT_EQ(CGRectUnion({0, 0, 1, 1}, {3, 4, 0, 0}), CGRect(0, 0, 3, 4));
  EXPECT_EQ(CGRectUnion(CGRectNull, square), square);
  EXPECT_TRUE(CGRectIsNull(CGRectUnion(CGRectNull, CGRectNull)));
  for (const CGRect& around : {CGRectUnion(square, {NaN, 0, 1, 1}), CGRectUnion({NaN, 0, 1, 1}, square),
                               CGRectUnion(square, {0, 0, NaN, 1}), CGRectUnion({0, 0, NaN, 1}, square)})
    EXPECT_TRUE(std::isnan(CGRectGetMaxX(around)));
  EXPECT_EQ(CGRectIntegral({0.5, -0.5, 1, 1}), CGRect(0, -1, 2, 2));
  EXPECT_EQ(CGRectIntegral({-1.5, 2.5, -1, -1}), CGRect(-3, 1, 2, 2));
}

TEST(Geometry, TextFormsReadBack) {
  EXPECT_EQ(NSStringFromPoint({0.1, -2}), u"{0.1, -2}");
  EXPECT_EQ(NSStringFromSize({1e300, infinity}), u"{1e+300, inf}");
  EXPECT_EQ(NSStringFromRect({1, 2.5, NaN, -0.0}), u"{{1, 2.5}, {nan, -0}}");
  EXPECT_EQ(NSPointFromString(u"\x3000{ \xA0 1 ,\x2028 2\r} "), (CGPoint{1, 2}));
  EXPECT_EQ(NSSizeFromString(u"{-inf,1e2}"), (CGSize{-infinity, 100}));
  for (const TextView text : {u"", u"{}", u"1, 2", u"{1, 2", u"{1, 2}}", u"{1 2}", u"{1, 2, 3}", u"{1, x}", u"{1, 2}x",
                              u"{1, \x0662}", u"{0x1, 2}", u"{1;2}", u"{1, -}", u"{{1, 2}}"})
    EXPECT_EQ(NSPointFromString(text), CGPoint{}) << utf8(text);
  for (const TextView text :
       {u"{1, 2}", u"{{1, 2}, {3, 4}", u"{{1, 2} {3, 4}}", u"{{1, 2}, {3, 4}} }", u"{{1, 2}, {3}}"})
    EXPECT_EQ(NSRectFromString(text), CGRectZero) << utf8(text);
}

}  // namespace
