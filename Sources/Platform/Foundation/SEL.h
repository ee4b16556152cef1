#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// The name of an action, such as u"openDocument:". Each name is kept once for the whole process, so that two are
// compared by identity, whatever their length. A copyable value of one word. Immutable; any thread.
class KELVANE_EXPORT SEL {
 public:
  // The null selector: no action.
  constexpr SEL() = default;
  // The selector of that name; an empty name gives the null one. Takes a lock and a look-up: keep what is used often.
  explicit SEL(TextView name);

  constexpr explicit operator bool() const { return myName != nullptr; }
  // Empty for the null selector.
  TextView name() const { return myName ? TextView(*myName) : TextView(); }

  friend constexpr bool operator==(SEL a, SEL b) { return a.myName == b.myName; }

 private:
  const Text* myName = nullptr;
};

}  // namespace kelvane
