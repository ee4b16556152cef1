#pragma once

#include <algorithm>
#include <atomic>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <type_traits>
#include <utility>
#include <vector>

#include "Collections/PoolWalk.h"
#include "Platform/Foundation/ElementTraits.h"
#include "Platform/Foundation/Raise.h"

namespace kelvane {

// Keeps objects that are shared, each once, and finds them by a number that they tell about themselves. What nobody
// else refers to any more, it can drop.
//
// ```cpp
// QNIndexedObjectPool<Ref<Person>> pool([](const Ref<Person>& person) { return person->number(); });
// pool.addObject(ann);
// const Ref<Person> found = pool.objectById(4711);
// ```
//
// Objects are the same when they are equal, whatever their identifiers. Identifiers are asked for anew at each look-up
// and never kept. Everything but `count` takes time linear in the number of objects; the pool is made for some hundred.
//
// Thread-safe. One recursive lock is held throughout each operation, also while the delegate and the identifier
// operation are called: these may call the pool again from the same thread, while other threads wait. What they throw
// passes on to the caller, and the pool stays as it was at that point.
template <class T = Ref<NSObject>>
class QNIndexedObjectPool {
 public:
  // Hears of objects that come and go. A delegate overrides what it wants to hear.
  class Delegate {
   public:
    virtual ~Delegate() = default;
    // didAddObject:toPool:  Called when the object is in the pool.
    virtual void didAddObject(const T& object, QNIndexedObjectPool& toPool) {
      static_cast<void>(object), static_cast<void>(toPool);
    }
    // willRemoveObject:fromPool:  Called while the object is still in the pool; it must not remove this very object.
    virtual void willRemoveObject(const T& object, QNIndexedObjectPool& fromPool) {
      static_cast<void>(object), static_cast<void>(fromPool);
    }
  };

  // init  A pool whose objects have no identifiers.
  QNIndexedObjectPool() { myObjects.reserve(100); }
  // initPoolWithSelector:  A pool whose objects tell their identifier through `idSelector`: a member function, or
  // whatever can be called with a T and gives an integer. It must not change the pool. A null one is as none.
  template <std::invocable<const T&> Operation>
  explicit QNIndexedObjectPool(Operation idSelector) : QNIndexedObjectPool() {
    if (isNull(idSelector)) return;
    // The whole search is kept and not the operation, so that only one call in it is an indirect one.
    myFindById = [idSelector](const std::vector<T>& objects, std::uint64_t identifier) {
      const auto isWanted = [&](const T& object) {
        return static_cast<std::uint64_t>(std::invoke(idSelector, object)) == identifier;
      };
      return static_cast<std::size_t>(std::find_if(objects.begin(), objects.end(), isWanted) - objects.begin());
    };
  }
  // Removes all objects first, as `clear` does. An exception of the delegate goes to the system log.
  ~QNIndexedObjectPool() {
    detail::runInDestructor("-[QNIndexedObjectPool dealloc]", [this] { clear(); });
  }
  QNIndexedObjectPool(const QNIndexedObjectPool&) = delete;
  QNIndexedObjectPool& operator=(const QNIndexedObjectPool&) = delete;

  // delegate  Null when there is none.
  Delegate* delegate() const { return myDelegateRef; }
  // setDelegate:  The pool does not own it: it must outlive the pool or be taken out before. It may be set while other
  // threads work; a call that is under way still goes to the one before.
  void setDelegate(Delegate* delegate) { myDelegateRef = delegate; }

  // addObject:  Adds the object and tells the delegate; nothing for nil and when an equal one is in the pool.
  void addObject(T object) {
    if (ElementTraits<T>::isNil(object)) return;
    const std::lock_guard lock(myMutex);
    if (find(object) < myObjects.size()) return;
    myObjects.push_back(object);
    myCount = myObjects.size();
    if (Delegate* delegate = myDelegateRef) delegate->didAddObject(object, *this);
  }

