#pragma once

#include <type_traits>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/PropertyTable.h"

// How a class names its properties; NSObject.h shows it.
namespace kelvane {

// A property that is a data member: plain values, optional ones, geometry and references.
template <class Class, class Value>
requires(!std::is_function_v<Value>) Property property(TextView key, Value Class::*member) {
  return {Text(key), [member](const NSObject& object) { return box(static_cast<const Class&>(object).*member); },
          [member](NSObject& object, const Ref<NSObject>& value) {
            static_cast<Class&>(object).*member = unbox<Value>(value);
          }};
}

// A property that can only be read, through a getter.
template <class Class, class Value>
Property property(TextView key, Value (Class::*getter)() const) {
  return {Text(key), [getter](const NSObject& object) { return box((static_cast<const Class&>(object).*getter)()); },
          nullptr};
}

// A property with a getter and a setter.
template <class Class, class Value, class Argument>
Property property(TextView key, Value (Class::*getter)() const, void (Class::*setter)(Argument)) {
  Property both = property(key, getter);
  both.set = [setter](NSObject& object, const Ref<NSObject>& value) {
    // A setter that takes a view gets one of a text that lives until it returns.
    using Plain = std::remove_cvref_t<Argument>;
    using Stored = std::conditional_t<std::is_same_v<Plain, TextView>, Text, Plain>;
    (static_cast<Class&>(object).*setter)(unbox<Stored>(value));
  };
  return both;
}

}  // namespace kelvane
