#include "Extensions/NSSplitView-QNExtensions.h"
#include "Support/FakeDesktop.h"
#include "Support/PreferencesTest.h"

namespace {

struct FakeSplitView : FakeViewOf<NSSplitView> {
  explicit FakeSplitView(const std::vector<CGSize>& panes, bool isVertical = true) : myIsVertical(isVertical) {
    for (const CGSize& size : panes) mySubviews.push_back(std::make_shared<FakeView>(CGRect{{9, 9}, size}));
  }
  bool isVertical() const override { return myIsVertical; }
  CGSize size(std::size_t pane) const { return mySubviews[pane]->frame().size; }

  bool myIsVertical;
};

using NSSplitViewTest = PreferencesTest;

TEST_F(NSSplitViewTest, ExtentsComeBackInSinglePrecision) {
  saveDividerPosition(FakeSplitView({{200, 50}, {200.3, 60}, {7, 70}}), u"K");
  EXPECT_EQ(description(kept(u"K")), u"200");
  EXPECT_TRUE(isEqual(kept(u"K.frame2"), box(200.3F)));
  FakeSplitView restored({{2, 1}, {4, 3}, {6, 5}}, false);
  loadDividerPosition(restored, u"nothing");
  EXPECT_EQ(restored.size(0), CGSize(2, 1));
  loadDividerPosition(restored, u"K");
  EXPECT_EQ(restored.size(0), CGSize(2, 200));
  EXPECT_EQ(restored.size(1), CGSize(4, double{200.3F}));
  EXPECT_EQ(restored.size(2), CGSize(6, 5));
}

TEST_F(NSSplitViewTest, PanesAreRestoredEachForItself) {
  const std::tuple<Ref<NSObject>, Ref<NSObject>, double, double> rows[] = {
      {box(8), nullptr, 8, 3},
      {nullptr, box(8.5), 1, 8.5},
      {box(0.0F), box(8), 1, 8},  // collapsed counts as not kept
      {box(1e300), box(-1e300), 1, 3},
  };
  for (const auto& [first, second, width1, width2] : rows) {
    keep(first, u"K");
    keep(second, u"K.frame2");
    FakeSplitView splitView({{1, 2}, {3, 4}});
    loadDividerPosition(splitView, u"K");
    EXPECT_EQ(splitView.size(0), CGSize(width1, 2)) << utf8(description(first));
    EXPECT_EQ(splitView.size(1), CGSize(width2, 4)) << utf8(description(second));
  }
  keep(box(NaN), u"K");
  FakeSplitView splitView({{1, 2}});
  keep(box(1), u"K.frame2");
  EXPECT_THROW(loadDividerPosition(splitView, u"K"), std::out_of_range);  // the second one is not there
  EXPECT_TRUE(std::isnan(splitView.size(0).width));
}

TEST_F(NSSplitViewTest, MissingPanesRaise) {
  const FakeSplitView one({{200, 50}});
  EXPECT_EQ(firstSubview(one), one.mySubviews[0]);
  EXPECT_THAT([&] { firstSubview(FakeSplitView({})); }, isBeyond("firstSubview"));
  EXPECT_THAT([&] { saveDividerPosition(one, u"K"); }, isBeyond("secondSubview"));
  EXPECT_EQ(description(kept(u"K")), u"200");  // kept before it came to that
}

}  // namespace
