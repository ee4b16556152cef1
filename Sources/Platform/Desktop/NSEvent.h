#pragma once

#include <cstdint>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// The bits of an event's modifier flags.
inline constexpr std::uint64_t NSAlphaShiftKeyMask = 1U << 16;  // Caps Lock is on
inline constexpr std::uint64_t NSShiftKeyMask = 1U << 17;
inline constexpr std::uint64_t NSControlKeyMask = 1U << 18;
inline constexpr std::uint64_t NSAlternateKeyMask = 1U << 19;
inline constexpr std::uint64_t NSCommandKeyMask = 1U << 20;
inline constexpr std::uint64_t NSNumericPadKeyMask = 1U << 21;
inline constexpr std::uint64_t NSHelpKeyMask = 1U << 22;
inline constexpr std::uint64_t NSFunctionKeyMask = 1U << 23;

// Something that the user did; what is known of it are the modifier keys held meanwhile. Immutable.
class KELVANE_EXPORT NSEvent : public NSObject {
 public:
  explicit NSEvent(std::uint64_t modifierFlags) : myModifierFlags(modifierFlags) {}

  // The masks above, added up; other bits may be set as well.
  std::uint64_t modifierFlags() const { return myModifierFlags; }

 private:
  std::uint64_t myModifierFlags;
};

}  // namespace kelvane
