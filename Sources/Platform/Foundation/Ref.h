#pragma once

#include <memory>

namespace kelvane {

class NSObject;

// A counted reference to an object. Nil is null, identity is the pointer, equality is `isEqual` (NSObject.h).
template <class T>
using Ref = std::shared_ptr<T>;

}  // namespace kelvane
