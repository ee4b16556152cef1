#include "Qt/Widgets/QtWindow.h"

#include <QStyle>
#include <QWindow>

#include "Qt/Widgets/Adapters.h"
#include "Qt/Widgets/Decoration.h"
#include "Qt/Widgets/Flip.h"
#include "Qt/Widgets/QtScreens.h"
#include "Qt/Widgets/QtToolbar.h"
#include "Qt/Widgets/WindowContent.h"
#include "Qt/Widgets/WindowStack.h"

namespace kelvane {
namespace {

std::int64_t nextNumber() {
  static std::int64_t last = 0;
  return ++last;
}

}  // namespace

QtWindow::QtWindow(QWidget& window) : myWindow(&window), myFrame(window), myNumber(nextNumber()) {}

CGRect QtWindow::frame() const { return myWindow ? rectFromQt(myFrame.frame(), lowerLeftOfPlane()) : CGRect(); }

void QtWindow::setFrame(const CGRect& frame, bool display, bool animate) {
  if (!myWindow || !isFinite(frame)) return;
  myFrame.setFrame(wholeUnits(rectToQt(wholeUnits(frame), lowerLeftOfPlane())), animate);
  if (display && myWindow && myWindow->windowHandle() && myWindow->windowHandle()->isExposed()) myWindow->repaint();
}

CGRect QtWindow::contentRectForFrameRect(const CGRect& frame) const {
  if (!myWindow) return {};
  const QMargins margins = contentMargins();
  return {frame.origin.x + margins.left(), frame.origin.y + margins.bottom(),
          frame.size.width - margins.left() - margins.right(), frame.size.height - margins.top() - margins.bottom()};
}

CGRect QtWindow::frameRectForContentRect(const CGRect& content) const {
  if (!myWindow) return {};
  const QMargins margins = contentMargins();
  return {content.origin.x - margins.left(), content.origin.y - margins.bottom(),
          content.size.width + margins.left() + margins.right(),
          content.size.height + margins.top() + margins.bottom()};
}

CGRect QtWindow::constrainFrameRect(const CGRect& frame, const NSScreen& toScreen) const {
  if (!myWindow) return {};
  const int titleBar = decorationOf(*myWindow).top();
  // One without a title bar is still to be got hold of.
  const int grip =
      titleBar > 0 ? titleBar : myWindow->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, myWindow);
  return constrained(frame, grip, toScreen.visibleFrame());
}

Ref<NSView> QtWindow::contentView() const {
  if (!myWindow) return nullptr;
  layOut(*myWindow);
  return viewOf(contentWidgetOf(*myWindow));
}

Ref<NSToolbar> QtWindow::toolbar() const { return myWindow ? toolbarOf(toolBarOf(*myWindow)) : nullptr; }

void QtWindow::setMinSize(const CGSize& size) { myFrame.setMinSize(size); }

void QtWindow::setMaxSize(const CGSize& size) { myFrame.setMaxSize(size); }

bool QtWindow::isVisible() const { return myWindow && myWindow->isVisible() && !myWindow->isMinimized(); }

void QtWindow::orderWindow(NSWindowOrderingMode place, std::int64_t relativeTo) {
  if (myWindow) WindowStack::shared().order(*myWindow, place, relativeTo);
}

QMargins QtWindow::contentMargins() const {
  layOut(*myWindow);
  return decorationOf(*myWindow) + contentMarginsOf(*myWindow);
}

}  // namespace kelvane