  // removeObject:  Tells the delegate of the object in the pool that is equal to this one, then removes it; nothing for
  // nil and when there is none.
  void removeObject(const T& object) {
    if (ElementTraits<T>::isNil(object)) return;
    std::vector<T> removed;  // destroyed when the lock is free again
    const std::lock_guard lock(myMutex);
    const std::size_t place = find(object);
    if (place < myObjects.size()) removed = removeFrom(place);
  }

  // containsObject:  Whether an equal object is in the pool.
  bool containsObject(const T& object) const {
    const std::lock_guard lock(myMutex);
    return find(object) < myObjects.size();
  }

  // count  The number of objects. Does not wait for the lock.
  std::size_t count() const { return myCount; }

  // objects  A copy of the objects, the oldest first.
  std::vector<T> objects() const {
    const std::lock_guard lock(myMutex);
    return myObjects;
  }

  // objectById:  The oldest object with that identifier; nil when there is none. In a pool without identifiers that
  // holds anything, std::invalid_argument.
  T objectById(std::uint64_t identifier) const {
    const std::lock_guard lock(myMutex);
    if (myObjects.empty()) return ElementTraits<T>::nil();
    if (!myFindById) raiseInvalidArgument("objectById:", "the pool has no identifier operation");
    const std::size_t place = myFindById(myObjects, identifier);
    return place < myObjects.size() ? myObjects[place] : ElementTraits<T>::nil();
  }

  // clear  Removes all objects, the oldest first, and tells the delegate of each. What the delegate adds meanwhile
  // stays.
  void clear() {
    std::vector<T> removed;
    const std::lock_guard lock(myMutex);
    if (myDelegateRef) {
      for (const T& object : objects()) removeObject(object);
      return;
    }
    myWalks.forgetAll();
    removed.swap(myObjects);
    myCount = 0;
  }

  // purge  Removes the objects that nothing but the pool refers to, the newest first, and tells the delegate of each.
  // Objects whose references are not counted (plain values, plain pointers) stay.
  void purge() {
    const std::lock_guard lock(myMutex);
    detail::PoolWalk walk(myWalks, myObjects.size());
    while (walk.goDown())
      if (ElementTraits<T>::isOnlyReference(myObjects[walk.place()])) removeFrom(walk.place());
  }

 private:
  template <class Operation>
  static bool isNull(const Operation& operation) {
    if constexpr (std::is_member_pointer_v<Operation> || std::is_pointer_v<Operation> ||
                  requires { operation.operator bool(); })
      return !operation;
    else
      return false;
  }

  std::size_t find(const T& object) const {
    const auto isSame = [&object](const T& other) { return ElementTraits<T>::equal(other, object); };
    return static_cast<std::size_t>(std::find_if(myObjects.begin(), myObjects.end(), isSame) - myObjects.begin());
  }

  // Tells the delegate of the object at `place`, and then takes out what is equal to it: the delegate may have moved
  // it. An object may have become equal to another while both were in the pool; then both go.
  std::vector<T> removeFrom(std::size_t place) {
    const T object = myObjects[place];
    if (Delegate* delegate = myDelegateRef) delegate->willRemoveObject(object, *this);
    std::vector<T> removed;
    for (std::size_t i = 0; i < myObjects.size();) {
      if (!ElementTraits<T>::equal(myObjects[i], object)) {
        ++i;
        continue;
      }
      removed.push_back(std::move(myObjects[i]));
      myObjects.erase(myObjects.begin() + static_cast<std::ptrdiff_t>(i));
      myWalks.didRemove(i);
    }
    myCount = myObjects.size();
    return removed;
  }

  mutable std::recursive_mutex myMutex;
  std::vector<T> myObjects;
  std::function<std::size_t(const std::vector<T>&, std::uint64_t)> myFindById;
  std::atomic<Delegate*> myDelegateRef = nullptr;
  std::atomic<std::size_t> myCount = 0;
  detail::PoolWalks myWalks;
};

}  // namespace kelvane
