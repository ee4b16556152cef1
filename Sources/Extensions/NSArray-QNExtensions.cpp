#include "Extensions/NSArray-QNExtensions.h"

#include <iterator>
#include <memory>
#include <vector>

namespace kelvane {

Ref<NSArray> reverseArray(const Ref<NSArray>& array) {
  if (!array || array->count() < 2) return array;
  return std::make_shared<NSMutableArray>(
      std::vector<Ref<NSObject>>(std::make_reverse_iterator(array->end()), std::make_reverse_iterator(array->begin())));
}

Ref<NSObject> pullObjectAtIndex(NSMutableArray& array, std::size_t index) {
  if (index >= array.count()) return nullptr;
  Ref<NSObject> pulled = array.objectAtIndex(index);
  array.removeObjectAtIndex(index);
  return pulled;
}

void moveUpObjectAtIndex(NSMutableArray& array, std::size_t index) {
  if (index >= array.count() - 1) return;
  requireIndex("moveUpObjectAtIndex:", index, array.count());
  array.exchangeObjectAtIndex(index, index + 1);
}

void moveDownObjectAtIndex(NSMutableArray& array, std::size_t index) {
  if (index > 0 && index < array.count()) array.exchangeObjectAtIndex(index, index - 1);
}

}  // namespace kelvane
