#pragma once

#include "Platform/Desktop/NSEvent.h"

namespace kelvane {

// The keys that change what a command means.
inline constexpr std::uint64_t NSCommandModificationKeysMask =
    NSShiftKeyMask | NSControlKeyMask | NSAlternateKeyMask | NSCommandKeyMask | NSFunctionKeyMask;

// isAnyCommandModificationKeyPressed  Whether Shift, Control, Option, Command or Function was held. Caps Lock, the
// numeric pad and Help do not count. Any thread.
inline bool isAnyCommandModificationKeyPressed(const NSEvent& receiver) {
  return (receiver.modifierFlags() & NSCommandModificationKeysMask) != 0;
}

}  // namespace kelvane
