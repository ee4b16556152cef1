#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/NSValue.h"

// Plain values as objects, and back.
//
// ```cpp
// NSMutableDictionary person;
// person.setObject(box(u"Ann"), u"name");
// person.setObject(box(30), u"age");
// const int age = unbox<int>(person.objectForKey(u"age"));
// ```
//
// Numbers, truth values, enumerations (as their numbers), text, geometry and ranges, objects that are held by value
// (NSDate), references, and std::optional of all these, whose nothing is nil.
namespace kelvane {

inline Ref<NSString> box(Text text) { return std::make_shared<NSString>(std::move(text)); }
inline Ref<NSString> box(TextView text) { return std::make_shared<NSString>(text); }
inline Ref<NSObject> box(std::nullptr_t) { return nullptr; }
inline Ref<NSString> box(const char16_t* text) { return std::make_shared<NSString>(text); }
// Bytes are no text: give u"..." or textFromUTF8(...).
Ref<NSString> box(const char* bytes) = delete;
template <class T>
requires std::integral<T> || std::floating_point<T> Ref<NSNumber> box(T number) {
  return std::make_shared<NSNumber>(number);
}
template <class T>
requires std::is_enum_v<T> Ref<NSNumber> box(T value) {
  return std::make_shared<NSNumber>(static_cast<std::underlying_type_t<T>>(value));
}
inline Ref<NSValue> box(const CGPoint& point) { return std::make_shared<NSValue>(point); }
inline Ref<NSValue> box(const CGSize& size) { return std::make_shared<NSValue>(size); }
inline Ref<NSValue> box(const CGRect& rect) { return std::make_shared<NSValue>(rect); }
inline Ref<NSValue> box(const NSRange& range) { return std::make_shared<NSValue>(range); }
// A copy of an object that is held by value.
template <std::derived_from<NSObject> T>
Ref<T> box(const T& object) {
  return std::make_shared<T>(object);
}
// What is an object already stays the very one; nothing is nil.
template <std::derived_from<NSObject> T>
Ref<T> box(Ref<T> object) {
  return object;
}
template <class T>
Ref<NSObject> box(const std::optional<T>& value) {
  return value ? Ref<NSObject>(box(*value)) : nullptr;
}

namespace detail {

// `box` of a value of a type that only the compiler knows.
template <class T>
struct Boxer {
  static Ref<NSObject> box(const void* value) { return kelvane::box(*static_cast<const T*>(value)); }
};

template <class T>
struct Unboxer {
  static_assert(!std::same_as<T, T>, "no object holds a plain value of this type; Boxing.h lists those that do");
  static T unbox(const Ref<NSObject>& object);
};

[[noreturn]] KELVANE_EXPORT void raiseWrongKind(const NSObject* object, std::string_view wanted);

template <class T>
requires std::integral<T> || std::floating_point<T>
struct Unboxer<T> {
  static T unbox(const Ref<NSObject>& object) {
    const NSNumber* number = as<NSNumber>(object.get());
    if (!number) raiseWrongKind(object.get(), "a number");
    if constexpr (std::same_as<T, bool>)
      return number->boolValue();
    else if constexpr (std::floating_point<T>)
      return static_cast<T>(number->doubleValue());
    else if constexpr (std::signed_integral<T> && sizeof(T) <= sizeof(std::int32_t))
      return static_cast<T>(number->intValue());
    else if constexpr (std::signed_integral<T>)
      return static_cast<T>(number->integerValue());
    else
      return static_cast<T>(number->unsignedIntegerValue());
  }
};

template <class T>
requires std::is_enum_v<T>
struct Unboxer<T> {
  static T unbox(const Ref<NSObject>& object) {
    return static_cast<T>(Unboxer<std::underlying_type_t<T>>::unbox(object));
  }
};

template <>
struct Unboxer<Text> {
  static Text unbox(const Ref<NSObject>& object) {
    const NSString* string = as<NSString>(object.get());
    if (!string) raiseWrongKind(object.get(), "text");
    return string->text();
  }
};

template <class T>
requires std::same_as<T, CGPoint> || std::same_as<T, CGSize> || std::same_as<T, CGRect> || std::same_as<T, NSRange>
struct Unboxer<T> {
  static T unbox(const Ref<NSObject>& object) {
    const NSValue* value = as<NSValue>(object.get());
    if (!value || !value->get<T>()) raiseWrongKind(object.get(), "a geometry value");
    return *value->get<T>();
  }
};

template <std::derived_from<NSObject> T>
struct Unboxer<T> {
  static T unbox(const Ref<NSObject>& object) {
    const T* value = as<T>(object.get());
    if (!value) raiseWrongKind(object.get(), "an object of the property's class");
    return *value;
  }
};

template <class T>
struct Unboxer<Ref<T>> {
  static Ref<T> unbox(const Ref<NSObject>& object) {
    Ref<T> reference = as<T>(object);
    if (object && !reference) raiseWrongKind(object.get(), "an object of the property's class");
    return reference;
  }
};

template <class T>
struct Unboxer<std::optional<T>> {
  static std::optional<T> unbox(const Ref<NSObject>& object) {
    return object ? std::optional<T>(Unboxer<T>::unbox(object)) : std::nullopt;
  }
};

}  // namespace detail

// The plain value in `object`. Numbers convert among their kinds as NSNumber says, narrower integers keep their low
// bits, and an enumeration takes any number that its underlying type can hold; std::invalid_argument when the object is
// of another kind, or nil where T has no nil.
template <class T>
T unbox(const Ref<NSObject>& object) {
  return detail::Unboxer<T>::unbox(object);
}

}  // namespace kelvane
