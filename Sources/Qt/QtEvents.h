#pragma once

#include "Platform/Desktop/NSEvent.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"

class QInputEvent;

// What the user does. Modifier keys are told by what they are for: NSCommandKeyMask is the flag of the key that goes
// with a letter to choose from a menu, which is Ctrl on Linux; NSControlKeyMask is that of the Super key, which Qt
// calls Meta, NSAlternateKeyMask that of Alt. Qt tells nothing of Caps Lock, Help and Fn. Main thread only.
//
// ```cpp
// class Page : public QWidget {
//   void mousePressEvent(QMouseEvent* event) override {
//     if (isAnyCommandModificationKeyPressed(*eventFrom(*event))) update();
//   }
// };
// ```
namespace kelvane {

// The library's form of an event of Qt's.
KELVANE_EXPORT Ref<NSEvent> eventFrom(const QInputEvent& event);

// currentEvent  What the user does now: its flags are of the keys that the window system says are held, also before an
// event tells of them.
KELVANE_EXPORT Ref<NSEvent> currentEvent();

}  // namespace kelvane
