#pragma once

#include <QGuiApplication>

// What the window system can do. Main thread only.
namespace kelvane {

// Under Wayland it is the compositor that says where windows go.
inline bool windowsHavePositions() { return !QGuiApplication::platformName().startsWith(QLatin1String("wayland")); }

}  // namespace kelvane
