#include "Qt/QtShadows.h"

#include <QGraphicsDropShadowEffect>
#include <QWidget>
#include <algorithm>
#include <cmath>

#include "Qt/Painting/Conversions.h"

namespace kelvane {
namespace {

// Further than any screen goes, and few enough for Qt, which cannot paint a widget whose effect reaches to no number.
double withinReach(double length) { return std::isnan(length) ? 0 : std::clamp(length, -10'000.0, 10'000.0); }

}  // namespace

void setShadow(QWidget& widget, const NSShadow* shadow) {
  if (!shadow) return widget.setGraphicsEffect(nullptr);
  auto* const effect = new QGraphicsDropShadowEffect(&widget);
  effect->setOffset(withinReach(shadow->shadowOffset().width), -withinReach(shadow->shadowOffset().height));
  effect->setBlurRadius(withinReach(shadow->shadowBlurRadius()));
  effect->setColor(qtColor(shadow->shadowColor()));
  widget.setGraphicsEffect(effect);
}

}  // namespace kelvane
