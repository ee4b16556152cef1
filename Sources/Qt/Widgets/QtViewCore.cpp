#include "Qt/Widgets/QtViewCore.h"

#include "Qt/Widgets/Adapters.h"
#include "Qt/Widgets/Decoration.h"
#include "Qt/Widgets/Flip.h"

namespace kelvane {
namespace {

// Back from a widget's coordinates to those of its view.
CGRect fromWidget(const QRectF& rect, const NSView& view) {
  const CGRect bounds = view.bounds();
  const CGRect local = view.isFlipped() ? CGRect(rect.x(), rect.y(), rect.width(), rect.height())
                                        : rectFromQt(rect, {0, bounds.size.height});
  return {{local.origin.x + bounds.origin.x, local.origin.y + bounds.origin.y}, local.size};
}

// Where a window's own coordinates begin, from its client area's upper left corner.
QPointF lowerLeftOfFrame(const QWidget& window) {
  const QMargins margins = decorationOf(window);
  return QPointF(-margins.left(), window.height() + margins.bottom());
}

// The child's parent, if that is what lays it out.
SubviewLayout* layoutOf(const QWidget& child) {
  return dynamic_cast<SubviewLayout*>(child.isWindow() ? nullptr : viewOf(child.parentWidget()).get());
}

QRectF geometryOf(const QWidget& child) {
  if (const SubviewLayout* const layout = layoutOf(child))
    if (const std::optional<QRectF> geometry = layout->subviewGeometry(child)) return *geometry;
  return child.geometry();
}

QPoint placeInWindow(const QWidget& widget) { return widget.mapTo(widget.window(), QPoint()); }

}  // namespace

QRectF toWidget(const CGRect& rect, const NSView& view) {
  const CGRect bounds = view.bounds();
  const CGRect local({rect.origin.x - bounds.origin.x, rect.origin.y - bounds.origin.y}, rect.size);
  if (view.isFlipped()) return {local.origin.x, local.origin.y, local.size.width, local.size.height};
  return rectToQt(local, {0, bounds.size.height});
}

CGRect QtViewCore::frame() const {
  if (!myWidget) return {};
  if (myWidget->isWindow()) return rectFromQt(myWidget->rect(), lowerLeftOfFrame(*myWidget));
  return fromWidget(geometryOf(*myWidget), *superview());
}

void QtViewCore::setFrame(const CGRect& frame) {
  if (!myWidget || !isFinite(frame)) return;
  CGRect held = wholeUnits(frame);
  // Held within the limits beforehand, since Qt would move the lower edge instead of the upper one.
  const QSize size = QSizeF(held.size.width, held.size.height)
                         .toSize()
                         .boundedTo(myWidget->maximumSize())
                         .expandedTo(myWidget->minimumSize());
  if (myWidget->isWindow()) return myWidget->resize(size);
  held.size = {1.0 * size.width(), 1.0 * size.height()};
  const QRectF wanted = toWidget(held, *superview());
  if (SubviewLayout* const layout = layoutOf(*myWidget)) return layout->setSubviewGeometry(*myWidget, wanted);
  myWidget->setGeometry(wholeUnits(wanted));
}

CGRect QtViewCore::bounds() const {
  if (!myWidget) return {};
  const QSizeF size = myWidget->isWindow() ? QSizeF(myWidget->size()) : geometryOf(*myWidget).size();
  return {myOrigin, {size.width(), size.height()}};
}

Ref<NSWindow> QtViewCore::window() const {
  if (!myWidget) return nullptr;
  const bool isInNoWindow = myIsTakenOut && myWidget->isWindow() && !myWidget->isVisible();
  return isInNoWindow ? nullptr : windowOf(myWidget);
}

Ref<NSView> QtViewCore::superview() const {
  return myWidget && !myWidget->isWindow() ? viewOf(myWidget->parentWidget()) : nullptr;
}

std::vector<Ref<NSView>> QtViewCore::subviews() const {
  std::vector<Ref<NSView>> result;
  if (!myWidget) return result;
  for (QObject* const child : myWidget->children()) {
    auto* const widget = qobject_cast<QWidget*>(child);
    if (widget && !widget->isWindow()) result.push_back(viewOf(widget));
  }
  return result;
}

void QtViewCore::removeFromSuperview() {
  if (!myWidget || myWidget->isWindow()) return;
  myIsTakenOut = true;
  myWidget->setParent(nullptr);
}

CGRect QtViewCore::convertRect(const CGRect& rect, const Ref<NSView>& fromView) const {
  if (!myWidget) return {};
  const QWidget& window = *myWidget->window();
  QRectF inWindow = rectToQt(rect, lowerLeftOfFrame(window));
  if (const QWidget* const from = widgetOf(fromView)) {
    // Of another window it takes the way over the screen.
    inWindow = toWidget(rect, *fromView).translated(placeInWindow(*from));
    inWindow.translate(clientGeometryOf(*from->window()).topLeft() - clientGeometryOf(window).topLeft());
  }
  // The view's own coordinates come from outside of this class, for one that others lay out.
  return fromWidget(inWindow.translated(-placeInWindow(*myWidget)), *viewOf(myWidget));
}

void QtViewCore::translateOriginToPoint(const CGPoint& point) {
  if (!std::isfinite(point.x) || !std::isfinite(point.y)) return;
  myOrigin = {myOrigin.x - point.x, myOrigin.y - point.y};
}

}  // namespace kelvane
