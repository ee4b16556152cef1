#pragma once

#include <cstdint>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

class NSIndexSet;
enum class NSKeyValueChangeKind : std::uint64_t;

namespace detail {

struct ObservedKey;

// A value where it stands, and how it becomes an object. Nobody boxes what no observer reads.
struct PlainValue {
  using Box = Ref<NSObject> (*)(const void* value);

  const void* value = nullptr;
  Box box = nullptr;
};

// One change of a property, made between construction and `tell`. What is not told was none. Costs next to nothing when
// nobody observes the property.
class KELVANE_EXPORT PropertyChange {
 public:
  // Of the property that stands on the field.
  PropertyChange(NSObject& object, const void* field);
  PropertyChange(NSObject& object, TextView key);
  // Of elements of an array property; `indexes` null for the whole.
  PropertyChange(NSObject& object, TextView key, NSKeyValueChangeKind kind, const NSIndexSet* indexes);
  ~PropertyChange() {
    if (myKey) abandon();
  }
  PropertyChange(const PropertyChange&) = delete;
  PropertyChange& operator=(const PropertyChange&) = delete;

  // Whether `tell` is to be given the value from before, since an observer wants it.
  bool keepsOldValue() const { return myKeepsOldValue; }
  // Tells the observers. Neither the object nor its fields are touched afterwards, since an observer may destroy them.
  void tell();
  // The same, of a change of a field.
  void tell(const PlainValue& oldValue, const PlainValue& newValue);

 private:
  void abandon();

  NSObject& myObject;
  // Null when there is nobody to tell.
  ObservedKey* myKey = nullptr;
  bool myKeepsOldValue = false;
  // Whether it stands among the object's changes under way, which keep the old value themselves.
  bool myIsPending = false;
};

}  // namespace detail
}  // namespace kelvane
