#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "Platform/Foundation/ElementTraits.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/Raise.h"

// Operations on arrays, for NSArray and for a host's own std::vector. The receiver is the first parameter. One thread
// at a time, as for the arrays.
//
// ```cpp
// std::vector<Text> tasks{u"rest", u"work", u"eat"};
// moveUpObjectAtIndex(tasks, 0);                       // "work", "rest", "eat"
// const Text next = fetchAndRemoveFirstObject(tasks);  // "work"
// ```
namespace kelvane {

// firstObject  The element at index 0; nil when the array is empty.
inline Ref<NSObject> firstObject(const NSArray& array) { return array.firstObject(); }
template <class T>
T firstObject(const std::vector<T>& array) {
  return array.empty() ? ElementTraits<T>::nil() : array.front();
}

// reverseArray  A new mutable array with the elements in reverse order. An array of fewer than two elements gives
// itself, and nil nil.
KELVANE_EXPORT Ref<NSArray> reverseArray(const Ref<NSArray>& array);
inline Ref<NSArray> reverseArray(const Ref<NSMutableArray>& array) { return reverseArray(Ref<NSArray>(array)); }
template <class T>
std::vector<T> reverseArray(const std::vector<T>& array) {
  return {array.rbegin(), array.rend()};
}

// pullObjectAtIndex:  Removes the element and gives it; nil when there is none at that index.
KELVANE_EXPORT Ref<NSObject> pullObjectAtIndex(NSMutableArray& array, std::size_t index);
template <class T>
T pullObjectAtIndex(std::vector<T>& array, std::size_t index) {
  if (index >= array.size()) return ElementTraits<T>::nil();
  T pulled = std::move(array[index]);
  array.erase(array.begin() + static_cast<std::ptrdiff_t>(index));
  return pulled;
}

// fetchAndRemoveFirstObject  Removes the first element and gives it; nil when the array is empty.
inline Ref<NSObject> fetchAndRemoveFirstObject(NSMutableArray& array) { return pullObjectAtIndex(array, 0); }
template <class T>
T fetchAndRemoveFirstObject(std::vector<T>& array) {
  return pullObjectAtIndex(array, 0);
}

// moveUpObjectAtIndex:  Exchanges the element with the next one: up is towards the end. Nothing for the last one and
// beyond. In an empty array every index raises std::out_of_range, except for the largest one, which does nothing.
//   "a", "b", "c" at 0 => "b", "a", "c"
KELVANE_EXPORT void moveUpObjectAtIndex(NSMutableArray& array, std::size_t index);
template <class T>
void moveUpObjectAtIndex(std::vector<T>& array, std::size_t index) {
  if (index >= array.size() - 1) return;
  requireIndex("moveUpObjectAtIndex:", index, array.size());
  std::swap(array[index], array[index + 1]);
}

// moveDownObjectAtIndex:  Exchanges the element with the one before it. Nothing for the first one and beyond the end.
//   "a", "b", "c" at 2 => "a", "c", "b"
KELVANE_EXPORT void moveDownObjectAtIndex(NSMutableArray& array, std::size_t index);
template <class T>
void moveDownObjectAtIndex(std::vector<T>& array, std::size_t index) {
  if (index > 0 && index < array.size()) std::swap(array[index], array[index - 1]);
}

}  // namespace kelvane
