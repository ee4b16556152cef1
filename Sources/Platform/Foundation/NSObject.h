#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

class KeyPath;
class NSIndexSet;
class NSKeyValueChange;
class NSKeyValueMutableArray;
class NSObject;
class PropertyTable;
enum class NSKeyValueChangeKind : std::uint64_t;

namespace detail {

class Observing;

// Where an object keeps whom it observes and who observes it. A copy of the object takes no part.
struct ObservingSlot {
  ObservingSlot() = default;
  ObservingSlot(const ObservingSlot&) noexcept {}
  ObservingSlot& operator=(const ObservingSlot&) noexcept { return *this; }

  Observing* observing = nullptr;
};

}  // namespace detail

// Where an object stands in the description of collections: within `object`, which itself stands within `outer`.
struct DescriptionNesting {
  const NSObject* object = nullptr;
  const DescriptionNesting* outer = nullptr;
};

// What all objects share: equality, a text form, copying, and reading, writing and observing of properties by name.
//
// A class of the host joins in by deriving from NSObject and naming its properties once (Properties.h):
//
// ```cpp
// class Person : public NSObject {
//  public:
//   const Text& name() const { return myName; }
//   void setName(Text name) { setField(myName, std::move(name)); }
//   const PropertyTable& propertyTable() const override {
//     static const PropertyTable table(NSObject::propertyTable(),
//                                      {property(u"name", &Person::myName), property(u"age", &Person::myAge)});
//     return table;
//   }
//
//  private:
//   Text myName;
//   int myAge = 0;
// };
// ```
//
// One thread at a time, unless a class says otherwise.
class KELVANE_EXPORT NSObject : public std::enable_shared_from_this<NSObject> {
 public:
  NSObject() = default;
  // Inline, since values such as colours are made and gone in less time than a call takes.
  virtual ~NSObject() {
    if (mySlot.observing) dropObserving();
  }

  // isEqual:  Whether the two are the same in value. Identity, unless a class says otherwise.
  virtual bool isEqual(const NSObject& other) const;
  // Equal objects have equal hashes.
  virtual std::size_t hash() const;
  // compare:  Where this object stands in order to the other. std::invalid_argument for two that have no order; text
  // with text, numbers with numbers and dates with dates have one.
  virtual std::weak_ordering compare(const NSObject& other) const;
  // What "%@" prints: "<ClassName: 0x...>", unless a class says otherwise.
  virtual Text description() const;
  // Appends what stands for this object in the description of a collection: its own description, unless a class says
  // otherwise. Text is put in quotes there, and a collection in a collection is indented by 4 blanks more.
  virtual void appendDescription(Text& out, const DescriptionNesting& within) const;
  // The class's own name, without namespaces.
  Text className() const;

  // An immutable object of equal value; an immutable object gives itself. std::invalid_argument when the class cannot
  // be copied.
  virtual Ref<NSObject> copy() const;
  // A new object of equal value that can be changed; nil when the class has no form that can.
  virtual Ref<NSObject> mutableCopy() const;

  // valueForKey:  The property of that name, boxed where it is a plain value; nil where the property is. A name that is
  // no property raises std::invalid_argument.
  virtual Ref<NSObject> valueForKey(TextView key) const;
  // setValue:forKey:  std::invalid_argument when there is no such property, when it cannot be written, when the value
  // is of another kind, and when a property that has no nil of its own (a Text, number, truth value or rectangle) is
  // given nil.
  virtual void setValueForKey(const Ref<NSObject>& value, TextView key);

  // valueForKeyPath:  Follows the keys between the points of `keyPath`; nil as soon as one gives nil.
  Ref<NSObject> valueForKeyPath(TextView keyPath) const;
  // setValue:forKeyPath:  Sets the last key of the object that the others lead to; nothing when they lead to nil.
  void setValueForKeyPath(const Ref<NSObject>& value, TextView keyPath);

  // The properties that can be read and written by name; none, unless a class says otherwise.
  virtual const PropertyTable& propertyTable() const;

  // Observing by key; NSKeyValueObserving.h tells its rules and has what these take.

  // addObserver:forKeyPath:options:context:  From now on `observer` hears of changes of the value at the key path, with
  // `context` as it is given here. std::invalid_argument, and nothing is registered, when there is no such key.
  void addObserver(NSObject& observer, const KeyPath& forKeyPath, std::uint64_t options, void* context);
  // removeObserver:forKeyPath:context:  Ends the latest such registration; std::invalid_argument when there is none.
  void removeObserver(NSObject& observer, const KeyPath& forKeyPath, void* context);
  // removeObserver:forKeyPath:  The same, whatever the context.
  void removeObserver(NSObject& observer, const KeyPath& forKeyPath);

