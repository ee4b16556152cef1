#pragma once

#include <QRectF>
#include <QWidget>
#include <optional>

#include "Platform/Desktop/NSView.h"
#include "Platform/Desktop/NSWindow.h"
#include "Platform/Foundation/Ref.h"

// From widgets to their adapters, and back. Main thread only.
namespace kelvane {

// The view that stands for the widget, always the same one; nil for null. Its class follows from the widget's: that of
// a QSplitter is an NSSplitView.
Ref<NSView> viewOf(QWidget* widget);
// The window that the widget is, or is in; nil for null.
Ref<NSWindow> windowOf(const QWidget* widget);
// The same, if somebody has asked for it before.
Ref<NSWindow> knownWindowOf(const QWidget& widget);

// The widget that a view stands for; null when it has gone, for nil, and for views that are none of Qt's.
QWidget* widgetOf(const NSView* view);
inline QWidget* widgetOf(const Ref<NSView>& view) { return widgetOf(view.get()); }

// Makes the adapter of a widget that has none yet (MakeAdapters.cpp): the place to add a class of views to.
Ref<NSView> makeView(QWidget& widget);
Ref<NSWindow> makeWindow(QWidget& window);

// What every adapter of a widget is, beside the view that it stands for.
class WidgetAdapter {
 public:
  virtual ~WidgetAdapter() = default;
  // Null when it has gone.
  virtual QWidget* widget() const = 0;
  // Which way the own y of the view grows.
  virtual void setFlipped(bool isFlipped) = 0;
};

// What an adapter of a widget derives from that lays out its children itself, and wants to be asked where they are, as
// a splitter does. Rectangles are in the parent's coordinates, as Qt counts them.
class SubviewLayout {
 public:
  virtual ~SubviewLayout() = default;
  // Nothing for a child whose geometry is as Qt has it.
  virtual std::optional<QRectF> subviewGeometry(const QWidget& child) const = 0;
  virtual void setSubviewGeometry(QWidget& child, const QRectF& geometry) = 0;
};

}  // namespace kelvane
