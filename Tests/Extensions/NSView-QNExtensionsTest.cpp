#include "Extensions/NSView-QNExtensions.h"
#include "Support/FakeDesktop.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

TEST(NSView, OriginsMoveToTheMiddle) {
  const auto view = std::make_shared<FakeView>(CGRect{10, 20, 100, 50});
  const auto parent = std::make_shared<FakeView>();
  view->mySuperview = parent;
  centerOriginInRect(view, {1, 2, 3, 4});
  EXPECT_EQ(view->bounds(), CGRect(-2.5, -4, 100, 50));
  centerOriginInBounds(view);
  EXPECT_EQ(view->bounds(), CGRect(-50, -25, 100, 50));
  view->myOrigin = {7, 0};
  centerOriginInFrame(view);
  EXPECT_EQ(view->bounds(), CGRect(-50, -25, 100, 50));
  EXPECT_EQ(view->myConvertedFrom, parent);
  view->myIsFlipped = true;
  EXPECT_TRUE(coordinateOrigin(view));
  EXPECT_EQ(centerRect(view, {7, 7, 10, 20}, {0, 0}), CGRect(-5, -10, 10, 20));
}

TEST(NSView, SizesStayWithinLimits) {
  const auto view = std::make_shared<FakeView>();
  const struct {
    CGSize size, minimum, maximum, result;
  } rows[] = {
      {{50, 500}, {100, 0}, {0, 300}, {100, 300}},
      {{50, 500}, {0, 0}, {0, 0}, {50, 500}},
      {{50, 500}, {200, 200}, {100, 100}, {100, 100}},  // the maximum counts
      {{-5, -5}, {-3, 0}, {0, -8}, {-3, -8}},
  };
  for (const auto& row : rows) {
    view->myFrame = {3, 4, 1, 1};
    setFrameToSize(view, row.size, row.minimum, row.maximum);
    EXPECT_EQ(view->frame(), CGRect({3, 4}, row.result));
    view->myFrame = {{3, 4}, row.size};
    allignFrameToMinSize(view, row.minimum, row.maximum);
    EXPECT_EQ(view->frame(), CGRect({3, 4}, row.result));
  }
}

TEST(NSView, CentersOnTheVerticalLine) {
  const auto view = std::make_shared<FakeView>(CGRect{10, 20, 100, 30});
  const auto parent = std::make_shared<FakeView>(CGRect{900, 900, 400, 500});
  view->mySuperview = parent;
  centerVerticalyInSuperview(view);
  EXPECT_EQ(view->frame(), CGRect(150, 20, 100, 30));
}

TEST(NSView, RemovesAllSubviewsWhileTheListShrinks) {
  const auto parent = std::make_shared<FakeView>();
  for (int i = 0; i < 5; ++i) {
    parent->mySubviews.push_back(std::make_shared<FakeView>());
    as<FakeView>(parent->mySubviews.back())->mySuperview = parent;
  }
  removeAllSubviews(parent);
  EXPECT_TRUE(parent->subviews().empty());
  removeAllSubviews(nullptr);
  EXPECT_EQ(centerRect(nullptr, {1, 2, 3, 4}, {5, 6}), CGRectZero);
  EXPECT_FALSE(coordinateOrigin(nullptr));
}

}  // namespace
}  // namespace kelvane
