#include "Platform/Foundation/NSNull.h"

namespace kelvane {

const Ref<NSNull>& NSNull::null() {
  static const auto& theOne = *new Ref<NSNull>(new NSNull);
  return theOne;
}

}  // namespace kelvane
