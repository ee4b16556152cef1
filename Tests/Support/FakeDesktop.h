#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Desktop/Desktop.h"
#include "Platform/Desktop/NSScreen.h"
#include "Platform/Desktop/NSToolbar.h"
#include "Platform/Desktop/NSView.h"
#include "Platform/Desktop/NSWindow.h"

// A desktop of plain numbers: what is set is what is there.
namespace kelvane {

struct FakeScreen : NSScreen {
  FakeScreen(const CGRect& all, const CGRect& visible) : myFrame(all), myVisibleFrame(visible) {}
  explicit FakeScreen(const CGRect& all) : FakeScreen(all, all) {}

  CGRect frame() const override { return myFrame; }
  CGRect visibleFrame() const override { return myVisibleFrame; }

  CGRect myFrame;
  CGRect myVisibleFrame;
};

// A view of any kind: FakeViewOf<NSSplitView> is a split view without its own say. It has no superview.
template <class Base>
struct FakeViewOf : Base {
  explicit FakeViewOf(const CGRect& frame = {}) : myFrame(frame) {}

  CGRect frame() const override { return myFrame; }
  void setFrame(const CGRect& frame) override { myFrame = frame; }
  void setFrameSize(const CGSize& size) override { myFrame.size = size; }
  CGRect bounds() const override { return {{0, 0}, myFrame.size}; }
  bool isFlipped() const override { return false; }
  Ref<NSWindow> window() const override { return myWindow.lock(); }
  Ref<NSView> superview() const override { return nullptr; }
  std::vector<Ref<NSView>> subviews() const override { return mySubviews; }
  void removeFromSuperview() override {}
  CGRect convertRect(const CGRect& rect, const Ref<NSView>&) const override { return rect; }
  void translateOriginToPoint(const CGPoint&) override {}

  CGRect myFrame;
  std::weak_ptr<NSWindow> myWindow;
  std::vector<Ref<NSView>> mySubviews;
};

using FakeView = FakeViewOf<NSView>;

struct FakeToolbar : NSToolbar {
  bool isVisible() const override { return myIsVisible; }
  std::vector<Ref<NSToolbarItem>> items() const override { return {}; }

  bool myIsVisible = true;
  double myHeight = 40;
};

// A window with a title bar 20 high and borders of 2 at the sides and below. It writes down what it is told.
struct FakeWindow : NSWindow {
  explicit FakeWindow(const CGRect& frame = {}) : myFrame(frame) {}

  CGRect frame() const override { return myFrame; }
  void setFrame(const CGRect& frame, bool display, bool animate) override {
    myLog += std::string("frame") + (display ? " displayed" : "") + (animate ? " animated" : "") + ";";
    myFrame = frame;
    myContentView->myFrame = {{0, 0}, contentViewSize()};
  }
  CGRect contentRectForFrameRect(const CGRect& r) const override {
    return {r.origin.x + 2, r.origin.y + 2, r.size.width - 4, r.size.height - 22};
  }
  CGRect frameRectForContentRect(const CGRect& r) const override {
    return {r.origin.x - 2, r.origin.y - 2, r.size.width + 4, r.size.height + 22};
  }
  Ref<NSView> contentView() const override {
    myContentView->myFrame = {{0, 0}, contentViewSize()};
    return myContentView;
  }
  Ref<NSToolbar> toolbar() const override { return myToolbar; }
  void setMinSize(const CGSize& size) override { myLog += "min " + sizeText(size); }
  void setMaxSize(const CGSize& size) override { myLog += "max " + sizeText(size); }
  bool isVisible() const override { return myIsVisible; }
  std::int64_t windowNumber() const override { return myNumber; }
  void orderWindow(NSWindowOrderingMode place, std::int64_t relativeTo) override {
    myLog += (place == NSWindowOrderingMode::Below ? "below " : "above ") + std::to_string(relativeTo) + ";";
  }

  // What the window was told since the last time.
  std::string takeLog() { return std::exchange(myLog, {}); }

  CGSize contentViewSize() const {
    const CGSize all = contentRectForFrameRect(myFrame).size;
    return {all.width, all.height - (myToolbar && myToolbar->myIsVisible ? myToolbar->myHeight : 0)};
  }
  static std::string sizeText(const CGSize& size) {
    return std::to_string(static_cast<int>(size.width)) + "x" + std::to_string(static_cast<int>(size.height)) + ";";
  }

  CGRect myFrame;
  bool myIsVisible = true;
  std::int64_t myNumber = 17;
  Ref<FakeToolbar> myToolbar;
  Ref<FakeView> myContentView = std::make_shared<FakeView>();
  std::string myLog;
};

struct FakeDesktop : Desktop {
  std::vector<Ref<NSScreen>> screens() const override { return myScreens; }
  Ref<NSScreen> mainScreen() const override { return myScreens.empty() ? nullptr : myScreens.front(); }
  std::vector<Ref<NSWindow>> orderedWindows() const override { return myWindows; }
  void runModalAlert(const ModalAlert&) override {}

  // Makes a new one the current desktop.
  static std::shared_ptr<FakeDesktop> install() {
    auto desktop = std::make_shared<FakeDesktop>();
    Desktop::install(desktop);
    return desktop;
  }

  std::vector<Ref<NSScreen>> myScreens;
  std::vector<Ref<NSWindow>> myWindows;
};

}  // namespace kelvane
