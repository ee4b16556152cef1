#pragma once

#include <optional>
#include <type_traits>
#include <utility>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/PropertyChange.h"
#include "Platform/Foundation/PropertyTable.h"

// How a class names its properties; NSObject.h shows it. A property may be of any type that Boxing.h lists.
//
// ```cpp
// class Door : public NSObject {
//  public:
//   int width() const { return myWidth; }
//   const Text& label() const { return myLabel; }
//   void setLabel(Text label) { setField(myLabel, std::move(label)); }
//   void setHeight(int height) { setField(myHeight, std::max(height, 0)); }
//   bool isOpen() const { return myIsOpen; }
//   void setIsOpen(std::same_as<bool> auto flag) { setField(myIsOpen, flag); }
//   const PropertyTable& propertyTable() const override {
//     static const PropertyTable table(
//         NSObject::propertyTable(),
//         {
//             property(u"colour", &Door::myColour),                       // a data member
//             property(u"height", &Door::myHeight, &Door::setHeight),     // one with a setter of its own
//             property(u"width", &Door::width),                           // a getter: can only be read
//             property(u"label", &Door::label, &Door::setLabel),          // a getter and a setter
//             property(u"isOpen", &Door::isOpen, &Door::setIsOpen<bool>)  // one that takes nothing but a bool
//         });
//     return table;
//   }
//
//  private:
//   Text myColour = u"green", myLabel;
//   int myWidth = 90, myHeight = 200;
//   bool myIsOpen = false;
// };
// ```
//
// Properties are observable by the same names (NSKeyValueObserving.h). Setting one by key is always heard; for a setter
// to be heard it sets the field with `setField`. This works for data members and for getters that return a reference to
// one, each being one property's. What has no such field is changed between willChangeValueForKey and
// didChangeValueForKey.
//
// Setters may take text as Text, const Text&, TextView or std::optional<TextView>. What fits none of these is given by
// functions of its own: {u"key", [](const NSObject& object) { ... }, [](NSObject& object, const Ref<NSObject>& value) {
// ... }}.
namespace kelvane {

namespace detail {

// Whether Boxing.h knows the type: said before the compiler lists all that it has tried.
template <class Value>
concept PropertyValue = requires(const std::remove_cvref_t<Value>& value) {
  box(value);
};

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
  static_assert(detail::PropertyValue<Value>, "no property can be of this type; Boxing.h lists those that can");
  Property result{Text(key),
                  [member](const NSObject& object) { return box(static_cast<const Class&>(object).*member); }, nullptr,
                  [member](const NSObject& object) { return &(static_cast<const Class&>(object).*member); }};
  if constexpr (!std::is_const_v<Value>)
    result.set = [member](NSObject& object, const Ref<NSObject>& value) {
      static_cast<Class&>(object).*member = unbox<Value>(value);
    };
  return result;
}

// A property that can only be read, through a getter.
template <class Class, class Value>
Property property(TextView key, Value (Class::*getter)() const) {
  static_assert(detail::PropertyValue<Value>, "no property can be of this type; Boxing.h lists those that can");
  Property result{Text(key),
                  [getter](const NSObject& object) { return box((static_cast<const Class&>(object).*getter)()); },
                  nullptr};
  if constexpr (std::is_reference_v<Value>)
    result.field = [getter](const NSObject& object) { return &(static_cast<const Class&>(object).*getter)(); };
  return result;
}

// A property with a getter, or a data member, and a setter, of which one may be a base class's.
template <class Class, class Value, class Setting, class Result, class Argument>
Property property(TextView key, Value Class::*read, Result (Setting::*setter)(Argument)) {
  Property both = property(key, read);
  both.set = [setter](NSObject& object, const Ref<NSObject>& value) {
    using Stored = typename detail::StoredArgument<std::remove_cvref_t<Argument>>::Type;
    (static_cast<Setting&>(object).*setter)(unbox<Stored>(value));
  };
  return both;
}

template <class Field, class Value>
void NSObject::setField(Field& field, Value&& value) {
  if (!mySlot.observing) [[likely]] {
    field = std::forward<Value>(value);
    return;
  }
  detail::PropertyChange change(*this, &field);
  const detail::PlainValue after{&field, &detail::Boxer<Field>::box};
  if (!change.keepsOldValue()) {
    field = std::forward<Value>(value);
    return change.tell({}, after);
  }
  // Made before the exchange, since `value` may be the field itself.
  Field made(std::forward<Value>(value));
  const Field before = std::exchange(field, std::move(made));
  change.tell({&before, after.box}, after);
}

}  // namespace kelvane
