#include "Extensions/NSWindow-QNExtensions.h"

#include <algorithm>

#include "Extensions/NSScreen-QNExtensions.h"
#include "Extensions/SizeLimits.h"
#include "Extensions/WindowPlacement.h"
#include "Platform/Desktop/Desktop.h"

namespace kelvane {
namespace {

using NSScreenExtensions::mainVisibleFrame;

void place(NSWindow& window, const CGRect& frame) { window.setFrame(frame, true, false); }

}  // namespace

void positionAtGoldenMiddle(NSWindow& receiver) {
  place(receiver, WindowPlacement::atGoldenMiddle(receiver.frame(), mainVisibleFrame()));
}

void centerGoldenMiddleOnPoint(NSWindow& receiver, const CGPoint& point) {
  place(receiver, WindowPlacement::onPoint(receiver.frame(), point));
}

void positionAtGoldenMiddleToBottomRight(NSWindow& receiver) {
  place(receiver, WindowPlacement::atGoldenMiddleToBottomRight(receiver.frame(), mainVisibleFrame(),
                                                               unionFrameOfOpenWindowsExpectReceiver(receiver)));
}

void positionAtBottomRight(NSWindow& receiver) {
  place(receiver, WindowPlacement::atBottomRight(receiver.frame(), mainVisibleFrame()));
}

CGRect makeFrameStayOnScreen(const NSWindow&, const CGRect& rect) {
  return WindowPlacement::stayingOnScreen(rect, mainVisibleFrame());
}

void stayOnMainScreen(NSWindow& receiver) { place(receiver, makeFrameStayOnScreen(receiver, receiver.frame())); }

void qn_sanitizePosition(NSWindow& receiver) {
  const Desktop& desktop = Desktop::current();
  const CGRect frame = receiver.frame();
  const std::vector<Ref<NSScreen>> screens = desktop.screens();
  const auto holdsOrigin = [&](const Ref<NSScreen>& screen) {
    return CGRectContainsPoint(screen->frame(), frame.origin);
  };
  const auto found = std::ranges::find_if(screens, holdsOrigin);
  const Ref<NSScreen> screen = found != screens.end() ? *found : desktop.mainScreen();
  if (screen) place(receiver, receiver.constrainFrameRect(frame, *screen));
}

bool isFrameVisibleOnScreen(const NSWindow&, const CGRect& rect) {
  return std::ranges::any_of(Desktop::current().screens(), [&](const Ref<NSScreen>& screen) {
    return CGRectIntersectsRect(rect, screen->visibleFrame());
  });
}

CGRect unionFrameOfOpenWindowsExpectReceiver(const NSWindow& receiver) {
  CGRect result = CGRectZero;
  for (const Ref<NSWindow>& window : Desktop::current().orderedWindows())
    if (window.get() != &receiver && window->isVisible()) result = CGRectUnion(result, window->frame());
  return result;
}

void orderBehindWindow(NSWindow& receiver, const Ref<NSWindow>& otherWindow) {
  receiver.orderWindow(NSWindowOrderingMode::Below, otherWindow ? otherWindow->windowNumber() : 0);
}

double toolbarHeight(const NSWindow& receiver) {
  const Ref<NSToolbar> toolbar = receiver.toolbar();
  if (!toolbar || !toolbar->isVisible()) return 0;
  const Ref<NSView> contentView = receiver.contentView();
  const double contentHeight = contentView ? contentView->frame().size.height : 0;
  return receiver.contentRectForFrameRect(receiver.frame()).size.height - contentHeight;
}

void lockWindowToCurrentSize(NSWindow& receiver) {
  // The maximum first: a minimum above the maximum would be refused.
  const CGSize size = receiver.frame().size;
  receiver.setMaxSize(size);
  receiver.setMinSize(size);
}

CGSize alignWindowSize(const NSWindow&, const CGSize& size, const CGSize& toMinSize, const CGSize& toMaxSize) {
  return sizeWithinLimits(size, toMinSize, toMaxSize);
}

CGRect positionIndependentWindowSizeForSize(const NSWindow& receiver, const CGSize& contentSize, bool centerOnMiddle) {
  CGRect content = receiver.contentRectForFrameRect(receiver.frame());
  const double height = contentSize.height + toolbarHeight(receiver);
  if (centerOnMiddle) content.origin.x += (content.size.width - contentSize.width) * 0.5;
  content.origin.y = content.origin.y + content.size.height - height;
  content.size = {contentSize.width, height};
  return receiver.frameRectForContentRect(content);
}

void resizeWindowToSize(NSWindow& receiver, const CGSize& contentSize) {
  resizeWindowToSize(receiver, contentSize, false);
}

void resizeWindowBySizingView(NSWindow&, const Ref<NSView>& view, const CGSize& toSize) {
  const Ref<NSWindow> window = view ? view->window() : nullptr;
  if (!window) return;
  const Ref<NSView> contentView = window->contentView();
  const CGSize content = contentView ? contentView->frame().size : CGSize();
  const CGSize size = view->frame().size;
  resizeWindowToSize(*window,
                     {toSize.width + (content.width - size.width), toSize.height + (content.height - size.height)});
}

}  // namespace kelvane
