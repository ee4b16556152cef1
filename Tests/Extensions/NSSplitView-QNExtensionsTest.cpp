#include "Extensions/NSSplitView-QNExtensions.h"
#include "Support/FakeDesktop.h"
#include "Support/PreferencesTest.h"

namespace {

struct FakeSplitView : FakeViewOf<NSSplitView> {
  FakeSplitView(bool isVertical, const std::vector<CGSize>& panes) : myIsVertical(isVertical) {
    for (const CGSize& size : panes) mySubviews.push_back(std::make_shared<FakeView>(CGRect{{9, 9}, size}));
  }
  bool isVertical() const override { return myIsVertical; }
  std::vector<CGSize> sizes() const {
    std::vector<CGSize> sizes;
    for (const Ref<NSView>& pane : mySubviews) sizes.push_back(pane->frame().size);
    return sizes;
  }

  bool myIsVertical;
};

using NSSplitViewTest = PreferencesTest;

TEST_F(NSSplitViewTest, ExtentsComeBackInSinglePrecision) {
  using Sizes = std::vector<CGSize>;
  for (const bool isVertical : {true, false}) {
    const auto size = [&](double extent, double other) {
      return isVertical ? CGSize{extent, other} : CGSize{other, extent};
    };
    saveDividerPosition(FakeSplitView(isVertical, {size(200, 50), size(200.3, 60), size(7, 70)}), u"K");
    EXPECT_EQ(description(kept(u"K")), u"200");
    EXPECT_TRUE(isEqual(kept(u"K.frame2"), box(200.3F)));
    FakeSplitView restored(isVertical, {size(1, 2), size(3, 4), size(5, 6)});
    loadDividerPosition(restored, u"nothing");
    EXPECT_EQ(restored.sizes(), (Sizes{size(1, 2), size(3, 4), size(5, 6)}));
    loadDividerPosition(restored, u"K");
    EXPECT_EQ(restored.sizes(), (Sizes{size(200, 2), size(double{200.3F}, 4), size(5, 6)}));
  }
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
    FakeSplitView splitView(true, {{1, 2}, {3, 4}});
    loadDividerPosition(splitView, u"K");
    EXPECT_EQ(splitView.sizes(), (std::vector<CGSize>{{width1, 2}, {width2, 4}})) << utf8(description(first));
  }
  keep(box(NaN), u"K");
  FakeSplitView splitView(true, {{1, 2}});
  keep(box(1), u"K.frame2");
  EXPECT_THROW(loadDividerPosition(splitView, u"K"), std::out_of_range);  // the second one is not there
  EXPECT_TRUE(std::isnan(splitView.sizes()[0].width));
}

TEST_F(NSSplitViewTest, MissingPanesRaise) {
  const FakeSplitView one(true, {{200, 50}});
  EXPECT_EQ(firstSubview(one), one.mySubviews[0]);
  EXPECT_THAT([&] { firstSubview(FakeSplitView(true, {})); }, isBeyond("firstSubview"));
  EXPECT_THAT([&] { saveDividerPosition(one, u"K"); }, isBeyond("secondSubview"));
  EXPECT_EQ(description(kept(u"K")), u"200");  // kept before it came to that
}

}  // namespace
