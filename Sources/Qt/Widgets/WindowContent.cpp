#include "Qt/Widgets/WindowContent.h"

#include <QLayout>
#include <QMainWindow>
#include <QStatusBar>
#include <QToolBar>
#include <algorithm>

namespace kelvane {
namespace {

int heightOf(const QWidget* bar) { return bar && !bar->isHidden() ? bar->height() : 0; }

// The content view's place in the client area; without one all that menu bar and status line leave.
QRect contentGeometryOf(const QMainWindow& window) {
  if (const QWidget* const content = window.centralWidget()) return content->geometry();
  const QWidget* const menuBar = window.menuWidget();
  const auto* const statusBar = window.findChild<QStatusBar*>(QString(), Qt::FindDirectChildrenOnly);
  return window.rect().adjusted(0, heightOf(menuBar), 0, -heightOf(statusBar));
}

}  // namespace

void layOut(QWidget& widget) {
  if (QLayout* const layout = widget.layout()) {
    if (widget.testAttribute(Qt::WA_PendingResizeEvent)) layout->invalidate();
    layout->activate();
  }
  if (widget.isVisible()) return;
  for (QWidget* const child : widget.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
    if (!child->isWindow()) layOut(*child);
}

QWidget* contentWidgetOf(QWidget& window) {
  const auto* const mainWindow = qobject_cast<QMainWindow*>(&window);
  return mainWindow ? mainWindow->centralWidget() : &window;
}

QToolBar* toolBarOf(const QWidget& window) {
  const auto* const mainWindow = qobject_cast<const QMainWindow*>(&window);
  if (!mainWindow) return nullptr;
  const QList<QToolBar*> bars = mainWindow->findChildren<QToolBar*>(QString(), Qt::FindDirectChildrenOnly);
  const auto isAbove = [&](QToolBar* bar) { return mainWindow->toolBarArea(bar) == Qt::TopToolBarArea; };
  const auto found = std::ranges::find_if(bars, isAbove);
  if (found != bars.end()) return *found;
  return bars.isEmpty() ? nullptr : bars.front();
}

QMargins contentMarginsOf(QWidget& window) {
  const auto* const mainWindow = qobject_cast<QMainWindow*>(&window);
  if (!mainWindow) return {};
  QRect content = contentGeometryOf(*mainWindow);
  const QToolBar* const bar = toolBarOf(window);
  if (bar && !bar->isHidden() && !bar->isFloating()) {
    const Qt::ToolBarArea area = mainWindow->toolBarArea(bar);
    if (area == Qt::TopToolBarArea) content.setTop(std::min(content.top(), bar->geometry().top()));
    if (area == Qt::BottomToolBarArea) content.setBottom(std::max(content.bottom(), bar->geometry().bottom()));
  }
  const QRect client = window.rect();
  return {content.left() - client.left(), content.top() - client.top(), client.right() - content.right(),
          client.bottom() - content.bottom()};
}

}  // namespace kelvane
