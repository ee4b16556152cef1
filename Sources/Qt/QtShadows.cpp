#include "Qt/QtShadows.h"

#include <QGraphicsDropShadowEffect>
#include <QWidget>
#include <algorithm>

namespace kelvane {
namespace {

QColor colorOf(const NSColor& color) {
  // "Not greater" takes NaN too.
  const auto part = [](double component) {
    return component > 0 ? static_cast<float>(std::min(component, 1.0)) : 0.0F;
  };
  return QColor::fromRgbF(part(color.redComponent()), part(color.greenComponent()), part(color.blueComponent()),
                          part(color.alphaComponent()));
}

}  // namespace

void setShadow(QWidget& widget, const NSShadow* shadow) {
  if (!shadow) return widget.setGraphicsEffect(nullptr);
  auto* const effect = new QGraphicsDropShadowEffect(&widget);
  effect->setOffset(shadow->shadowOffset().width, -shadow->shadowOffset().height);
  effect->setBlurRadius(shadow->shadowBlurRadius());
  effect->setColor(colorOf(shadow->shadowColor()));
  widget.setGraphicsEffect(effect);
}

}  // namespace kelvane
