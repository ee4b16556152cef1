#include "Extensions/NSScreen-QNExtensions.h"
#include "Extensions/NSWindow-QNExtensions.h"
#include "Extensions/WindowPlacement.h"
#include "Support/FakeDesktop.h"
#include "Support/PreferencesTest.h"

namespace {

const CGRect visible{0, 0, 1000, 800};

// A window 200 x 100 on a screen whose visible frame is 1000 x 800.
struct NSWindowTest : PreferencesTest {
  NSWindowTest() {
    setScreens({visible});
    desktop->myWindows = {window};
  }
  ~NSWindowTest() override { Desktop::install(nullptr); }

  void setScreens(const std::vector<CGRect>& frames) {
    desktop->myScreens.clear();
    for (const CGRect& frame : frames) desktop->myScreens.push_back(std::make_shared<FakeScreen>(frame));
  }
  void addWindow(const CGRect& frame, bool isVisible = true) {
    const auto other = std::make_shared<FakeWindow>(frame);
    other->myIsVisible = isVisible;
    desktop->myWindows.push_back(other);
  }
  static void keep(const Ref<NSObject>& object) { PreferencesTest::keep(object, u"key"); }
  bool load(std::int32_t defaultPosition) {
    return loadFrameFromUserDefaultsForKey(*window, u"key", true, defaultPosition);
  }

