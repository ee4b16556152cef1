#include "Collections/PoolWalk.h"

#include <exception>

#include "Platform/Foundation/NSLog.h"

namespace kelvane::detail {

void PoolWalks::didRemove(std::size_t place) {
  for (PoolWalk* walk = myInnermost; walk; walk = walk->myOuter)
    if (place < walk->myPlace) --walk->myPlace;
}

void PoolWalks::forgetAll() {
  for (PoolWalk* walk = myInnermost; walk; walk = walk->myOuter) walk->myPlace = 0;
}

PoolWalk::PoolWalk(PoolWalks& walks, std::size_t count) : myWalks(walks), myOuter(walks.myInnermost), myPlace(count) {
  walks.myInnermost = this;
}

PoolWalk::~PoolWalk() { myWalks.myInnermost = myOuter; }

bool PoolWalk::goDown() {
  if (myPlace == 0) return false;
  --myPlace;
  return true;
}

void runInDestructor(const char* methodName, const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception& exception) {
    NSLog(u"%s: an exception has been swallowed: %s", methodName, exception.what());
  } catch (...) {
    NSLog(u"%s: an exception has been swallowed", methodName);
  }
}

}  // namespace kelvane::detail
