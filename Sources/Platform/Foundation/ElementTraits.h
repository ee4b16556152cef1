#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <functional>
#include <optional>

#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/Raise.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// What the collections ask of their elements: equality, hash, nil and text. Plain values with `==` and std::hash need
// nothing; a host that keeps handles of its own in a collection specialises this for them.
//
//   equal(a, b)     whether two elements count as the same
//   hash(a)         equal elements have equal hashes
//   nil()           what an empty collection answers
//   isNil(a)        whether an element is that; a type without a nil of its own never is
//   text(a)         the text of an element that is text, nothing for any other
//   description(a)  what is printed of an element
//   compare(a, b)   the order of two elements
//   copy(a)         what a collection keeps of an element that it takes for a key: the key must not change later
//   isOnlyReference(a)  whether nothing but `a` refers to the object; what is not counted never says so
//
// A specialisation needs only what the collections in question ask.
template <class T>
struct ElementTraits {
  static bool equal(const T& a, const T& b) { return a == b; }
  static std::size_t hash(const T& element) { return std::hash<T>()(element); }
  static T nil() { return T(); }
  static bool isNil(const T&) { return false; }
  static std::optional<TextView> text(const T& element) {
    if constexpr (std::convertible_to<const T&, TextView>)
      return TextView(element);
    else
      return std::nullopt;
  }
  static Text description(const T& element) {
    if constexpr (std::integral<T> || std::floating_point<T>)
      return NSNumber(element).description();
    else
      return Text(TextView(element));
  }
  static std::weak_ordering compare(const T& a, const T& b) { return std::compare_weak_order_fallback(a, b); }
  static T copy(const T& element) { return element; }
  static bool isOnlyReference(const T&) { return false; }
};

// References to objects: `==` would mean identity, but collections mean equality.
template <class T>
struct ElementTraits<Ref<T>> {
  static bool equal(const Ref<T>& a, const Ref<T>& b) { return a == b || (a && b && a->isEqual(*b)); }
  static std::size_t hash(const Ref<T>& element) { return element ? element->hash() : 0; }
  static Ref<T> nil() { return nullptr; }
  static bool isNil(const Ref<T>& element) { return element == nullptr; }
  static std::optional<TextView> text(const Ref<T>& element) {
    const NSString* string = as<NSString>(element.get());
    return string ? std::optional<TextView>(string->text()) : std::nullopt;
  }
  static Text description(const Ref<T>& element) { return kelvane::description(element); }
  static std::weak_ordering compare(const Ref<T>& a, const Ref<T>& b) { return kelvane::compare(a.get(), b.get()); }
  // An object whose copy is of another class, as that of a mutable one, is kept itself where T is too narrow for it.
  static Ref<T> copy(const Ref<T>& element) {
    const Ref<T> copied = as<T>(element->copy());
    return copied ? copied : element;
  }
  static bool isOnlyReference(const Ref<T>& element) { return element.use_count() == 1; }
};

// Values that may be missing, such as text: what is missing is nil, and has the place in an order that nil has.
template <class T>
struct ElementTraits<std::optional<T>> {
  using Element = std::optional<T>;
  static bool equal(const Element& a, const Element& b) {
    return a.has_value() == b.has_value() && (!a || ElementTraits<T>::equal(*a, *b));
  }
  static std::size_t hash(const Element& element) { return element ? ElementTraits<T>::hash(*element) : 0; }
  static Element nil() { return std::nullopt; }
  static bool isNil(const Element& element) { return !element; }
  static std::optional<TextView> text(const Element& element) {
    return element ? ElementTraits<T>::text(*element) : std::nullopt;
  }
  static Text description(const Element& element) {
    return element ? ElementTraits<T>::description(*element) : kelvane::description(nullptr);
  }
  static std::weak_ordering compare(const Element& a, const Element& b) {
    if (a && b) return ElementTraits<T>::compare(*a, *b);
    if (a) raiseInvalidArgument("compare:", "nil has no order");
    return std::weak_ordering::equivalent;
  }
  static Element copy(const Element& element) { return element ? Element(ElementTraits<T>::copy(*element)) : element; }
  static bool isOnlyReference(const Element& element) { return element && ElementTraits<T>::isOnlyReference(*element); }
};

// Plain pointers: identity, and null is nil.
template <class T>
struct ElementTraits<T*> {
  static bool equal(const T* a, const T* b) { return a == b; }
  static std::size_t hash(const T* element) { return std::hash<const T*>()(element); }
  static T* nil() { return nullptr; }
  static bool isNil(const T* element) { return element == nullptr; }
  static std::optional<TextView> text(const T*) { return std::nullopt; }
  static T* copy(T* element) { return element; }
  static bool isOnlyReference(const T*) { return false; }
};

}  // namespace kelvane
