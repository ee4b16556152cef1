#pragma once

#include <QMargins>
#include <QRect>

class QWidget;

// The title bar and the borders that the window system puts around a window. Main thread only.
namespace kelvane {

// What they measure. They are known when a window has been shown; until then they are taken for those of the last
// window of the same type, and for none where there was none.
QMargins decorationOf(const QWidget& window);
// Whether they are known.
bool isDecorationKnown(const QWidget& window);

// The window without them, and with them, as Qt counts.
QRect clientGeometryOf(const QWidget& window);
QRect frameGeometryOf(const QWidget& window);

}  // namespace kelvane
