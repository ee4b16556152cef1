#include "Platform/Foundation/NSNull.h"

namespace kelvane {

const Ref<NSNull>& NSNull::null() {
  static const auto& theOne = *new Ref<NSNull>(std::make_shared<NSNull>());
  return theOne;
}

}  // namespace kelvane
