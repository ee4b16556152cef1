#pragma once

#include <QPointer>
#include <QSplitter>

#include "Platform/Desktop/NSSplitView.h"
#include "Qt/Widgets/PaneExtents.h"
#include "Qt/Widgets/QtViewOf.h"

namespace kelvane {

// A QSplitter. Panes are in the splitter's order; where the language is read from right to left they stand in that
// direction. What is given to a pane's frame is its extent along the splitter, in whole units; everything else about it
// is the splitter's to say.
class QtSplitView final : public QtViewOf<NSSplitView, QSplitter>, public SubviewLayout {
 public:
  explicit QtSplitView(QSplitter& splitter) : QtViewOf(splitter), myExtents(new PaneExtents(splitter)) {}

  bool isVertical() const override { return widget() && widget()->orientation() == Qt::Horizontal; }
  std::vector<Ref<NSView>> subviews() const override;

  std::optional<QRectF> subviewGeometry(const QWidget& child) const override;
  void setSubviewGeometry(QWidget& child, const QRectF& geometry) override;

 private:
  const QPointer<PaneExtents> myExtents;
};

}  // namespace kelvane