  // observeValueForKeyPath:ofObject:change:context:  A value that this object observes has changed. `keyPath`, `object`
  // and `context` are those of the registration. An override gives what is not its own to its base class; what nobody
  // claims is reported to the system log here.
  virtual void observeValueForKeyPath(TextView keyPath, NSObject& ofObject, const NSKeyValueChange& change,
                                      void* context);

  // willChangeValueForKey:
  // didChangeValueForKey:  Between these a class changes a property in a way that is not seen otherwise. Calls of the
  // same key nest and are told at the last one.
  void willChangeValueForKey(TextView key);
  void didChangeValueForKey(TextView key);
  // willChange:valuesAtIndexes:forKey:
  // didChange:valuesAtIndexes:forKey:  The same for elements of an array property: at the indexes that the new elements
  // will have, or that the removed or replaced ones had.
  void willChange(NSKeyValueChangeKind changeKind, const NSIndexSet& valuesAtIndexes, TextView forKey);
  void didChange(NSKeyValueChangeKind changeKind, const NSIndexSet& valuesAtIndexes, TextView forKey);

  // mutableArrayValueForKey:  What changes the array under the key so that its observers hear
  // (NSKeyValueMutableArray.h). std::invalid_argument when there is no such key.
  NSKeyValueMutableArray mutableArrayValueForKey(TextView key);

 protected:
  NSObject(const NSObject&) = default;
  NSObject& operator=(const NSObject&) = default;

  // Sets the field on which a property stands, and tells its observers. Without any it costs a comparison. Include
  // Properties.h.
  template <class Field, class Value>
  void setField(Field& field, Value&& value);

  // Tells the observers of a key about a change that has been made already.
  void didChangeValueForKey(TextView key, const Ref<NSObject>& oldValue, const Ref<NSObject>& newValue);

  // Ends all registrations that this object has made. In the destructor of an observer it keeps out what would arrive
  // when half of the object is gone.
  void stopObserving() noexcept;
  // Whether this object is registered with `object`, which may be gone; or with any under `context`. Linear in the
  // number of its registrations, the earliest first.
  bool isObserving(const NSObject* object) const;
  bool isObservingWithContext(const void* context) const;

  // A reference to this very object, or to what `makeCopy` gives for one that lives outside of references.
  template <class MakeCopy>
  Ref<NSObject> selfOr(MakeCopy makeCopy) const {
    if (Ref<const NSObject> self = weak_from_this().lock()) return std::const_pointer_cast<NSObject>(self);
    return makeCopy();
  }

 private:
  friend class detail::Observing;

  void dropObserving() noexcept;

  detail::ObservingSlot mySlot;
};

// `object` as a T, or null when it is nil or of another kind.
template <class T>
const T* as(const NSObject* object) {
  return dynamic_cast<const T*>(object);
}
template <class T>
T* as(NSObject* object) {
  return dynamic_cast<T*>(object);
}
template <class T, class U>
Ref<T> as(const Ref<U>& object) {
  return std::dynamic_pointer_cast<T>(object);
}

// Equality of references: nil equals nil and nothing else. Within a class that overrides the member of the same name,
// which hides this one, it is to be had as `areEqual`.
KELVANE_EXPORT bool isEqual(const NSObject* a, const NSObject* b);
template <class T, class U>
bool isEqual(const Ref<T>& a, const Ref<U>& b) {
  return isEqual(a.get(), b.get());
}
template <class T>
bool isEqual(const Ref<T>& a, std::nullptr_t) {
  return a == nullptr;
}

template <class A, class B>
bool areEqual(const A& a, const B& b) {
  return isEqual(a, b);
}

// The order of two objects. Nil has none: asked of nil, everything is the same; nil as the other is
// std::invalid_argument.
KELVANE_EXPORT std::weak_ordering compare(const NSObject* a, const NSObject* b);

// The description of what a reference holds; "(null)" for nil. Within a class that overrides the member of the same
// name it is to be had as `descriptionOf`.
KELVANE_EXPORT Text description(const NSObject* object);
template <class T>
Text description(const Ref<T>& object) {
  return description(object.get());
}
template <class Reference>
Text descriptionOf(const Reference& object) {
  return description(object);
}

}  // namespace kelvane
