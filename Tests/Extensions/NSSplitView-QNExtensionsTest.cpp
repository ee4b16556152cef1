#include <cmath>
#include <cstdlib>
#include <limits>

#include "Extensions/NSSplitView-QNExtensions.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "Support/FakeDesktop.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace kelvane {
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

class NSSplitViewTest : public testing::Test {
 protected:
  NSSplitViewTest() { setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1); }

  Ref<NSObject> kept(TextView key) const { return NSUserDefaults::standardUserDefaults().objectForKey(key); }
  void keep(const Ref<NSObject>& object, TextView key) {
    NSUserDefaults::standardUserDefaults().setObject(object, key);
  }

  TemporaryFolder folder;
};

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
  const struct {
    const char* name;
    Ref<NSObject> first, second;
    double width1, width2;
  } rows[] = {
      {"first alone", box(8), nullptr, 8, 3},
      {"second alone", nullptr, box(8.5), 1, 8.5},
      {"collapsed counts as not kept", box(0.0F), box(8), 1, 8},
      {"beyond measure", box(1e300), box(-1e300), 1, 3},
  };
  for (const auto& row : rows) {
    keep(row.first, u"K");
    keep(row.second, u"K.frame2");
    FakeSplitView splitView(true, {{1, 2}, {3, 4}});
    loadDividerPosition(splitView, u"K");
    EXPECT_EQ(splitView.sizes(), (std::vector<CGSize>{{row.width1, 2}, {row.width2, 4}})) << row.name;
  }
  keep(box(std::numeric_limits<double>::quiet_NaN()), u"K");
  FakeSplitView splitView(true, {{1, 2}});
  keep(box(1), u"K.frame2");
  EXPECT_THROW(loadDividerPosition(splitView, u"K"), std::out_of_range);  // the second one is not there
  EXPECT_TRUE(std::isnan(splitView.sizes()[0].width));
}

TEST_F(NSSplitViewTest, MissingPanesRaise) {
  const FakeSplitView one(true, {{200, 50}});
  EXPECT_EQ(firstSubview(one), one.mySubviews[0]);
  EXPECT_THAT([&] { firstSubview(FakeSplitView(true, {})); },
              ThrowsMessage<std::out_of_range>(HasSubstr("firstSubview")));
  EXPECT_THAT([&] { saveDividerPosition(one, u"K"); }, ThrowsMessage<std::out_of_range>(HasSubstr("secondSubview")));
  EXPECT_EQ(description(kept(u"K")), u"200");  // kept before it came to that
}

}  // namespace
}  // namespace kelvane
