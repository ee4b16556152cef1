#include "Platform/Desktop/NSShadow.h"

#include <functional>
#include <memory>

namespace kelvane {

bool NSShadow::isEqual(const NSObject& other) const {
  const auto* shadow = as<NSShadow>(&other);
  return shadow && shadow->myOffset == myOffset && shadow->myBlurRadius == myBlurRadius &&
         shadow->myColor.isEqual(myColor);
}

std::size_t NSShadow::hash() const {
  const std::hash<double> hash;
  return (hash(myOffset.width) * 31 + hash(myOffset.height)) * 31 + hash(myBlurRadius);
}

Ref<NSObject> NSShadow::copy() const { return std::make_shared<NSShadow>(*this); }

}  // namespace kelvane
