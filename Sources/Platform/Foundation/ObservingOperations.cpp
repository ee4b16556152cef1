// What NSObject, NSKeyValueObserving.h and PropertyChange.h declare about observing. It stands apart, above all of
// them, so that they need not know what is behind it.

#include <string_view>
#include <utility>

#include "Platform/Foundation/NSKeyValueMutableArray.h"
#include "Platform/Foundation/NSKeyValueObserving.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/Observing.h"
#include "Platform/Foundation/Raise.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {

using detail::Observation;
using detail::ObservedKey;
using detail::Observing;
using detail::PlainValue;
using detail::PropertyChange;

namespace {

ObservedKey* observedKey(const NSObject& object, TextView key) {
  const Observing* observing = Observing::of(object);
  return observing ? observing->keyNamed(key) : nullptr;
}

void endLatest(const NSObject& object, const NSObject& observer, const KeyPath& keyPath, void* const* context) {
  if (Observation* observation = Observing::find(object, observer, keyPath, context))
    return Observing::end(*observation);
  raiseInvalidArgument(
      context ? "removeObserver:forKeyPath:context:" : "removeObserver:forKeyPath:",
      utf8(observer.description()) + " is not registered with " + utf8(object.description()) + " for key path",
      keyPath.text());
}

// All or none: what is beyond the end is found before anything is done.
template <class Work>
void forEachElement(std::string_view operation, const NSArray& array, const NSIndexSet& indexes, Work work) {
  for (const NSRange& range : indexes.ranges()) requireRange(operation, range, array.count());
  // A copy of each reference, since who hears of one may change the array.
  for (const NSRange& range : indexes.ranges())
    for (std::size_t index = range.location; index < range.end() && index < array.count(); ++index)
      work(*Ref<NSObject>(array.objectAtIndex(index)));
}

}  // namespace

// MARK: Registering

void NSObject::addObserver(NSObject& observer, const KeyPath& forKeyPath, NSKeyValueObservingOptions options,
                           void* context) {
  Observing::add(*this, observer, forKeyPath, options, context);
}

void NSObject::removeObserver(NSObject& observer, const KeyPath& forKeyPath, void* context) {
  endLatest(*this, observer, forKeyPath, &context);
}

void NSObject::removeObserver(NSObject& observer, const KeyPath& forKeyPath) {
  endLatest(*this, observer, forKeyPath, nullptr);
}

void addObserver(const NSArray& receiver, NSObject& observer, const NSIndexSet& toObjectsAtIndexes,
                 const KeyPath& forKeyPath, NSKeyValueObservingOptions options, void* context) {
  forEachElement("addObserver:toObjectsAtIndexes:forKeyPath:options:context:", receiver, toObjectsAtIndexes,
                 [&](NSObject& element) { Observing::add(element, observer, forKeyPath, options, context); });
}

void removeObserver(const NSArray& receiver, NSObject& observer, const NSIndexSet& fromObjectsAtIndexes,
                    const KeyPath& forKeyPath, void* context) {
  forEachElement("removeObserver:fromObjectsAtIndexes:forKeyPath:context:", receiver, fromObjectsAtIndexes,
                 [&](NSObject& element) { endLatest(element, observer, forKeyPath, &context); });
}

void removeObserver(const NSArray& receiver, NSObject& observer, const NSIndexSet& fromObjectsAtIndexes,
                    const KeyPath& forKeyPath) {
  forEachElement("removeObserver:fromObjectsAtIndexes:forKeyPath:", receiver, fromObjectsAtIndexes,
                 [&](NSObject& element) { endLatest(element, observer, forKeyPath, nullptr); });
}

void NSObject::stopObserving() noexcept { Observing::endAllOf(*this); }

bool NSObject::isObserving(const NSObject* object) const {
  const Observing* observing = Observing::of(*this);
  for (const Observation* one = observing ? observing->earliestMade() : nullptr; one; one = one->later)
    if (one->object == object) return true;
  return false;
}

