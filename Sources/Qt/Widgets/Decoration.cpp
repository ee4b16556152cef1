#include "Qt/Widgets/Decoration.h"

#include <QWidget>
#include <QWindow>
#include <map>

namespace kelvane {
namespace {

// What the last window had, by its type.
std::map<Qt::WindowType, QMargins>& lastDecorations() {
  static auto& decorations = *new std::map<Qt::WindowType, QMargins>;
  return decorations;
}

bool isDecorated(const QWidget& window) {
  const Qt::WindowFlags flags = window.windowFlags();
  return !(flags & (Qt::FramelessWindowHint | Qt::BypassWindowManagerHint));
}

}  // namespace

bool isDecorationKnown(const QWidget& window) {
  const QWindow* const handle = window.windowHandle();
  // One without a frame cannot be told from one whose frame is still to come, until it is on the screen.
  return handle && (handle->isExposed() || !handle->frameMargins().isNull());
}

QMargins decorationOf(const QWidget& window) {
  if (!isDecorated(window)) return {};
  if (!isDecorationKnown(window)) return lastDecorations()[window.windowType()];
  const QMargins margins = window.windowHandle()->frameMargins();
  lastDecorations()[window.windowType()] = margins;
  return margins;
}

QRect clientGeometryOf(const QWidget& window) {
  if (isDecorationKnown(window)) return window.geometry();
  // Qt counts no decoration yet, so that the upper left corner is the frame's.
  const QMargins margins = decorationOf(window);
  return {window.pos() + QPoint(margins.left(), margins.top()), window.size()};
}

QRect frameGeometryOf(const QWidget& window) { return clientGeometryOf(window).marginsAdded(decorationOf(window)); }

}  // namespace kelvane
