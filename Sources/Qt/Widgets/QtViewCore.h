#pragma once

#include <QPointer>
#include <QWidget>
#include <vector>

#include "Platform/Desktop/NSView.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/Ref.h"

namespace kelvane {

// From a view's own coordinates to those of its widget as Qt counts them.
QRectF toWidget(const CGRect& rect, const NSView& view);

// What the adapters of all widgets do, whatever class of views they are; NSView.h says it. A child's frame is in its
// parent's own coordinates, so that it tells another place once these have been translated. A widget that is a window
// takes sizes only: its place is the window's business.
class QtViewCore {
 public:
  explicit QtViewCore(QWidget& widget) : myWidget(&widget) {}

  QWidget* widget() const { return myWidget; }

  CGRect frame() const;
  void setFrame(const CGRect& frame);
  CGRect bounds() const;
  bool isFlipped() const { return myWidget && myIsFlipped; }
  void setFlipped(bool isFlipped) { myIsFlipped = isFlipped; }
  Ref<NSWindow> window() const;
  Ref<NSView> superview() const;
  std::vector<Ref<NSView>> subviews() const;
  void removeFromSuperview();
  CGRect convertRect(const CGRect& rect, const Ref<NSView>& fromView) const;
  void translateOriginToPoint(const CGPoint& point);

 private:
  QPointer<QWidget> myWidget;
  CGPoint myOrigin;
  bool myIsFlipped = false;
  // Qt takes every widget without a parent for a window.
  bool myIsTakenOut = false;
};

}  // namespace kelvane
