#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <utility>

#include "Platform/Foundation/KeyPath.h"
#include "Platform/Foundation/NSKeyValueObserving.h"
#include "Platform/Foundation/NSObject.h"

// What stands behind NSKeyValueObserving.h: who is registered with whom, and how a change reaches them. Not for hosts.
//
// An object that takes part has an `Observing`: the list of its keys that are observed, and the list of the
// registrations that it made itself. A registration, `Observation`, stands with one link in the list of each key on its
// way: a link per key of its path, the first with the observed object, the last where the value is. When a value on the
// way changes, the links behind it move.
//
// Everything here may be cut short by what observers do. So whoever calls an observer holds on to nothing but a
// `Dispatch`, which learns of links that go and of the object's death.
namespace kelvane::detail {

struct Observation;
struct ObservedKey;

// One step of a registration's way. Not attached, with null `key`, where the path meets nil.
struct Link {
  Observation* observation = nullptr;
  NSObject* object = nullptr;
  ObservedKey* key = nullptr;
  Link* previous = nullptr;
  Link* next = nullptr;
  // Ascending for each object, so that a dispatch can tell who came later.
  std::uint64_t serial = 0;
};

struct Observation {
  std::size_t levels() const { return keyPath.keys().size(); }
  Link& link(std::size_t level) { return level == 0 ? first : rest[level - 1]; }
  std::size_t levelOf(const Link& one) const {
    return &one == &first ? 0 : static_cast<std::size_t>(&one - &rest[0]) + 1;
  }

  NSObject* object;
  NSObject* observer;
  KeyPath keyPath;
  void* context;
  // The neighbours among the observer's registrations.
  Observation* earlier = nullptr;
  Observation* later = nullptr;
  Link first = {};
  std::unique_ptr<Link[]> rest = nullptr;
  std::uint8_t options;
  // Ended while a call on its behalf was under way, which deletes it.
  bool isEnded = false;
  std::uint32_t calls = 0;
};

// Keeps a registration in memory while something is done on its behalf that may end it.
class Hold {
 public:
  explicit Hold(Observation& observation) : myObservation(observation) { ++myObservation.calls; }
  ~Hold() {
    if (--myObservation.calls == 0 && myObservation.isEnded) delete &myObservation;
  }
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;

 private:
  Observation& myObservation;
};

// A change that has been announced and not yet told.
struct PendingChange {
  NSKeyValueChangeKind kind;
  Ref<NSIndexSet> indexes;
  Ref<NSObject> oldValue = nullptr;
  std::size_t depth = 1;
};

// A key of an object that somebody observes.
struct ObservedKey {
  bool isUsed() const { return first || pending || users > 0; }

  KeyPath path;
  // Lives as long as `path`.
  TextView key;
  // Where the property stands, if in a field.
  const void* field = nullptr;
  ObservedKey* next = nullptr;
  Link* first = nullptr;
  Link* last = nullptr;
  std::unique_ptr<PendingChange> pending = nullptr;
  // How many links want old values and records before changes, and how many have further keys behind.
  std::uint32_t wantOld = 0;
  std::uint32_t wantPrior = 0;
  std::uint32_t inner = 0;
  // Calls under way that will come back to it.
  std::uint32_t users = 0;
};

class Observing {
 public:
  // Null when the object takes no part.
  static Observing* of(const NSObject& object) { return object.mySlot.observing; }

  static void add(NSObject& object, NSObject& observer, const KeyPath& keyPath, NSKeyValueObservingOptions options,
                  void* context);
  // The latest registration; with whatever context when `context` is null. Null when there is none.
  static Observation* find(const NSObject& object, const NSObject& observer, const KeyPath& keyPath,
                           void* const* context);
  static void end(Observation& observation);
  // Ends all that `observer` made.
  static void endAllOf(NSObject& observer);
  // The object dies.
  static void drop(NSObject& object);

  // The links behind `level` follow the value that is there now. What cannot be observed ends the way and is logged.
  static void moveLinksBehind(Observation& observation, std::size_t level);
  // Deletes the key when nobody needs it, and then the object's `Observing`.
  static void tidy(NSObject& object, ObservedKey& key);

  static void begin(NSObject& object, ObservedKey& key, NSKeyValueChangeKind kind, const NSIndexSet* indexes);
  static void tell(NSObject& object, ObservedKey& key);
  static void cancel(NSObject& object, ObservedKey& key);
  // Those who have not yet heard of an earlier change of the key are still to get that change's values.
  void keepNewValues(const ObservedKey& key) const;

  ObservedKey* keyNamed(TextView key) const;
  ObservedKey* keyOfField(const void* field) const {
    ObservedKey* key = myKeys;
    while (key && key->field != field) key = key->next;
    return key;
  }
  // Whether observers of any key are just hearing of a change.
  bool isTelling() const { return myDispatches; }
  const Observation* earliestMade() const { return myEarliestMade; }

 private:
  friend class Dispatch;

  static Observing& madeFor(NSObject& object);
  static void follow(Observation& observation, std::size_t level, NSObject& object);
  static void attach(Link& link, NSObject& object);
  static void detach(Link& link);
  static void tidy(NSObject& object);
  ObservedKey& addKey(const NSObject& object, const KeyPath& path, TextView key);

  ObservedKey* myKeys = nullptr;
  Observation* myEarliestMade = nullptr;
  Observation* myLatestMade = nullptr;
  Dispatch* myDispatches = nullptr;
  std::uint64_t myLatestSerial = 0;
  bool myIsDying = false;
};

// Tells the observers of one key about one change.
class Dispatch {
 public:
  // Inline, as is the end: every change that is heard passes here.
  Dispatch(NSObject& object, ObservedKey& key, NSKeyValueChangeKind kind, Ref<NSIndexSet> indexes, bool isPrior)
      : myObject(&object), myKey(key) {
    myChange.myKind = kind;
    myChange.myIndexes = std::move(indexes);
    myChange.myIsPrior = isPrior;
    myChange.myObject = &object;
    myChange.myKey = key.key;
    Observing& observing = *Observing::of(object);
    myLatestSerial = observing.myLatestSerial;
    myOuter = std::exchange(observing.myDispatches, this);
    ++key.users;
  }
  ~Dispatch() {
    if (!myObject) return;
    Observing::of(*myObject)->myDispatches = myOuter;
    --myKey.users;
    if (!myKey.isUsed()) Observing::tidy(*myObject, myKey);
  }
  Dispatch(const Dispatch&) = delete;
  Dispatch& operator=(const Dispatch&) = delete;

  void setOldValue(const Ref<NSObject>& value);
  void setNewValue(const Ref<NSObject>& value);
  void setPlainValues(const PlainValue& oldValue, const PlainValue& newValue) {
    myChange.myPlainOld = oldValue;
    myChange.myPlainNew = newValue;
  }
  // Then throws what an observer threw first.
  void run();
  bool isObjectAlive() const { return myObject; }
  // One registration alone, with the value as it is.
  static void runInitially(Observation& observation);

 private:
  friend class Observing;

  Link* firstLink();
  Link* nextLink();
  void moveBehind(Link& link);
  void tell(Link& link);
  void tellAlongPath(Observation& observation, std::size_t level);
  void call(Observation& observation, NSKeyValueChange& change);

  // Null once it is dead.
  NSObject* myObject;
  ObservedKey& myKey;
  NSKeyValueChange myChange;
  Link* myNext = nullptr;
  std::uint64_t myLatestSerial;
  Dispatch* myOuter;
  std::exception_ptr myFailure;
};

}  // namespace kelvane::detail
