#include "Platform/Foundation/NSValue.h"

#include <functional>

#include "Platform/Foundation/Format.h"

namespace kelvane {
namespace {

Text describe(const CGPoint& point) { return NSStringFromPoint(point); }
Text describe(const CGSize& size) { return NSStringFromSize(size); }
Text describe(const CGRect& rect) { return NSStringFromRect(rect); }
Text describe(const NSRange& range) { return format(u"{%lu, %lu}", range.location, range.length); }
Text describe(const void* pointer) { return format(u"%p", pointer); }

}  // namespace

void* NSValue::pointerValue() const {
  void* const* pointer = get<void*>();
  return pointer ? *pointer : nullptr;
}

bool NSValue::isEqual(const NSObject& other) const {
  const NSValue* value = as<NSValue>(&other);
  return value && value->myValue == myValue;
}

std::size_t NSValue::hash() const {
  const auto mixed = [](auto first, auto second) {
    const std::size_t a = std::hash<decltype(first)>()(first);
    return a ^ (std::hash<decltype(second)>()(second) + 0x9E3779B97F4A7C15ULL + (a << 6U) + (a >> 2U));
  };
  struct Hasher {
    decltype(mixed)& mix;
    std::size_t operator()(const CGPoint& p) const { return mix(p.x, p.y); }
    std::size_t operator()(const CGSize& s) const { return mix(s.width, s.height); }
    std::size_t operator()(const CGRect& r) const { return mix((*this)(r.origin), (*this)(r.size)); }
    std::size_t operator()(const NSRange& r) const { return mix(r.location, r.length); }
    std::size_t operator()(const void* pointer) const { return std::hash<const void*>()(pointer); }
  };
  return std::visit(Hasher{mixed}, myValue);
}

Text NSValue::description() const {
  return std::visit([](const auto& value) { return describe(value); }, myValue);
}

Ref<NSObject> NSValue::copy() const {
  return selfOr([this] { return std::make_shared<NSValue>(*this); });
}

}  // namespace kelvane
