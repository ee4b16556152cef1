#include "Qt/Widgets/WindowStack.h"

#include <QApplication>
#include <QEvent>
#include <QWindow>
#include <algorithm>
#include <ranges>

#include "Qt/Widgets/Adapters.h"
#include "Qt/Widgets/Platform.h"

namespace kelvane {
namespace {

bool isWindowOfApplication(const QWidget& widget) {
  switch (widget.windowType()) {
    case Qt::Window:
    case Qt::Dialog:
    case Qt::Sheet:
    case Qt::Drawer:
    case Qt::Tool:
      return !widget.graphicsProxyWidget() && !widget.testAttribute(Qt::WA_DontShowOnScreen) &&
             // Qt takes every widget without a parent for a window.
             (widget.testAttribute(Qt::WA_WState_Created) || knownWindowOf(widget));
    default:
      return false;
  }
}

// Whether the window system keeps it above the other one, as a dialog above its window.
bool belongsTo(const QWidget& window, const QWidget& other) {
  const QWidget* owner = window.parentWidget();
  while (owner && owner->window() != &other) owner = owner->window()->parentWidget();
  return owner != nullptr;
}

// The window system keeps these apart, whatever is raised.
int layerOf(const QWidget* window) {
  if (window->windowFlags() & Qt::WindowStaysOnTopHint) return 0;
  return window->windowFlags() & Qt::WindowStaysOnBottomHint ? 2 : 1;
}

}  // namespace

WindowStack& WindowStack::shared() {
  static auto& stack = *new WindowStack;
  return stack;
}

void WindowStack::follow() {
  qApp->installEventFilter(this);
  if (QWidget* const active = QApplication::activeWindow()) moveToFront(*active);
}

std::vector<Ref<NSWindow>> WindowStack::orderedWindows() {
  std::vector<Ref<NSWindow>> result;
  for (const QWidget* const window : windows()) result.push_back(windowOf(window));
  return result;
}

void WindowStack::order(QWidget& window, NSWindowOrderingMode place, std::int64_t relativeTo) {
  // Where windows have no place on the screen they have none in a stack either.
  if (!windowsHavePositions()) return;
  std::vector<QWidget*> all = windows();
  std::erase(all, &window);
  const bool isAbove = place == NSWindowOrderingMode::Above;
  auto position = isAbove ? all.begin() : all.end();
  if (relativeTo != 0) {
    const auto hasNumber = [&](const QWidget* other) { return windowOf(other)->windowNumber() == relativeTo; };
    position = std::ranges::find_if(all, hasNumber);
    if (position == all.end()) return;
    if (!isAbove) ++position;
  }
  const auto moved = all.insert(position, &window);
  myWindows.assign(all.begin(), all.end());
  // Qt raises and lowers, and nothing else.
  if (relativeTo == 0 && !isAbove) {
    if (QWindow* const handle = window.windowHandle()) handle->lower();
    return;
  }
  // A host may close windows as it hears of it.
  const std::vector<QPointer<QWidget>> raised(all.begin(), moved + 1);
  for (const QPointer<QWidget>& next : raised | std::views::reverse)
    if (next && next->isVisible() && next->windowHandle()) next->windowHandle()->raise();
}

bool WindowStack::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type != QEvent::Show && type != QEvent::WindowActivate && type != QEvent::ZOrderChange) return false;
  if (!watched->isWidgetType()) return false;
  auto& widget = static_cast<QWidget&>(*watched);
  if (widget.isWindow()) moveToFront(widget);
  return false;
}

// Those that were never shown come last.
std::vector<QWidget*> WindowStack::windows() {
  const QWidgetList topLevel = QApplication::topLevelWidgets();
  std::vector<QWidget*> result;
  for (const QPointer<QWidget>& window : myWindows)
    if (window && topLevel.contains(window)) result.push_back(window);
  for (QWidget* const window : topLevel)
    if (std::ranges::find(result, window) == result.end()) result.push_back(window);
  std::erase_if(result, [](const QWidget* window) { return !isWindowOfApplication(*window); });
  std::ranges::stable_sort(result, {}, layerOf);
  return result;
}

void WindowStack::moveToFront(QWidget& window) {
  std::erase_if(myWindows, [&](const QPointer<QWidget>& other) { return !other || other == &window; });
  const auto rest = std::ranges::stable_partition(
      myWindows, [&](const QPointer<QWidget>& other) { return belongsTo(*other, window); });
  myWindows.insert(rest.begin(), &window);
}

}  // namespace kelvane
