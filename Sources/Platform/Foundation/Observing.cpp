#include "Platform/Foundation/Observing.h"

#include <stdexcept>
#include <utility>

#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/PropertyTable.h"
#include "Platform/Foundation/Raise.h"

namespace kelvane::detail {
namespace {

// Raises unless the key can be observed. Most have a property; of the others the object itself knows.
const Property* requireKey(const NSObject& object, TextView key) {
  if (const Property* property = object.propertyTable().find(key)) return property;
  if (as<NSArray>(&object))
    raiseInvalidArgument(
        "addObserver:forKeyPath:options:context:", "an array cannot be observed, only its elements can, by key", key);
  object.valueForKey(key);
  return nullptr;
}

}  // namespace

Observing& Observing::madeFor(NSObject& object) {
  if (!object.mySlot.observing) object.mySlot.observing = new Observing();
  return *object.mySlot.observing;
}

ObservedKey* Observing::keyNamed(TextView key) const {
  ObservedKey* found = myKeys;
  while (found && found->key != key) found = found->next;
  return found;
}

ObservedKey& Observing::addKey(const NSObject& object, const KeyPath& path, TextView key) {
  const Property* property = object.propertyTable().find(key);
  const void* field = property && property->field ? property->field(object) : nullptr;
  myKeys = new ObservedKey{.path = path, .key = key, .field = field, .next = myKeys};
  return *myKeys;
}

void Observing::attach(Link& link, NSObject& object) {
  Observation& observation = *link.observation;
  const std::size_t level = observation.levelOf(link);
  const TextView name = observation.keyPath.keys()[level];
  Observing* observing = of(object);
  ObservedKey* key = observing ? observing->keyNamed(name) : nullptr;
  if (!key) {
    requireKey(object, name);
    observing = &madeFor(object);
    key = &observing->addKey(object, observation.keyPath, name);
  }
  link.object = &object;
  link.key = key;
  link.serial = ++observing->myLatestSerial;
  link.next = nullptr;
  link.previous = key->last;
  (key->last ? key->last->next : key->first) = &link;
  key->last = &link;
  key->wantOld += (observation.options & NSKeyValueObservingOptionOld) != 0 ? 1 : 0;
  key->wantPrior += (observation.options & NSKeyValueObservingOptionPrior) != 0 ? 1 : 0;
  key->inner += level + 1 < observation.levels() ? 1 : 0;
}

void Observing::detach(Link& link) {
  if (!link.key) return;
  const Observation& observation = *link.observation;
  ObservedKey& key = *std::exchange(link.key, nullptr);
  NSObject& object = *std::exchange(link.object, nullptr);
  for (Dispatch* dispatch = of(object)->myDispatches; dispatch; dispatch = dispatch->myOuter)
    if (dispatch->myNext == &link) dispatch->myNext = link.next;
  (link.previous ? link.previous->next : key.first) = link.next;
  (link.next ? link.next->previous : key.last) = link.previous;
  key.wantOld -= (observation.options & NSKeyValueObservingOptionOld) != 0 ? 1 : 0;
  key.wantPrior -= (observation.options & NSKeyValueObservingOptionPrior) != 0 ? 1 : 0;
  key.inner -= observation.levelOf(link) + 1 < observation.levels() ? 1 : 0;
  tidy(object, key);
}

void Observing::tidy(NSObject& object, ObservedKey& key) {
  Observing& observing = *of(object);
  if (key.isUsed() || observing.myIsDying) return;
  ObservedKey** place = &observing.myKeys;
  while (*place != &key) place = &(*place)->next;
  *place = key.next;
  delete &key;
  tidy(object);
}

void Observing::tidy(NSObject& object) {
  const Observing* observing = of(object);
  if (!observing || observing->myKeys || observing->myLatestMade || observing->myIsDying) return;
  delete std::exchange(object.mySlot.observing, nullptr);
}

// Attaches the links from `level` on, beginning with `object`. A getter on the way may do anything, end the
// registration included.
void Observing::follow(Observation& observation, std::size_t level, NSObject& object) {
  attach(observation.link(level), object);
  Ref<NSObject> value;
  for (NSObject* at = &object; level + 1 < observation.levels(); at = value.get()) {
    value = at->valueForKey(observation.keyPath.keys()[level]);
    ++level;
    if (!value || observation.isEnded || observation.link(level).key) return;
    attach(observation.link(level), *value);
  }
}

void Observing::moveLinksBehind(Observation& observation, std::size_t level) {
  const Hold hold(observation);
  for (std::size_t behind = level + 1; behind < observation.levels(); ++behind) detach(observation.link(behind));
  const Link& link = observation.link(level);
  if (!link.object) return;
  try {
    const Ref<NSObject> value = link.object->valueForKey(observation.keyPath.keys()[level]);
    if (value && !observation.isEnded && !observation.link(level + 1).key) follow(observation, level + 1, *value);
  } catch (const std::invalid_argument& reason) {
    NSLog(u"Observing '%@' ends on the way: %s", observation.keyPath.text(), reason.what());
  }
}

void Observing::add(NSObject& object, NSObject& observer, const KeyPath& keyPath, NSKeyValueObservingOptions options,
                    void* context) {
  auto owner = std::make_unique<Observation>(Observation{.object = &object,
                                                         .observer = &observer,
                                                         .keyPath = keyPath,
                                                         .context = context,
                                                         .options = static_cast<std::uint8_t>(options & 0xFU)});
  Observation& observation = *owner;
  const std::size_t levels = observation.levels();
  if (levels > 1) observation.rest = std::make_unique<Link[]>(levels - 1);
  for (std::size_t level = 0; level < levels; ++level) observation.link(level).observation = &observation;

  Observing& observing = madeFor(observer);
  observation.earlier = observing.myLatestMade;
  (observation.earlier ? observation.earlier->later : observing.myEarliestMade) = &observation;
  observing.myLatestMade = owner.release();
  const Hold hold(observation);
  try {
    follow(observation, 0, object);
  } catch (...) {
    if (!observation.isEnded) end(observation);
    throw;
  }
  if ((options & NSKeyValueObservingOptionInitial) != 0 && !observation.isEnded) Dispatch::runInitially(observation);
}

Observation* Observing::find(const NSObject& object, const NSObject& observer, const KeyPath& keyPath,
                             void* const* context) {
  const Observing* observed = of(object);
  const Observing* observing = of(observer);
  const ObservedKey* key = observed ? observed->keyNamed(keyPath.keys().front()) : nullptr;
  if (!key || !observing) return nullptr;
  const auto isWanted = [&](const Observation& one) {
    return one.observer == &observer && one.object == &object && one.keyPath == keyPath &&
           (!context || one.context == *context);
  };
  // Both lists are in the order of registration and either has it, so the shorter one decides how long it takes.
  Link* link = key->last;
  Observation* made = observing->myLatestMade;
  for (; link && made; link = link->previous, made = made->earlier) {
    if (link == &link->observation->first && isWanted(*link->observation)) return link->observation;
    if (isWanted(*made)) return made;
  }
  return nullptr;
}

void Observing::end(Observation& observation) {
  Observing& observing = *of(*observation.observer);
  (observation.later ? observation.later->earlier : observing.myLatestMade) = observation.earlier;
  (observation.earlier ? observation.earlier->later : observing.myEarliestMade) = observation.later;
  observation.isEnded = true;
  const Hold hold(observation);
  for (std::size_t level = 0; level < observation.levels(); ++level) detach(observation.link(level));
  tidy(*observation.observer);
}

void Observing::endAllOf(NSObject& observer) {
  for (Observing* observing = of(observer); observing && observing->myLatestMade; observing = of(observer))
    end(*observing->myLatestMade);
}

void Observing::drop(NSObject& object) {
  Observing& observing = *of(object);
  observing.myIsDying = true;
  for (Dispatch* dispatch = observing.myDispatches; dispatch; dispatch = dispatch->myOuter) {
    dispatch->myObject = nullptr;
    dispatch->myNext = nullptr;
    dispatch->myChange.loseObject();
  }
  while (observing.myLatestMade) end(*observing.myLatestMade);
  while (ObservedKey* key = observing.myKeys) {
    while (key->first) {
      Observation& observation = *key->first->observation;
      if (observation.object == &object) {
        end(observation);
      } else {
        // It dies on somebody else's way, which ends before it.
        for (std::size_t level = observation.levelOf(*key->first); level < observation.levels(); ++level)
          detach(observation.link(level));
      }
    }
    observing.myKeys = key->next;
    delete key;
  }
  delete std::exchange(object.mySlot.observing, nullptr);
}

void Observing::keepNewValues(const ObservedKey& key) const {
  for (const Dispatch* dispatch = myDispatches; dispatch; dispatch = dispatch->myOuter)
    if (&dispatch->myKey == &key) dispatch->myChange.keepNewValue();
}

void Observing::begin(NSObject& object, ObservedKey& key, NSKeyValueChangeKind kind, const NSIndexSet* indexes) {
  if (key.pending) {
    ++key.pending->depth;
    return;
  }
  of(object)->keepNewValues(key);
  const Ref<NSIndexSet> kept = indexes ? as<NSIndexSet>(indexes->copy()) : nullptr;
  Ref<NSObject> oldValue;
  if (key.wantOld > 0 && kind != NSKeyValueChangeKind::Insertion) {
    oldValue = object.valueForKey(key.key);
    if (kept) oldValue = objectsAtIndexes(oldValue, *kept);
    oldValue = nullForNil(std::move(oldValue));
  }
  key.pending = std::make_unique<PendingChange>(PendingChange{kind, kept, oldValue});
  if (key.wantPrior == 0) return;
  Dispatch dispatch(object, key, kind, kept, true);
  dispatch.setOldValue(oldValue);
  try {
    dispatch.run();
  } catch (...) {
    if (dispatch.isObjectAlive()) cancel(object, key);
    throw;
  }
}

void Observing::tell(NSObject& object, ObservedKey& key) {
  if (!key.pending || --key.pending->depth > 0) return;
  const std::unique_ptr<PendingChange> change = std::move(key.pending);
  Dispatch dispatch(object, key, change->kind, std::move(change->indexes), false);
  dispatch.setOldValue(change->oldValue);
  dispatch.run();
}

void Observing::cancel(NSObject& object, ObservedKey& key) {
  if (!key.pending || --key.pending->depth > 0) return;
  key.pending = nullptr;
  tidy(object, key);
}

}  // namespace kelvane::detail
