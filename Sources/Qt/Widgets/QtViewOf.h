#pragma once

#include <vector>

#include "Platform/Desktop/NSView.h"
#include "Qt/Widgets/Adapters.h"
#include "Qt/Widgets/QtViewCore.h"

namespace kelvane {

// The adapter of a widget that is a view of class Base, and gives it all that every view has:
//
//   class QtSplitView final : public QtViewOf<NSSplitView, QSplitter> {
//    public:
//     using QtViewOf::QtViewOf;
//     bool isVertical() const override { return widget() && widget()->orientation() == Qt::Horizontal; }
//   };
template <class Base, class Widget = QWidget>
class QtViewOf : public Base, public WidgetAdapter {
 public:
  explicit QtViewOf(Widget& widget) : myCore(widget) {}

  Widget* widget() const override { return static_cast<Widget*>(myCore.widget()); }
  // Which way the view's own y grows.
  void setFlipped(bool isFlipped) override { myCore.setFlipped(isFlipped); }

  CGRect frame() const override { return myCore.frame(); }
  void setFrame(const CGRect& frame) override { myCore.setFrame(frame); }
  void setFrameSize(const CGSize& size) override { setFrame({frame().origin, size}); }
  CGRect bounds() const override { return myCore.bounds(); }
  bool isFlipped() const override { return myCore.isFlipped(); }
  Ref<NSWindow> window() const override { return myCore.window(); }
  Ref<NSView> superview() const override { return myCore.superview(); }
  std::vector<Ref<NSView>> subviews() const override { return myCore.subviews(); }
  void removeFromSuperview() override { myCore.removeFromSuperview(); }
  CGRect convertRect(const CGRect& rect, const Ref<NSView>& fromView) const override {
    return myCore.convertRect(rect, fromView);
  }
  void translateOriginToPoint(const CGPoint& point) override { myCore.translateOriginToPoint(point); }

 private:
  QtViewCore myCore;
};

using QtView = QtViewOf<NSView>;

}  // namespace kelvane
