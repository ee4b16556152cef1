#pragma once

#include <initializer_list>
#include <span>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Texts and views put together, with one allocation: `+` takes no views. Pure functions, any thread.
namespace kelvane {

// The parts one after another.
// ```cpp
// const Text target = concatenate({folder, u"/", name.substr(1)});
// ```
KELVANE_EXPORT Text concatenate(std::initializer_list<TextView> parts);

// componentsJoinedByString:  The components with the separator between them.
//   {u"a", u"b", u""}, u", " => u"a, b, "
KELVANE_EXPORT Text componentsJoinedByString(std::span<const TextView> components, TextView separator);
KELVANE_EXPORT Text componentsJoinedByString(std::span<const Text> components, TextView separator);

}  // namespace kelvane
