#include "Platform/Foundation/CollectionNesting.h"

#include <utility>

namespace kelvane::detail {
namespace {

// How many collections are let go of within each other before the rest has to wait.
constexpr int mostReleasedLevels = 64;

thread_local int comparedLevels = 0;
thread_local bool isHashing = false;
thread_local int releasedLevels = 0;
// On the stack of the outermost release.
thread_local std::vector<Ref<NSObject>>* left = nullptr;

}  // namespace

ComparingElements::ComparingElements() { ++comparedLevels; }

ComparingElements::~ComparingElements() { --comparedLevels; }

bool ComparingElements::isTooDeep() const { return comparedLevels > mostComparedLevels; }

HashingElements::HashingElements() : myIsWithin(std::exchange(isHashing, true)) {}

HashingElements::~HashingElements() { isHashing = myIsWithin; }

ReleasingElements::ReleasingElements() {
  if (releasedLevels++ == 0) left = &myLeft;
}

ReleasingElements::~ReleasingElements() {
  if (left == &myLeft) {
    while (!myLeft.empty()) {
      // Out of the list first, since its end may add to it.
      const Ref<NSObject> last = std::move(myLeft.back());
      myLeft.pop_back();
    }
    left = nullptr;
  }
  --releasedLevels;
}

bool ReleasingElements::isTooDeep() const { return releasedLevels > mostReleasedLevels; }

void ReleasingElements::leave(Ref<NSObject>&& element) { left->push_back(std::move(element)); }

}  // namespace kelvane::detail
