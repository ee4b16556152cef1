#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// A set of indexes, in ascending order. It holds ranges, so that a set of many neighbours is as small and quick as one
// of few. Indexes go up to 2^63 - 2; one beyond raises std::out_of_range. Two sets are equal when they hold the same
// indexes. Immutable (its mutable form is not).
//
// ```cpp
// const NSIndexSet selection(NSRange{10, 3});
// std::cout << selection.count() << ' ' << selection.lastIndex() << '\n';  // 3 12
// ```
class KELVANE_EXPORT NSIndexSet : public NSObject {
 public:
  // What stands for an index where there is none.
  static constexpr std::size_t NSNotFound = std::numeric_limits<std::int64_t>::max();

  NSIndexSet() = default;
  // initWithIndex:
  explicit NSIndexSet(std::size_t index) : NSIndexSet(NSRange{index, 1}) {}
  // initWithIndexesInRange:
  explicit NSIndexSet(NSRange range);

  // count  The number of indexes. Linear in the number of ranges.
  std::size_t count() const;
  // firstIndex, lastIndex  NSNotFound when the set is empty.
  std::size_t firstIndex() const { return myRanges.empty() ? NSNotFound : myRanges.front().location; }
  std::size_t lastIndex() const { return myRanges.empty() ? NSNotFound : myRanges.back().end() - 1; }
  // containsIndex:  Logarithmic in the number of ranges.
  bool containsIndex(std::size_t index) const;

  // The indexes as ranges in ascending order, none empty, with at least one index missing between any two.
  const std::vector<NSRange>& ranges() const { return myRanges; }

  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // "(1-3, 7)".
  Text description() const override;
  Ref<NSObject> copy() const override;
  Ref<NSObject> mutableCopy() const override;

 protected:
  std::vector<NSRange> myRanges;
};

// One thread at a time. Changes take time linear in the number of ranges behind the place; adding in ascending order is
// constant.
class KELVANE_EXPORT NSMutableIndexSet : public NSIndexSet {
 public:
  using NSIndexSet::NSIndexSet;

  // addIndex:
  void addIndex(std::size_t index) { addIndexesInRange({index, 1}); }
  // addIndexesInRange:  An empty range changes nothing.
  void addIndexesInRange(NSRange range);
  // addIndexes:
  void addIndexes(const NSIndexSet& indexes);
  // removeIndex:  Nothing when the set does not hold it, even beyond 2^63 - 2. So the others.
  void removeIndex(std::size_t index) { removeIndexesInRange({index, 1}); }
  // removeIndexesInRange:
  void removeIndexesInRange(NSRange range);
  // removeAllIndexes
  void removeAllIndexes() { myRanges.clear(); }

  Ref<NSObject> copy() const override;
};

}  // namespace kelvane
