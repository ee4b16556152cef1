#pragma once

#include <cstddef>
#include <functional>

#include "Platform/Foundation/Export.h"

// What a pool needs that has nothing to do with what it holds.
namespace kelvane::detail {

class PoolWalk;

// The walks that are under way in a list from its end to its beginning: several, when the pool is called from within.
class KELVANE_EXPORT PoolWalks {
 public:
  // Tells the walks that the list has lost its element at `place`.
  void didRemove(std::size_t place);
  // Tells the walks that the list is empty.
  void forgetAll();

 private:
  friend class PoolWalk;
  PoolWalk* myInnermost = nullptr;
};

// One walk. It visits each element that is there from the beginning to its turn exactly once, whatever is removed or
// added at the end meanwhile.
class KELVANE_EXPORT PoolWalk {
 public:
  PoolWalk(PoolWalks& walks, std::size_t count);
  ~PoolWalk();
  PoolWalk(const PoolWalk&) = delete;
  PoolWalk& operator=(const PoolWalk&) = delete;

  // Goes to the next element towards the beginning; false when there is none.
  bool goDown();
  std::size_t place() const { return myPlace; }

 private:
  friend class PoolWalks;
  PoolWalks& myWalks;
  PoolWalk* myOuter;
  // All elements before this place are still to be visited.
  std::size_t myPlace;
};

// Does what a destructor has to do; an exception goes to the system log.
KELVANE_EXPORT void runInDestructor(const char* methodName, const std::function<void()>& work);

}  // namespace kelvane::detail