bool NSObject::isObservingWithContext(const void* context) const {
  const Observing* observing = Observing::of(*this);
  for (const Observation* one = observing ? observing->earliestMade() : nullptr; one; one = one->later)
    if (one->context == context) return true;
  return false;
}

void NSObject::dropObserving() noexcept { Observing::drop(*this); }

// MARK: Changing

void NSObject::observeValueForKeyPath(TextView keyPath, NSObject& ofObject, const NSKeyValueChange&, void*) {
  NSLog(u"%@ is told that '%@' of %@ has changed, and does not handle it.", description(), keyPath,
        ofObject.description());
}

void NSObject::willChangeValueForKey(TextView key) {
  if (ObservedKey* observed = observedKey(*this, key))
    Observing::begin(*this, *observed, NSKeyValueChangeKind::Setting, nullptr);
}

void NSObject::didChangeValueForKey(TextView key) {
  if (ObservedKey* observed = observedKey(*this, key)) Observing::tell(*this, *observed);
}

void NSObject::willChange(NSKeyValueChangeKind changeKind, const NSIndexSet& valuesAtIndexes, TextView forKey) {
  if (ObservedKey* observed = observedKey(*this, forKey))
    Observing::begin(*this, *observed, changeKind, &valuesAtIndexes);
}

void NSObject::didChange(NSKeyValueChangeKind, const NSIndexSet&, TextView forKey) { didChangeValueForKey(forKey); }

void NSObject::didChangeValueForKey(TextView key, const Ref<NSObject>& oldValue, const Ref<NSObject>& newValue) {
  ObservedKey* observed = observedKey(*this, key);
  if (!observed) return;
  Observing::of(*this)->keepNewValues(*observed);
  detail::Dispatch dispatch(*this, *observed, NSKeyValueChangeKind::Setting, nullptr, false);
  dispatch.setOldValue(detail::nullForNil(oldValue));
  dispatch.setNewValue(detail::nullForNil(newValue));
  dispatch.run();
}

NSKeyValueMutableArray NSObject::mutableArrayValueForKey(TextView key) { return {*this, key}; }

// MARK: PropertyChange

PropertyChange::PropertyChange(NSObject& object, const void* field) : myObject(object) {
  const Observing* observing = Observing::of(object);
  ObservedKey* key = observing ? observing->keyOfField(field) : nullptr;
  // A change of the same key that is under way covers this one.
  if (!key || !key->first || key->pending) return;
  if (key->wantPrior > 0) {
    Observing::begin(object, *key, NSKeyValueChangeKind::Setting, nullptr);
    myIsPending = true;
  } else {
    if (observing->isTelling()) observing->keepNewValues(*key);
    myKeepsOldValue = key->wantOld > 0;
  }
  ++key->users;
  myKey = key;
}

PropertyChange::PropertyChange(NSObject& object, TextView key)
    : PropertyChange(object, key, NSKeyValueChangeKind::Setting, nullptr) {}

PropertyChange::PropertyChange(NSObject& object, TextView key, NSKeyValueChangeKind kind, const NSIndexSet* indexes)
    : myObject(object) {
  ObservedKey* observed = observedKey(object, key);
  if (!observed) return;
  Observing::begin(object, *observed, kind, indexes);
  myIsPending = true;
  ++observed->users;
  myKey = observed;
}

void PropertyChange::abandon() {
  --myKey->users;
  if (myIsPending)
    Observing::cancel(myObject, *myKey);
  else
    Observing::tidy(myObject, *myKey);
}

void PropertyChange::tell() { tell({}, {}); }

void PropertyChange::tell(const PlainValue& oldValue, const PlainValue& newValue) {
  if (!myKey) return;
  ObservedKey& key = *std::exchange(myKey, nullptr);
  --key.users;
  if (myIsPending) return Observing::tell(myObject, key);
  detail::Dispatch dispatch(myObject, key, NSKeyValueChangeKind::Setting, nullptr, false);
  dispatch.setPlainValues(oldValue, newValue);
  dispatch.run();
}

}  // namespace kelvane
