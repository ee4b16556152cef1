#pragma once

#include <variant>

#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// A point, size, rectangle, range or bare address as an object. An address is only a number here: nothing owns what it
// points to. Immutable.
class KELVANE_EXPORT NSValue : public NSObject {
 public:
  explicit NSValue(const CGPoint& point) : myValue(point) {}
  explicit NSValue(const CGSize& size) : myValue(size) {}
  explicit NSValue(const CGRect& rect) : myValue(rect) {}
  explicit NSValue(const NSRange& range) : myValue(range) {}
  static NSValue valueWithPointer(void* pointer) { return NSValue(pointer); }

  // What is boxed, or null when it is of another kind.
  template <class T>
  const T* get() const {
    return std::get_if<T>(&myValue);
  }
  // The boxed address; null when something else is boxed.
  void* pointerValue() const;

  // Equal when kind and value are.
  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // "{x, y}", "{w, h}", "{{x, y}, {w, h}}", "{location, length}" or "0x...".
  Text description() const override;
  Ref<NSObject> copy() const override;

 private:
  explicit NSValue(void* pointer) : myValue(pointer) {}

  std::variant<CGPoint, CGSize, CGRect, NSRange, void*> myValue;
};

}  // namespace kelvane
