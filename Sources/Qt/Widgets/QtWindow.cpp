#include "Qt/Widgets/QtWindow.h"

#include "Qt/Widgets/Adapters.h"
#include "Qt/Widgets/Decoration.h"
#include "Qt/Widgets/Flip.h"
#include "Qt/Widgets/QtScreens.h"

namespace kelvane {
namespace {

std::int64_t nextNumber() {
  static std::int64_t last = 0;
  return ++last;
}

}  // namespace

QtWindow::QtWindow(QWidget& window) : myWindow(&window), myNumber(nextNumber()) {}

CGRect QtWindow::frame() const {
  return myWindow ? rectFromQt(frameGeometryOf(*myWindow), lowerLeftOfPlane()) : CGRect();
}

void QtWindow::setFrame(const CGRect& frame, bool, bool) {
  if (!myWindow || !isFinite(frame)) return;
  myWindow->setGeometry(wholeUnits(rectToQt(frame, lowerLeftOfPlane())).marginsRemoved(decorationOf(*myWindow)));
}

CGRect QtWindow::contentRectForFrameRect(const CGRect& frame) const { return frame; }
CGRect QtWindow::frameRectForContentRect(const CGRect& content) const { return content; }
Ref<NSView> QtWindow::contentView() const { return viewOf(myWindow); }
Ref<NSToolbar> QtWindow::toolbar() const { return nullptr; }
void QtWindow::setMinSize(const CGSize&) {}
void QtWindow::setMaxSize(const CGSize&) {}
bool QtWindow::isVisible() const { return myWindow && myWindow->isVisible(); }
void QtWindow::orderWindow(NSWindowOrderingMode, std::int64_t) {}

}  // namespace kelvane
