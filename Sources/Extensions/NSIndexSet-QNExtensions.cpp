#include "Extensions/NSIndexSet-QNExtensions.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "Platform/Foundation/NSNumber.h"

namespace kelvane {

Ref<NSMutableArray> arrayOfIndexes(const NSIndexSet& indexes) {
  std::vector<Ref<NSObject>> numbers;
  numbers.reserve(indexes.count());
  for (const NSRange& range : indexes.ranges())
    for (std::size_t index = range.location; index < range.end(); ++index)
      numbers.push_back(std::make_shared<NSNumber>(index));
  return std::make_shared<NSMutableArray>(std::move(numbers));
}

namespace NSMutableIndexSetExtensions {

Ref<NSMutableIndexSet> mutableIndexSetWithIndexesInArray(const NSArray& array) {
  std::vector<std::size_t> indexes;
  indexes.reserve(array.count());
  for (const Ref<NSObject>& element : array)
    if (const NSNumber* number = as<NSNumber>(element.get()))
      indexes.push_back(static_cast<std::size_t>(std::int64_t{number->intValue()}));
  // A set takes indexes fastest in this order.
  if (!std::ranges::is_sorted(indexes)) std::ranges::sort(indexes);
  auto set = std::make_shared<NSMutableIndexSet>();
  for (const std::size_t index : indexes) set->addIndex(index);
  return set;
}

Ref<NSMutableIndexSet> mutableIndexSetWithIndexSet(const NSIndexSet& indexSet) {
  return as<NSMutableIndexSet>(indexSet.mutableCopy());
}

}  // namespace NSMutableIndexSetExtensions
}  // namespace kelvane
