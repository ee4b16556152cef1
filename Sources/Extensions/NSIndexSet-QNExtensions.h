#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSIndexSet.h"

// Index sets as arrays of numbers, and back. One thread at a time, as for the sets.
namespace kelvane {

// arrayOfIndexes  The indexes as number objects in ascending order, in a new array; empty for an empty set.
KELVANE_EXPORT Ref<NSMutableArray> arrayOfIndexes(const NSIndexSet& indexes);

namespace NSMutableIndexSetExtensions {

// mutableIndexSetWithIndexesInArray:  A new set with the `intValue` of each element that is a number object, truth
// values included; other elements do not count. A negative one raises std::out_of_range. n log n, linear for numbers in
// ascending order.
//   3, u"x", 1, 3 => {1, 3}      2.9, true => {1, 2}      2^32 + 5 => {5}
KELVANE_EXPORT Ref<NSMutableIndexSet> mutableIndexSetWithIndexesInArray(const NSArray& array);

// mutableIndexSetWithIndexSet:  A new set with the same indexes.
KELVANE_EXPORT Ref<NSMutableIndexSet> mutableIndexSetWithIndexSet(const NSIndexSet& indexSet);

}  // namespace NSMutableIndexSetExtensions
}  // namespace kelvane
