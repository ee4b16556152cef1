#include "Extensions/NSValue-OSExtensions.h"

namespace kelvane {
namespace {

template <class T>
T boxedOrZero(const NSValue* value) {
  const T* boxed = value ? value->get<T>() : nullptr;
  return boxed ? *boxed : T();
}

}  // namespace

Ref<NSValue> NSValueExtensions::valueWithCGRect(const CGRect& rect) { return std::make_shared<NSValue>(rect); }
Ref<NSValue> NSValueExtensions::valueWithCGPoint(const CGPoint& point) { return std::make_shared<NSValue>(point); }
Ref<NSValue> NSValueExtensions::valueWithCGSize(const CGSize& size) { return std::make_shared<NSValue>(size); }

CGRect CGRectValue(const NSValue* value) { return boxedOrZero<CGRect>(value); }
CGPoint CGPointValue(const NSValue* value) { return boxedOrZero<CGPoint>(value); }
CGSize CGSizeValue(const NSValue* value) { return boxedOrZero<CGSize>(value); }

}  // namespace kelvane
