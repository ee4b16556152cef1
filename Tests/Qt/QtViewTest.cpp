#include <QWidget>

#include "Extensions/NSView-QNExtensions.h"
#include "Qt/QtDesktop.h"
#include "Support/Testing.h"

namespace {

// A parent of 400 x 300 with a child at (10, 20) of Qt's, 100 x 30.
struct QtViews : testing::Test {
  QtViews() {
    myParent->resize(400, 300);
    myChild->setGeometry(10, 20, 100, 30);
  }

  std::unique_ptr<QWidget> myParent = std::make_unique<QWidget>();
  QWidget* myChild = new QWidget(myParent.get());
  Ref<NSView> myView = viewFor(*myChild);
};

TEST_F(QtViews, HaveOneAdapterEach) {
  EXPECT_EQ(viewFor(*myChild), myView);
  EXPECT_EQ(myView->superview(), viewFor(*myParent));
  EXPECT_THAT(viewFor(*myParent)->subviews(), ElementsAre(myView));
  EXPECT_EQ(myView->window(), windowFor(*myParent));
  EXPECT_EQ(windowFor(*myChild)->contentView(), viewFor(*myParent));
}

TEST_F(QtViews, CountUpwards) {
  EXPECT_EQ(myView->frame(), CGRect(10, 250, 100, 30));
  EXPECT_EQ(myView->bounds(), CGRect(0, 0, 100, 30));
  centerVerticalyInSuperview(myView);
  EXPECT_EQ(myChild->geometry(), QRect(150, 20, 100, 30));
  // The lower left corner stays where it is, also where a limit holds the size.
  myChild->setMaximumHeight(50);
  setFrameToSize(myView, {50, 500}, {100, 0}, {0, 300});
  EXPECT_EQ(myChild->geometry(), QRect(150, 0, 100, 50));
  myView->setFrame({NaN, 0, 10, 10});
  myView->setFrameSize({10, infinity});
  EXPECT_EQ(myChild->geometry(), QRect(150, 0, 100, 50));
  const std::tuple<CGSize, CGSize, CGSize, CGSize> rows[] = {
      {{50, 40}, {0, 0}, {0, 0}, {50, 40}},
      {{50, 40}, {100, 45}, {60, 0}, {60, 45}},  // the maximum counts
      {{50, 40}, {60, 0}, {0, 30}, {60, 30}},
  };
  for (const auto& [size, minimum, maximum, result] : rows) {
    setFrameToSize(myView, size, minimum, maximum);
    EXPECT_EQ(myView->frame().size, result);
    myView->setFrameSize(size);
    allignFrameToMinSize(myView, minimum, maximum);
    EXPECT_EQ(myView->frame().size, result);
  }
  myView->setFrame({0.5, 0.5, 10.4, 10.5});
  EXPECT_EQ(myView->frame(), CGRect(1, 1, 10, 11));
}

TEST_F(QtViews, CountDownwardsIfTheySaySo) {
  setViewFlipped(*myParent, true);
  EXPECT_TRUE(coordinateOrigin(viewFor(*myParent)) && !coordinateOrigin(nullptr));
  EXPECT_EQ(myView->frame(), CGRect(10, 20, 100, 30));
  myView->setFrame({1, 2, 3, 4});
  EXPECT_EQ(myChild->geometry(), QRect(1, 2, 3, 4));
}

TEST_F(QtViews, ConvertBetweenEachOther) {
  const Ref<NSView> parent = viewFor(*myParent);
  EXPECT_EQ(myView->convertRect({10, 250, 5, 5}, parent), CGRect(0, 0, 5, 5));
  EXPECT_EQ(parent->convertRect({0, 0, 5, 5}, myView), CGRect(10, 250, 5, 5));
  EXPECT_EQ(myView->convertRect({10, 250, 5, 5}, nullptr), CGRect(0, 0, 5, 5));
  setViewFlipped(*myChild, true);
  EXPECT_EQ(myView->convertRect({10, 250, 5, 5}, parent), CGRect(0, 25, 5, 5));
  setViewFlipped(*myChild, false);

  centerOriginInBounds(myView);
  EXPECT_EQ(myView->bounds(), CGRect(-50, -15, 100, 30));
  EXPECT_EQ(myView->convertRect({10, 250, 5, 5}, parent), CGRect(-50, -15, 5, 5));
  EXPECT_EQ(myView->frame(), CGRect(10, 250, 100, 30)) << "the view itself has moved";
  centerOriginInRect(myView, {1, 2, 3, 4});
  EXPECT_EQ(myView->bounds(), CGRect(-52.5, -19, 100, 30));
  // Its own frame, which its superview counts, as it sees that.
  centerOriginInFrame(myView);
  EXPECT_EQ(myView->bounds(), CGRect(-50, -15, 100, 30));
  EXPECT_EQ(centerRect(myView, {7, 7, 10, 20}, {0, 0}), CGRect(-5, -10, 10, 20));
  EXPECT_EQ(centerRect(nullptr, {1, 2, 3, 4}, {5, 6}), CGRectZero);
}

TEST_F(QtViews, AreTheHostsWhenTakenOut) {
  QWidget another(myParent.get());
  removeAllSubviews(viewFor(*myParent));
  removeAllSubviews(nullptr);
  EXPECT_TRUE(viewFor(*myParent)->subviews().empty());
  const std::unique_ptr<QWidget> child(myChild);
  EXPECT_EQ(child->parentWidget(), nullptr);
  EXPECT_EQ(viewFor(*child), myView);
  EXPECT_EQ(myView->superview(), nullptr);
  EXPECT_EQ(myView->window(), nullptr);
}

TEST_F(QtViews, OutliveTheirWidgets) {
  const Ref<NSView> parent = viewFor(*myParent);
  const std::weak_ptr<NSView> unheld = viewFor(*new QWidget(myParent.get()));
  EXPECT_FALSE(unheld.expired());
  myParent.reset();
  EXPECT_TRUE(unheld.expired());
  for (const Ref<NSView>& view : {parent, myView}) {
    view->setFrame({1, 2, 3, 4});
    view->setFrameSize({1, 2});
    view->removeFromSuperview();
    EXPECT_EQ(view->frame(), CGRect());
    EXPECT_EQ(view->bounds(), CGRect());
    EXPECT_EQ(view->convertRect({1, 2, 3, 4}, nullptr), CGRect());
    EXPECT_TRUE(!view->superview() && !view->window() && view->subviews().empty());
  }
}

// A widget that saves its place as it goes, with its parent that is going already.
struct SavesItsPlace : QWidget {
  using QWidget::QWidget;
  ~SavesItsPlace() override { viewFor(*this)->frame(); }
};

TEST(QtViewsOfOnePlaceInMemory, AreOfTheWidgetThatIsThere) {
  std::optional<QWidget> parent(std::in_place);
  const Ref<NSView> first = viewFor(*parent);
  new SavesItsPlace(&*parent);
  parent.reset();
  parent.emplace();
  const Ref<NSView> second = viewFor(*parent);
  EXPECT_NE(second, first);
  EXPECT_EQ(widgetFor(second.get()), &*parent);
  EXPECT_EQ(viewFor(*parent), second);
}

}  // namespace
