#include "Math/QNGeometryUtilities.h"
#include "Support/FakeDesktop.h"
#include "Support/Testing.h"

namespace {

using G = QNGeometryUtilities;

static_assert(G::alignImageRectToScreenGrid({0.5, -0.5, 1, 1}) == CGRect(0, -1, 2, 2));
static_assert(G::alignRectToScreenGrid({10.2, 20.7, 30.1, 40.0}, 1) == CGRect(10.5, 20.5, 31, 41));
static_assert(G::alignRectToScreenGrid({10.2, 20.7, 30.0, 40.0}, 2) == CGRect(10.25, 20.75, 30.5, 40.5));
static_assert(G::cropRectForInputSize({300, 400}, {100, 100}) == CGRect(0, 50, 300, 300));
static_assert(G::cropRectForInputSize({0, 0}, {100, 100}) == CGRectZero);
static_assert(G::fitRectWithHWRatio(0.5, {9, 9, 200, 50}) == CGRect(50, 0, 100, 50));
static_assert(G::fitRectWithHWRatio(0.5, {0, 0, 100, 200}) == CGRect(-150, 0, 400, 200));
static_assert(G::fitRectWithHWRatio(3, {0, 0, 100, 200}) == CGRect(0, -50, 100, 300));
static_assert(G::limitMaxWidthHeight({1000, 500}, {300, 200}) == CGSize{200, 100});
static_assert(G::limitMaxWidthHeight({150.5, 100}, {300, 200}) == CGSize{150.5, 100});
static_assert(G::limitMaxWidthHeight({3, 3}, {-1, 5}) == CGSize{-1, -1});
static_assert(G::scaleDownFactorForInputSize({400, 300}, {100, 100}) == 0.25);
static_assert(G::scaleDownFactorForInputSize({-10, 10}, {100, 100}) == -10);
static_assert(G::scaleFactorForInputSize({100, 50}, {200, 200}) == 4);

TEST(QNGeometryUtilities, NoNumberFlowsThrough) {
  const auto shown = [](const CGRect& rect) { return NSStringFromRect(rect); };
  EXPECT_EQ(G::fitRectWithHWRatio(0, {0, 0, 100, 100}), CGRect(0, 0, 100, 0));
  EXPECT_EQ(shown(G::fitRectWithHWRatio(NaN, {0, 0, 100, 100})), u"{{nan, 0}, {nan, 100}}");
  EXPECT_EQ(shown(G::cropRectForInputSize({400, 300}, {0, 0})), u"{{nan, 0}, {nan, 300}}");
  EXPECT_EQ(shown(G::alignImageRectToScreenGrid({NaN, 0.5, 1, infinity})), u"{{nan, 0}, {nan, inf}}");
  const CGSize unlimited = G::limitMaxWidthHeight({NaN, 3}, {2, 2});
  EXPECT_TRUE(std::isnan(unlimited.width) && std::isnan(unlimited.height));
  EXPECT_EQ(G::scaleDownFactorForInputSize({0, 0}, {100, 100}), 1);
  EXPECT_EQ(G::scaleFactorForInputSize({0, 50}, {200, 200}), infinity);
}

TEST(QNGeometryUtilities, ScreenGridAsksTheDesktop) {
  struct FineDesktop : FakeDesktop {
    double userSpaceScaleFactor() const override { return 2; }
  };
  EXPECT_EQ(G::alignRectToScreenGrid({10.2, 20.7, 30.1, 40.0}), CGRect(10.5, 20.5, 31, 41));
  Desktop::install(std::make_shared<FineDesktop>());
  EXPECT_EQ(G::alignRectToScreenGrid({10.2, 20.7, 30.0, 40.0}), CGRect(10.25, 20.75, 30.5, 40.5));
  Desktop::install(nullptr);
}

TEST(QNGeometryUtilities, ImagesCoverFrames) {
  CapturedSystemLog log;
  const std::tuple<double, CGSize, double, CGSize, TextView> rows[] = {
      {0.5, {100, 100}, 0, {200, 100}, u""},
      {2, {100, 50}, 0.1, {110, 220}, u""},
      {2, {50, 200}, 0, {100, 200}, u""},
      {3, {100, 200}, 0, {100, 300}, u""},
      {2, {100, 200}, -0.5, {50, 100}, u"145 - Image does note scale well! 1"},
      {2, {100, 100}, -0.5, {50, 100}, u"152 - Image does note scale well! 2"},
      {0.5, {50, 100}, -0.6, {80, 40}, u"161 - Image does note scale well! 3"},
      {1, {100, 100}, -0.5, {50, 50}, u"172 - Image does note scale well! 4"},
      {NaN, {100, 100}, 0, {NaN, 100}, u""},
      {-1, {100, 50}, 0, {100, -100}, u"172 - Image does note scale well! 4"},
      {0, {0, 0}, 0, {NaN, 0}, u""},
      {0.5, {0, 0}, 0, {0, 0}, u""},
  };
  for (const auto& [ratio, frame, overlap, wanted, warning] : rows) {
    const CGSize size = G::fitImageWithRatio(ratio, {{7, 7}, frame}, overlap);
    EXPECT_EQ(NSStringFromSize(size), NSStringFromSize(wanted)) << ratio;
    const std::vector<Text> messages = log.take();
    if (warning.empty())
      EXPECT_THAT(messages, IsEmpty()) << ratio;
    else
      EXPECT_THAT(messages, ElementsAre(u"WARN +[QNGeometryUtilities fitImageWithRatio:intoRect:overlapFactor:]:" +
                                        Text(warning)));
  }
  // So large a ratio comes out 8 smaller.
  G::fitImageWithRatio(67007738e9, {0, 0, 9.8, 9.8}, 0);
  EXPECT_THAT(log.take(),
              ElementsAre(u"WARN +[QNGeometryUtilities fitImageWithRatio:intoRect:overlapFactor:]:179 - Image "
                          u"ratio has been spoiled. Was 67007738000000000.000000 is "
                          u"67007737999999992.000000"));
}

TEST(QNGeometryUtilities, FillingCoversTheFrame) {
  EXPECT_EQ(G::fillRect({10, 10, 100, 100}, {5, 5, 200, 100}), CGRect(-40, 10, 200, 100));
  EXPECT_EQ(G::fillRect({0.5, 0, 99, 100}, {5, 5, 100, 200}), CGRect(0, -49, 100, 198));
}

}  // namespace
