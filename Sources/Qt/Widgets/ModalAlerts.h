#pragma once

#include <chrono>

#include "Platform/Desktop/Desktop.h"
#include "Platform/Foundation/Export.h"

namespace kelvane {

class NSRunLoop;

// Shows an alert in a message box, all of whose text is plain, and returns when it was closed: by its button, by
// Return, Space or Escape, or by the application's end. Of a text that no screen would hold the beginning is shown.
// Main thread only.
void showAlert(const ModalAlert& alert);

// How long a thread waits until the main thread begins to show its alert.
inline constexpr std::chrono::milliseconds AlertPatience = std::chrono::seconds(10);

// Has the current desktop show the alert on the main thread, whose loop is `mainLoop`, and waits until it was closed.
// When the main thread does not get to it in time, because it runs no loop or waits for the very thread that asks, the
// call returns; the alert comes as soon as the loop runs. For any other thread.
KELVANE_EXPORT void runAlertOnMainThread(NSRunLoop& mainLoop, const ModalAlert& alert,
                                         std::chrono::milliseconds patience = AlertPatience);

}  // namespace kelvane
