#include "Platform/Foundation/NSKeyValueObserving.h"

#include <utility>
#include <vector>

#include "Platform/Foundation/NSNull.h"

namespace kelvane {

Ref<NSObject> detail::nullForNil(Ref<NSObject> value) { return value ? std::move(value) : NSNull::null(); }

Ref<NSObject> detail::objectsAtIndexes(const Ref<NSObject>& array, const NSIndexSet& indexes) {
  const NSArray* from = as<NSArray>(array.get());
  if (!from) return nullptr;
  std::vector<Ref<NSObject>> objects;
  for (const NSRange& range : indexes.ranges())
    for (std::size_t index = range.location; index < range.end(); ++index)
      objects.push_back(from->objectAtIndex(index));
  return std::make_shared<NSArray>(std::move(objects));
}

Ref<NSObject> NSKeyValueChange::nilForNull(Ref<NSObject> value) {
  return value == NSNull::null() ? nullptr : std::move(value);
}

bool NSKeyValueChange::hasOld() const {
  return (myOptions & NSKeyValueObservingOptionOld) != 0 && myKind != NSKeyValueChangeKind::Insertion;
}

bool NSKeyValueChange::hasNew() const {
  return (myOptions & NSKeyValueObservingOptionNew) != 0 && myKind != NSKeyValueChangeKind::Removal && !myIsPrior;
}

Ref<NSObject> NSKeyValueChange::oldValue() const {
  if (!hasOld()) return nullptr;
  if (!myOld && myPlainOld.value) myOld = detail::nullForNil(myPlainOld.box(myPlainOld.value));
  return myOld;
}

Ref<NSObject> NSKeyValueChange::newValue() const {
  if (!hasNew()) return nullptr;
  keepNewValue();
  return myNew;
}

void NSKeyValueChange::keepNewValue() const {
  if (myNew || myIsPrior || myKind == NSKeyValueChangeKind::Removal) return;
  const detail::PlainValue plain = std::exchange(myPlainNew, {});
  if (plain.value) {
    myNew = detail::nullForNil(plain.box(plain.value));
  } else if (myObject) {
    Ref<NSObject> value = myObject->valueForKey(myKey);
    myNew = detail::nullForNil(myIndexes ? detail::objectsAtIndexes(value, *myIndexes) : std::move(value));
  }
}

void NSKeyValueChange::loseObject() {
  myObject = nullptr;
  myPlainNew = {};
}

}  // namespace kelvane
