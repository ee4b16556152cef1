#pragma once

#include <cstdint>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/KeyPath.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSIndexSet.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/PropertyChange.h"

// Observing: an object hears when a property of another changes.
//
// ```cpp
// class Greeter : public NSObject {
//  public:
//   explicit Greeter(Person& person) { person.addObserver(*this, u"name", NSKeyValueObservingOptionNew, nullptr); }
//   ~Greeter() override { stopObserving(); }
//   void observeValueForKeyPath(TextView keyPath, NSObject& object, const NSKeyValueChange& change,
//                               void* context) override {
//     std::cout << "Hello, " << utf8(change.newValueAs<Text>()) << '\n';
//   }
// };
// ```
//
// What can be observed. Every property of a class (Properties.h). It is heard when it is set by key, when a setter uses
// `setField`, when an array property is changed through `mutableArrayValueForKey`, and when the class says so between
// willChangeValueForKey and didChangeValueForKey. Entries of a mutable dictionary likewise. An array's elements are
// observed one by one (below); the array itself tells of nothing, and refuses observers.
//
// Key paths. "author.name" is heard when the author's name changes and when another author is set. Where nil stands on
// the way the value is nil, and observing goes on as soon as there is an object. What comes to stand on the way later
// and lacks the key counts as nil and is reported to the system log. When another object is set, the old value is read
// from the one that it replaces.
//
// Order. Observers of a key hear in the order in which they registered (for an object further along a key path: in
// which the path came to it), each as often as it registered. A change that an observer makes is told at once, so
// whoever has not heard of the first hears of the second before it; each record keeps its own values. A change of a key
// within a change of the same key (a setter called by key) is one change.
//
// Coming and going. Who is added while observers hear of a change hears from the next one on; who is removed hears
// nothing any more. An object that dies, observer or observed, takes its registrations with it; nobody else hears when
// it dies meanwhile. A class whose destructor changes what it observes calls `stopObserving` first in there.
//
// Exceptions. When an observer throws, the others still hear; then the first exception reaches whoever made the change,
// which stays made.
//
// Cost. An object that takes no part has one null pointer. One that does takes 48 bytes, 88 for each key that is
// observed and 120 for each registration, with 48 more for each further key of its path. Registering is constant;
// unregistering looks through the observers of the key or the observer's own registrations, whichever are fewer, the
// latest first.
//
// Nothing here keeps anything alive. One thread at a time for all objects that observe each other.
namespace kelvane {

// What an observer asks for, combined with `|`.
using NSKeyValueObservingOptions = std::uint64_t;
// The new value, and the old one.
inline constexpr NSKeyValueObservingOptions NSKeyValueObservingOptionNew = 1;
inline constexpr NSKeyValueObservingOptions NSKeyValueObservingOptionOld = 2;
// A first record right when registering, with the value as it is, as new one.
inline constexpr NSKeyValueObservingOptions NSKeyValueObservingOptionInitial = 4;
// A record before each change as well; what is thrown there stops the change. The object must be left alive.
inline constexpr NSKeyValueObservingOptions NSKeyValueObservingOptionPrior = 8;

// What a change did: set the property, or changed elements of an array in place.
enum class NSKeyValueChangeKind : std::uint64_t { Setting = 1, Insertion = 2, Removal = 3, Replacement = 4 };

namespace detail {
class Dispatch;
class Observing;

// What stands for a value in a change record, nil included.
Ref<NSObject> nullForNil(Ref<NSObject> value);
// The elements of an array at indexes that are within it; nil when it is no array.
Ref<NSObject> objectsAtIndexes(const Ref<NSObject>& array, const NSIndexSet& indexes);
}  // namespace detail

// A change record. Lives as long as the observer's call; values are made when they are asked for.
class KELVANE_EXPORT NSKeyValueChange {
 public:
  NSKeyValueChange(const NSKeyValueChange&) = delete;
  NSKeyValueChange& operator=(const NSKeyValueChange&) = delete;

  // NSKeyValueChangeKindKey
  NSKeyValueChangeKind kind() const { return myKind; }
  // NSKeyValueChangeIndexesKey  Where elements were inserted, removed or replaced; nil when the property was set.
  const Ref<NSIndexSet>& indexes() const { return myIndexes; }
  // NSKeyValueChangeNotificationIsPriorKey  Whether the change is yet to come.
  bool isPrior() const { return myIsPrior; }
  // NSKeyValueChangeOldKey  The value before, the null object when that was nil; of elements that were removed or
  // replaced an array of these. Nil when it was not asked for, and of an insertion.
  Ref<NSObject> oldValue() const;
  // NSKeyValueChangeNewKey  The value after, likewise. Nil when it was not asked for, of a removal, in a record before
  // the change, and when this very observer has destroyed the object since.
  Ref<NSObject> newValue() const;

  // The same as plain values, of the property's own type without making an object; else as `unbox` does it, to which
  // what is not there is nil.
  template <class T>
  T oldValueAs() const {
    if (hasOld() && holds<T>(myPlainOld)) return *static_cast<const T*>(myPlainOld.value);
    return unbox<T>(nilForNull(oldValue()));
  }
  template <class T>
  T newValueAs() const {
    if (hasNew() && holds<T>(myPlainNew)) return *static_cast<const T*>(myPlainNew.value);
    return unbox<T>(nilForNull(newValue()));
  }

 private:
  friend class detail::Dispatch;
  friend class detail::Observing;
  NSKeyValueChange() = default;

  template <class T>
  static bool holds(const detail::PlainValue& plain) {
    return plain.value && plain.box == &detail::Boxer<T>::box;
  }
  static Ref<NSObject> nilForNull(Ref<NSObject> value);
  bool hasOld() const;
  bool hasNew() const;
  // Makes the new value while it is still to be had.
  void keepNewValue() const;
  // The object is gone: only what is here already can be given.
  void loseObject();

  NSKeyValueChangeKind myKind = NSKeyValueChangeKind::Setting;
  NSKeyValueObservingOptions myOptions = 0;
  bool myIsPrior = false;
  Ref<NSIndexSet> myIndexes;
  mutable Ref<NSObject> myOld;
  mutable Ref<NSObject> myNew;
  detail::PlainValue myPlainOld;
  mutable detail::PlainValue myPlainNew;
  // Where the new value comes from when it stands in no field.
  const NSObject* myObject = nullptr;
  TextView myKey;
};

// addObserver:toObjectsAtIndexes:forKeyPath:options:context:  Registers with each element at these indexes, as
// NSObject::addObserver does. An index beyond the end raises std::out_of_range and registers with none; an element that
// lacks the key raises, and those before it stay registered.
KELVANE_EXPORT void addObserver(const NSArray& receiver, NSObject& observer, const NSIndexSet& toObjectsAtIndexes,
                                const KeyPath& forKeyPath, NSKeyValueObservingOptions options, void* context);
// removeObserver:fromObjectsAtIndexes:forKeyPath:context:  Ends one registration with each of them; likewise.
KELVANE_EXPORT void removeObserver(const NSArray& receiver, NSObject& observer, const NSIndexSet& fromObjectsAtIndexes,
                                   const KeyPath& forKeyPath, void* context);
// removeObserver:fromObjectsAtIndexes:forKeyPath:
KELVANE_EXPORT void removeObserver(const NSArray& receiver, NSObject& observer, const NSIndexSet& fromObjectsAtIndexes,
                                   const KeyPath& forKeyPath);

}  // namespace kelvane
