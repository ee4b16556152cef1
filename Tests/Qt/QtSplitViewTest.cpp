#include <QApplication>
#include <QComboBox>
#include <QMouseEvent>
#include <QSplitter>

#include "Extensions/NSPopUpButton-QNExtensions.h"
#include "Extensions/NSSplitView-QNExtensions.h"
#include "Qt/QtDesktop.h"
#include "Support/PreferencesTest.h"

namespace {

struct QtSplitViewTest : PreferencesTest {
  // A window that is nothing but a splitter with so many panes.
  struct Window {
    explicit Window(int panes, Qt::Orientation orientation = Qt::Horizontal) : splitter(orientation) {
      splitter.setHandleWidth(4);
      for (int i = 0; i < panes; ++i) {
        auto* const pane = new QWidget;
        pane->setMinimumSize(20, 20);
        splitter.addWidget(pane);
      }
    }
    void show(const QSize& size) {
      splitter.show();
      resize(size);
    }
    void resize(const QSize& size) {
      splitter.resize(size);
      QCoreApplication::processEvents();
    }
    NSSplitView& view() { return *splitViewFor(splitter); }
    std::vector<double> extents() {
      std::vector<double> result;
      for (const Ref<NSView>& pane : view().subviews()) {
        const CGSize size = pane->frame().size;
        result.push_back(view().isVertical() ? size.width : size.height);
      }
      return result;
    }

    QSplitter splitter;
  };

  static void keep(double first, double second) {
    PreferencesTest::keep(box(first), u"k");
    PreferencesTest::keep(box(second), u"k.frame2");
  }
};

TEST_F(QtSplitViewTest, DividersComeBackInAReopenedWindow) {
  for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
    const QSize size = orientation == Qt::Horizontal ? QSize(604, 300) : QSize(300, 604);
    {
      Window window(2, orientation);
      window.show(size);
      window.splitter.setSizes({200, 400});
      saveDividerPosition(window.view(), u"k");
    }
    Window early(2, orientation);
    loadDividerPosition(early.view(), u"k");
    EXPECT_THAT(early.extents(), ElementsAre(200, 400));
    early.show(QSize(800, 800));
    early.resize(size);
    EXPECT_THAT(early.extents(), ElementsAre(200, 400)) << "the window's own size came late";
    EXPECT_THAT(early.splitter.sizes(), ElementsAre(200, 400));
    Window late(2, orientation);
    late.show(size);
    loadDividerPosition(late.view(), u"k");
    EXPECT_THAT(late.splitter.sizes(), ElementsAre(200, 400));
    EXPECT_EQ(late.view().isVertical(), orientation == Qt::Horizontal);
    EXPECT_EQ(late.view().subviews()[0]->bounds().size.width, orientation == Qt::Horizontal ? 200 : 300);
  }
}

TEST_F(QtSplitViewTest, OtherPanesShareWhatIsLeft) {
  keep(100, 200);
  Window window(4);
  loadDividerPosition(window.view(), u"k");
  window.show(QSize(912, 100));
  EXPECT_THAT(window.extents(), ElementsAre(100, 200, 300, 300));
  keep(150, 0);
  window.splitter.setSizes({300, 300, 200, 100});
  loadDividerPosition(window.view(), u"k");
  EXPECT_THAT(window.extents(), ElementsAre(150, 375, 250, 125));
  window.resize(QSize(612, 100));
  EXPECT_LT(window.extents()[0], 150) << "from here on it goes as the user wants it";
}

TEST_F(QtSplitViewTest, WithoutRoomItIsShared) {
  keep(400, 400);
  Window window(2);
  window.show(QSize(404, 100));
  loadDividerPosition(window.view(), u"k");
  EXPECT_THAT(window.extents(), ElementsAre(200, 200));
  QMetaObject::invokeMethod(&window.splitter, "splitterMoved", Q_ARG(int, 0), Q_ARG(int, 1));
  window.splitter.setSizes({100, 300});
  window.resize(QSize(804, 100));
  EXPECT_LT(window.extents()[0], 300);
}

TEST_F(QtSplitViewTest, HiddenAndCollapsedPanesKeepTheirExtent) {
  Window window(3);
  window.show(QSize(908, 100));
  keep(200, 300);
  loadDividerPosition(window.view(), u"k");
  window.splitter.widget(0)->hide();
  QCoreApplication::processEvents();
  EXPECT_EQ(window.extents()[0], 200);
  window.splitter.setSizes({0, 500, 0});
  QCoreApplication::processEvents();
  EXPECT_THAT(window.splitter.sizes(), ElementsAre(0, testing::Gt(800), 0));
  EXPECT_THAT(window.extents(), ElementsAre(200, testing::Gt(800), testing::Gt(300)));
  // What is set of a hidden one shows when it does.
  window.view().subviews()[0]->setFrameSize({150, 100});
  EXPECT_EQ(window.extents()[0], 150);
  window.splitter.widget(0)->show();
  QCoreApplication::processEvents();
  EXPECT_EQ(window.splitter.sizes()[0], 150);
  window.view().subviews()[2]->setFrameSize({120, 100});
  EXPECT_EQ(window.splitter.sizes()[2], 120) << "a collapsed one opens";
}

TEST_F(QtSplitViewTest, WidgetsMayGoBeforeTheirViews) {
  auto window = std::make_unique<Window>(2);
  window->show(QSize(604, 100));
  const Ref<NSSplitView> view = splitViewFor(window->splitter);
  const std::vector<Ref<NSView>> panes = view->subviews();
  EXPECT_EQ(panes, view->subviews());
  delete window->splitter.widget(0);
  QCoreApplication::processEvents();
  panes[0]->setFrameSize({10, 10});
  EXPECT_EQ(view->subviews(), std::vector{panes[1]});
  EXPECT_THROW(saveDividerPosition(*view, u"k"), std::out_of_range);
  window = nullptr;
  EXPECT_TRUE(view->subviews().empty());
  EXPECT_FALSE(view->isVertical());
  panes[1]->setFrameSize({10, 10});
  EXPECT_EQ(panes[1]->frame(), CGRect());
}

TEST(QtPopUpButton, SelectsItems) {
  auto box = std::make_unique<QComboBox>();
  const Ref<NSPopUpButton> button = popUpButtonFor(*box);
  EXPECT_EQ(button->indexOfSelectedItem(), NSNotFound);
  box->addItems({u"Open"_qs, u"Straße"_qs, u"OPEN"_qs});
  selectItemWithTitleIgnoreCase(*button, u"open");
  EXPECT_EQ(button->indexOfSelectedItem(), 2U) << "the last of several";
  selectItemWithTitleIgnoreCase(*button, u"STRASSE");
  EXPECT_EQ(button->indexOfSelectedItem(), 1U);
  button->selectItemAtIndex(7);
  EXPECT_EQ(box->currentIndex(), 1);
  EXPECT_EQ(button->itemTitleAtIndex(2), u"OPEN");
  box = nullptr;
  button->selectItemAtIndex(0);
  EXPECT_EQ(button->itemTitleAtIndex(0), u"");
  EXPECT_EQ(button->numberOfItems(), 0U);
}

}  // namespace
