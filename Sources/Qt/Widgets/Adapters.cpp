#include "Qt/Widgets/Adapters.h"

#include "Qt/Widgets/AdapterCache.h"

namespace kelvane {
namespace {

AdapterCache<NSView>& views() {
  static auto& cache = *new AdapterCache<NSView>;
  return cache;
}

AdapterCache<NSWindow>& windows() {
  static auto& cache = *new AdapterCache<NSWindow>;
  return cache;
}

}  // namespace

Ref<NSView> viewOf(QWidget* widget) {
  if (!widget) return nullptr;
  return views().adapterOf(*widget, [&] { return makeView(*widget); });
}

Ref<NSWindow> windowOf(const QWidget* widget) {
  if (!widget) return nullptr;
  QWidget& window = *widget->window();
  return windows().adapterOf(window, [&] { return makeWindow(window); });
}

Ref<NSWindow> knownWindowOf(const QWidget& widget) { return windows().knownAdapterOf(*widget.window()); }

QWidget* widgetOf(const NSView* view) {
  const auto* const adapter = dynamic_cast<const WidgetAdapter*>(view);
  return adapter ? adapter->widget() : nullptr;
}

}  // namespace kelvane
