#pragma once

#include <QMargins>

class QToolBar;
class QWidget;

// What a window has between its decoration and its content view. Main thread only.
namespace kelvane {

// Gives all that layouts manage in the widget the places that they are going to have: in what is not shown yet Qt does
// that only then.
void layOut(QWidget& widget);

// The widget of the content view: the central widget of a QMainWindow, which is null when it has none; every other
// window itself.
QWidget* contentWidgetOf(QWidget& window);
// The toolbar of a QMainWindow: of several the first one in its upper area, else the first one; null for none.
QToolBar* toolBarOf(const QWidget& window);

// From the client area to the content rectangle: what menu bar, status line, docks and further toolbars take. The
// content rectangle ends where the content view does, and beyond that takes in the toolbar above or below it. As of
// the last layout.
QMargins contentMarginsOf(QWidget& window);

}  // namespace kelvane
