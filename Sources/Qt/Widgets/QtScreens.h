#pragma once

#include <QPointF>
#include <QPointer>
#include <QScreen>
#include <vector>

#include "Platform/Desktop/NSScreen.h"
#include "Platform/Foundation/Ref.h"

// Screens, and the plane that they lie in: its (0, 0) is the lower left corner of the primary screen. Main thread only.
namespace kelvane {

// That corner, as Qt counts; (0, 0) where there is no screen.
QPointF lowerLeftOfPlane();

// The screen's adapter, always the same one; nil for null.
Ref<NSScreen> screenOf(QScreen* screen);
// In Qt's order, the primary one first.
std::vector<Ref<NSScreen>> allScreens();

}  // namespace kelvane
