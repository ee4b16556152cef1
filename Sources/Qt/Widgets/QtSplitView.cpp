#include "Qt/Widgets/QtSplitView.h"

#include "Qt/Widgets/Flip.h"

namespace kelvane {

std::vector<Ref<NSView>> QtSplitView::subviews() const {
  std::vector<Ref<NSView>> panes;
  const int count = widget() ? widget()->count() : 0;
  for (int i = 0; i < count; ++i) panes.push_back(viewOf(widget()->widget(i)));
  return panes;
}

std::optional<QRectF> QtSplitView::subviewGeometry(const QWidget& child) const {
  auto& pane = const_cast<QWidget&>(child);
  if (!myExtents || widget()->indexOf(&pane) < 0) return std::nullopt;
  QRectF geometry = child.geometry();
  const int extent = myExtents->extentOf(pane);
  isVertical() ? geometry.setWidth(extent) : geometry.setHeight(extent);
  return geometry;
}

void QtSplitView::setSubviewGeometry(QWidget& child, const QRectF& geometry) {
  if (!myExtents) return;
  if (widget()->indexOf(&child) < 0) return child.setGeometry(wholeUnits(geometry));
  myExtents->want(child, wholeUnit(isVertical() ? geometry.width() : geometry.height()));
}

}  // namespace kelvane