  std::shared_ptr<FakeDesktop> desktop = FakeDesktop::install();
  const Ref<FakeWindow> window = std::make_shared<FakeWindow>(CGRect{5, 7, 200, 100});
};

TEST_F(NSWindowTest, FixedPlaces) {
  positionAtBottomRight(*window);
  EXPECT_EQ(window->frame(), CGRect(770, 30, 200, 100));
  positionAtGoldenMiddle(*window);
  EXPECT_EQ(window->frame(), CGRect(400, 466.6666666666667, 200, 100));
  // Of the width, and of 0.3 in single precision: 400 - 60.000002384185791.
  centerGoldenMiddleOnPoint(*window, {500, 400});
  EXPECT_EQ(window->frame(), CGRect(400, 339, 200, 100));
  EXPECT_EQ(window->takeLog(), "frame displayed;frame displayed;frame displayed;");

  setScreens({{-1001, -801, 1001, 801}, visible});
  EXPECT_EQ(center(desktop->myScreens[1]), (CGPoint{-501, -401}));  // the main screen's, whichever is asked
  setScreens({});
  positionAtBottomRight(*window);
  EXPECT_EQ(window->frame(), CGRect(-230, 30, 200, 100));
}

TEST_F(NSWindowTest, LowerRightAvoidsOtherWindows) {
  const std::tuple<const char*, CGRect, bool, CGRect> rows[] = {
      {"hidden", {600, 250, 100, 100}, false, {550, 219, 200, 100}},
      {"clear", {0, 0, 550, 800}, true, {550, 219, 200, 100}},
      {"in the way", {600, 250, 100, 100}, true, {749, 60, 200, 100}},
      // Beyond the window, but everything between it and (0, 0) counts.
      {"beyond", {800, 500, 100, 100}, true, {749, 60, 200, 100}},
  };
  for (const auto& [name, other, isVisible, placed] : rows) {
    desktop->myWindows = {window};
    addWindow(other, isVisible);
    positionAtGoldenMiddleToBottomRight(*window);
    EXPECT_EQ(window->frame(), placed) << name;
  }
  // 0.7 in single precision falls short of 700.
  const CGRect wide{0, 0, 2000, 2000};
  EXPECT_EQ(WindowPlacement::atGoldenMiddleToBottomRight({0, 0, 20, 10}, wide, wide), CGRect(1689, 294, 20, 10));
}

TEST_F(NSWindowTest, FramesStayOnScreen) {
  const std::pair<CGRect, CGRect> rows[] = {
      {{900, 10, 200, 100}, {770, 30, 200, 100}},
      {{100, 300, 200, 100}, {100, 300, 200, 100}},
      {{-500, 5000, 200, 100}, {-500, 5000, 200, 100}},  // neither left nor upper edge
  };
  for (const auto& [frame, placed] : rows) EXPECT_EQ(makeFrameStayOnScreen(*window, frame), placed);

  desktop->myScreens.push_back(std::make_shared<FakeScreen>(CGRect(1000, 0, 500, 800), CGRect(1000, 0, 500, 780)));
  EXPECT_TRUE(isFrameVisibleOnScreen(*window, {1499, 779, 9, 9}));
  EXPECT_FALSE(isFrameVisibleOnScreen(*window, {1400, 780, 9, 9}));  // under the panel
  setScreens({});
  EXPECT_FALSE(isFrameVisibleOnScreen(*window, {0, 0, 9, 9}));
}

TEST_F(NSWindowTest, TitleBarsCanBeReached) {
  setScreens({visible, {1000, 0, 500, 400}, {1000, 0, 800, 800}});
  const std::pair<CGRect, CGRect> rows[] = {
      {{900, 790, 200, 100}, {900, 700, 200, 100}},
      {{1000, 390, 200, 100}, {1000, 300, 200, 100}},  // a left edge is its screen's, and the first screen counts
      {{1490, 390, 200, 100}, {1480, 300, 200, 100}},
      {{-300, -300, 200, 100}, {-180, -80, 200, 100}},  // nowhere: the main screen
  };
  for (const auto& [frame, placed] : rows) {
    window->myFrame = frame;
    qn_sanitizePosition(*window);
    EXPECT_EQ(window->frame(), placed);
  }
  window->takeLog();
  setScreens({});
  qn_sanitizePosition(*window);
  EXPECT_EQ(window->takeLog(), "");
}

TEST_F(NSWindowTest, SizesAroundContents) {
  EXPECT_EQ(toolbarHeight(*window), 0);
  EXPECT_EQ(positionIndependentWindowSizeForSize(*window, {300, 50}, false), CGRect(5, 35, 304, 72));
  window->myToolbar = std::make_shared<FakeToolbar>();
  EXPECT_EQ(positionIndependentWindowSizeForSize(*window, {300, 50}, false), CGRect(5, -5, 304, 112));
  EXPECT_EQ(positionIndependentWindowSizeForSize(*window, {300, 50}, true), CGRect(-47, -5, 304, 112));

  window->myToolbar->myIsVisible = false;
  resizeWindowToSize(*window, {300, 50});
  EXPECT_EQ(window->frame(), CGRect(5, 35, 304, 72));
  resizeWindowToSize(*window, {100, 50}, true);
  EXPECT_EQ(window->frame(), CGRect(105, 35, 104, 72));
  EXPECT_EQ(window->takeLog(), "frame displayed animated;frame displayed animated;");
  lockWindowToCurrentSize(*window);
  orderBehindWindow(*window, std::make_shared<FakeWindow>());
  orderBehindWindow(*window, nullptr);
  EXPECT_EQ(window->takeLog(), "max 104x72;min 104x72;below 17;below 0;");

  // It is the view's window that changes, whichever is asked.
  FakeWindow other;
  const auto view = std::make_shared<FakeView>(CGRect{10, 10, 60, 30});
  resizeWindowBySizingView(other, view, {80, 80});
  view->myWindow = window;
  resizeWindowBySizingView(other, view, {80, 80});
  EXPECT_EQ(other.takeLog(), "");
  EXPECT_EQ(window->contentViewSize(), (CGSize{120, 100}));

  EXPECT_EQ(alignWindowSize(*window, {50, 500}, {100, 0}, {0, 400}), (CGSize{100, 400}));
}

TEST_F(NSWindowTest, SavesFramesOrContents) {
  saveFrameToUserDefaultsForKey(*window, u"", true);
  saveFrameToUserDefaultsForKey(*window, u"key", true);
  EXPECT_EQ(description(kept(u"key")), u"{{5, 7}, {200, 100}}");
  saveFrameToUserDefaultsForKey(*window, u"key", false);
  EXPECT_EQ(description(kept(u"key")), u"{{7, 9}, {196, 78}}");
  EXPECT_TRUE(hasFrameForUserDefaultsForKey(*window, u"key"));
  for (const Ref<NSObject>& nothing : {Ref<NSObject>(box(u"")), Ref<NSObject>(box(7)), Ref<NSObject>()}) {
    keep(nothing);
    EXPECT_FALSE(hasFrameForUserDefaultsForKey(*window, u"key"));
  }
  EXPECT_FALSE(hasFrameForUserDefaultsForKey(*window, std::nullopt));

  keep(box(u"{{50, 60}, {70, 80}}"));
  saveFrameToUserDefaultsForKey(*window, u"large", u"key", true);
  EXPECT_EQ(window->frame(), CGRect(50, 60, 70, 80));
  EXPECT_EQ(description(kept(u"large")), u"{{5, 7}, {200, 100}}");
}

TEST_F(NSWindowTest, LoadsWhatWasKept) {
  const CGRect unmoved{5, 7, 200, 100};
  const CGRect corner{770, 30, 200, 100};
  const CGRect golden{400, 466.6666666666667, 200, 100};
  const std::tuple<const char16_t*, std::int32_t, bool, CGRect> rows[] = {
      {u"", 0, false, unmoved},
      {u"", 1, false, corner},
      {u"{{1, 2}, {3, 4}}", 1, true, {1, 2, 3, 4}},
      {u"{{1, 2}, {3, 4}", 1, false, corner},
      {u"{{1, 2}, {0, 4}}", 0, false, unmoved},
      // Off every screen, no code leaves the window where it is.
      {u"{{5000, 2}, {200, 100}}", 0, true, golden},
      {u"{{5000, 2}, {200, 100}}", 1, true, corner},
      {u"{{5000, 2}, {200, 100}}", -1, true, golden},
      {u"{{1e308, 2}, {1e308, 100}}", 0, true, {500 - 0.5e308, golden.origin.y, 1e308, 100}},
  };
  for (const auto& [kept, position, answer, frame] : rows) {
    keep(box(kept));
    window->myFrame = unmoved;
    EXPECT_EQ(load(position), answer) << testing::PrintToString(Text(kept));
    EXPECT_EQ(window->frame(), frame) << testing::PrintToString(Text(kept)) << position;
  }
  keep(box(u"{{nan, 0}, {nan, inf}}"));
  EXPECT_TRUE(load(0));
}

TEST_F(NSWindowTest, LoadsPositionOrSizeAlone) {
  keep(box(u"{{1, 2}, {300, 50}}"));
  EXPECT_TRUE(loadPositionFromUserDefaultsForKey(*window, u"key", 1));
  EXPECT_EQ(window->frame(), CGRect(1, 2, 200, 100));
  EXPECT_TRUE(loadPositionFromUserDefaultsForKey(*window, u"nothing", 1));
  EXPECT_EQ(window->frame(), CGRect(0, 0, 200, 100));
  EXPECT_FALSE(loadPositionFromUserDefaultsForKey(*window, std::nullopt, 1));
  EXPECT_EQ(window->frame(), CGRect(770, 30, 200, 100));

  // What is kept without the position is the content, toolbar included.
  window->myFrame = {5, 7, 200, 100};
  window->myToolbar = std::make_shared<FakeToolbar>();
  window->takeLog();
  EXPECT_TRUE(loadFrameFromUserDefaultsForKey(*window, u"key", false, 0, true, CGSize(), true));
  EXPECT_EQ(window->frame(), CGRect(5, 35, 304, 72));
  EXPECT_EQ(window->takeLog(), "frame displayed animated;");
  EXPECT_TRUE(loadFrameFromUserDefaultsForKey(*window, u"nothing", true, 1, true, {30, 40}, false));
  EXPECT_EQ(window->frame(), CGRect(0, 0, 30, 40));
  EXPECT_FALSE(loadFrameFromUserDefaultsForKey(*window, u"nothing", true, 1, true, {30, 0}, false));
  EXPECT_EQ(window->frame(), CGRect(940, 30, 30, 40));
}

// Layouts as they come: screens beside and over one another, windows large and small, on and off them.
TEST_F(NSWindowTest, RulesHoldInRandomLayouts) {
  const char* given = std::getenv("KELVANE_SEED");
  const unsigned seed = given ? static_cast<unsigned>(std::atol(given)) : std::random_device()();
  SCOPED_TRACE("KELVANE_SEED=" + std::to_string(seed));
  std::mt19937 random(seed);
  const auto number = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  const auto rect = [&](double reach, double largest) {
    return CGRect(number(-reach, reach), number(-reach, reach), number(1, largest), number(1, largest));
  };
  constexpr double tolerance = 1e-8;
  const auto notAbove = [](double a, double b) { return a <= b + tolerance; };
  for (int round = 0; round < 100000 && !HasFailure(); ++round) {
    desktop->myScreens.clear();
    for (auto screens = 1 + random() % 3; screens > 0; --screens) {
      const CGRect all = rect(3000, 4000);
      const CGRect left{all.origin, {all.size.width, all.size.height * number(0.9, 1)}};
      desktop->myScreens.push_back(std::make_shared<FakeScreen>(all, left));
    }
    const CGRect frame = window->myFrame = rect(5000, 3000);
    stayOnMainScreen(*window);
    const CGRect stayed = window->frame();
    EXPECT_TRUE(stayed.origin.x <= frame.origin.x && stayed.origin.y >= frame.origin.y);
    EXPECT_EQ(makeFrameStayOnScreen(*window, stayed), stayed);
    window->myFrame = frame;
    qn_sanitizePosition(*window);
    const CGRect reachable = window->frame();
    const double grip = std::min(20.0, frame.size.width);
    const bool isReachable = std::ranges::any_of(desktop->myScreens, [&](const Ref<NSScreen>& screen) {
      const CGRect s = screen->visibleFrame();
      return (s.size.height < 20 || notAbove(s.origin.y + 20, CGRectGetMaxY(reachable))) &&
             notAbove(CGRectGetMaxY(reachable), CGRectGetMaxY(s)) &&
             notAbove(s.origin.x + grip, CGRectGetMaxX(reachable)) &&
             (s.size.width < 2 * grip || notAbove(reachable.origin.x, CGRectGetMaxX(s) - grip));
    });
    EXPECT_TRUE(isReachable) << utf8(NSStringFromRect(frame) + u" to " + NSStringFromRect(reachable));

    // A frame comes back to the bit or, when no screen shows it any more, is given up.
    saveFrameToUserDefaultsForKey(*window, u"key", true);
    if (random() % 2 == 0) desktop->myScreens.pop_back();
    window->myFrame = rect(5000, 3000);
    EXPECT_TRUE(load(0));
    EXPECT_EQ(window->frame().size, reachable.size);
    EXPECT_EQ(window->frame() == reachable, isFrameVisibleOnScreen(*window, reachable));
  }
}

}  // namespace
