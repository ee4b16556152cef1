#include <stdexcept>
#include <utility>

#include "Platform/Foundation/Observing.h"

namespace kelvane::detail {
namespace {

// What the keys from `level` on lead to. Where they lead nowhere has been told to the log when the links moved.
Ref<NSObject> valueAlong(const KeyPath& keyPath, std::size_t level, Ref<NSObject> value) {
  try {
    for (; value && level < keyPath.keys().size(); ++level) value = value->valueForKey(keyPath.keys()[level]);
  } catch (const std::invalid_argument&) {
    return nullptr;
  }
  return value;
}

}  // namespace

void Dispatch::setOldValue(const Ref<NSObject>& value) { myChange.myOld = value; }

void Dispatch::setNewValue(const Ref<NSObject>& value) { myChange.myNew = value; }

Link* Dispatch::firstLink() {
  if (!myObject) return nullptr;
  myNext = myKey.first;
  return nextLink();
}

Link* Dispatch::nextLink() {
  if (!myNext || myNext->serial > myLatestSerial) return nullptr;
  return std::exchange(myNext, myNext->next);
}

void Dispatch::run() {
  // All ways are right again before the first observer looks at them.
  if (myKey.inner > 0 && !myChange.myIsPrior)
    for (Link* link = firstLink(); link; link = nextLink()) moveBehind(*link);
  for (Link* link = firstLink(); link; link = nextLink()) tell(*link);
  if (myFailure) std::rethrow_exception(std::move(myFailure));
}

void Dispatch::moveBehind(Link& link) {
  Observation& observation = *link.observation;
  const std::size_t level = observation.levelOf(link);
  if (level + 1 == observation.levels()) return;
  try {
    Observing::moveLinksBehind(observation, level);
  } catch (...) {
    if (!myFailure) myFailure = std::current_exception();
  }
}

void Dispatch::tell(Link& link) {
  Observation& observation = *link.observation;
  if (myChange.myIsPrior && (observation.options & NSKeyValueObservingOptionPrior) == 0) return;
  myChange.myOptions = observation.options;
  const std::size_t level = observation.rest ? observation.levelOf(link) : 0;
  if (!observation.rest || level + 1 == observation.levels())
    call(observation, myChange);
  else
    tellAlongPath(observation, level);
}

// The value has changed because another object came to stand on the way to it.
void Dispatch::tellAlongPath(Observation& observation, std::size_t level) {
  const Hold hold(observation);
  NSKeyValueChange change;
  change.myOptions = observation.options;
  change.myIsPrior = myChange.myIsPrior;
  const auto behind = [&](const Ref<NSObject>& value) {
    return nullForNil(valueAlong(observation.keyPath, level + 1, NSKeyValueChange::nilForNull(value)));
  };
  if (change.hasOld()) change.myOld = behind(myChange.oldValue());
  if (change.hasNew()) change.myNew = behind(myChange.newValue());
  if (!observation.isEnded) call(observation, change);
}

void Dispatch::call(Observation& observation, NSKeyValueChange& change) {
  const Hold hold(observation);
  try {
    observation.observer->observeValueForKeyPath(observation.keyPath.text(), *observation.object, change,
                                                 observation.context);
  } catch (...) {
    if (!myFailure) myFailure = std::current_exception();
  }
}

void Dispatch::runInitially(Observation& observation) {
  NSKeyValueChange change;
  change.myOptions = observation.options & NSKeyValueObservingOptionNew;
  if (change.hasNew()) change.myNew = nullForNil(observation.object->valueForKeyPath(observation.keyPath.text()));
  if (observation.isEnded) return;
  observation.observer->observeValueForKeyPath(observation.keyPath.text(), *observation.object, change,
                                               observation.context);
}

}  // namespace kelvane::detail
