#pragma once

#include <optional>
#include <type_traits>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/PropertyTable.h"

// How a class names its properties; NSObject.h shows it. A property may be of any type that Boxing.h lists.
//
//   property(u"age", &Person::myAge)                            a data member
//   property(u"name", &Person::name)                            a getter: can only be read
//   property(u"name", &Person::name, &Person::setName)          a getter and a setter
//   property(u"isOpen", &Door::isOpen, &Door::setIsOpen<bool>)  a setter that takes nothing but a bool is a template
//
// Setters may take text as Text, const Text&, TextView or std::optional<TextView>. What fits none of these is given by
// functions of its own: {u"key", [](const NSObject& object) { ... }, [](NSObject& object, const Ref<NSObject>& value) {
// ... }}.
namespace kelvane {

namespace detail {

// What a setter's argument is made from. A view needs a text that lives until the setter returns.
template <class Argument>
struct StoredArgument {
  using Type = Argument;
};
template <>
struct StoredArgument<TextView> {
  using Type = Text;
};
template <>
struct StoredArgument<std::optional<TextView>> {
  using Type = std::optional<Text>;
};

}  // namespace detail

// A property that is a data member: plain values, optional ones, geometry and references. A constant one can only be
// read.
template <class Class, class Value>
requires(!std::is_function_v<Value>) Property property(TextView key, Value Class::*member) {
  Property result{Text(key),
                  [member](const NSObject& object) { return box(static_cast<const Class&>(object).*member); }, nullptr};
  if constexpr (!std::is_const_v<Value>)
    result.set = [member](NSObject& object, const Ref<NSObject>& value) {
      static_cast<Class&>(object).*member = unbox<Value>(value);
    };
  return result;
}

// A property that can only be read, through a getter.
template <class Class, class Value>
Property property(TextView key, Value (Class::*getter)() const) {
  return {Text(key), [getter](const NSObject& object) { return box((static_cast<const Class&>(object).*getter)()); },
          nullptr};
}

// A property with a getter and a setter, of which one may be a base class's.
template <class Class, class Value, class Setting, class Result, class Argument>
Property property(TextView key, Value (Class::*getter)() const, Result (Setting::*setter)(Argument)) {
  Property both = property(key, getter);
  both.set = [setter](NSObject& object, const Ref<NSObject>& value) {
    using Stored = typename detail::StoredArgument<std::remove_cvref_t<Argument>>::Type;
    (static_cast<Setting&>(object).*setter)(unbox<Stored>(value));
  };
  return both;
}

}  // namespace kelvane
