#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "Collections/QNMathUtilities.h"
#include "Collections/RemainingPlaces.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/ElementTraits.h"
#include "Platform/Foundation/Raise.h"
#include "Platform/Foundation/RandomBytes.h"

namespace kelvane {

// Draws objects at random from a list, none twice.
//
// ```cpp
// QNRandomArray<Text> names({u"Ann", u"Bob", u"Cem"});
// const std::vector<Text> two = names.randomObjects(2);
// ```
//
// Both ways of drawing also take a source of random 32-bit words to use in place of the system's, such as a
// std::mt19937, for draws that can be repeated. One thread at a time.
template <class T = Ref<NSObject>>
class QNRandomArray {
 public:
  // randomArrayWithArray:, initRandomArrayWithArray:  Draws from a copy of `array`. A nil element raises
  // std::invalid_argument.
  explicit QNRandomArray(std::vector<T> array) : myArray(std::move(array)), myPlaces(myArray.size()) {
    if (std::any_of(myArray.begin(), myArray.end(), [](const T& element) { return ElementTraits<T>::isNil(element); }))
      raiseInvalidArgument("initRandomArrayWithArray:", "an element cannot be nil");
  }
  // initRandomArrayWithNumberObjects:  Draws from the numbers 0, 1, ..., n - 1; objects, unless T is a number.
  static QNRandomArray withNumberObjects(std::size_t n) {
    std::vector<T> numbers;
    numbers.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
      if constexpr (std::integral<T> || std::floating_point<T>)
        numbers.push_back(static_cast<T>(i));
      else
        numbers.push_back(box(i));
    }
    return QNRandomArray(std::move(numbers));
  }

  // pullRandomObject  Takes out one of the objects that are left. When there is none, the process ends: there must be a
  // draw for each object at most. Logarithmic.
  T pullRandomObject() { return pullRandomObject(randomWord); }
  template <std::invocable Words>
  T pullRandomObject(Words&& words) {
    return std::move(myArray[draw(myPlaces, words)]);
  }

  // randomObjects:  Up to `n` of the objects that are left, in the order in which they are drawn; these stay. Linear in
  // the number of objects that there were at first, and n log n.
  std::vector<T> randomObjects(std::size_t n) const { return randomObjects(n, randomWord); }
  template <std::invocable Words>
  std::vector<T> randomObjects(std::size_t n, Words&& words) const {
    std::vector<T> objects;
    if (n == 0) return objects;
    detail::RemainingPlaces places = myPlaces;
    n = std::min(n, places.count());
    objects.reserve(n);
    while (objects.size() < n) objects.push_back(myArray[draw(places, words)]);
    return objects;
  }

 private:
  // The last one is not drawn for.
  static std::size_t draw(detail::RemainingPlaces& places, auto& words) {
    if (places.count() == 1) return places.take(0);
    const auto last = static_cast<std::int64_t>(places.count()) - 1;
    return places.take(
        static_cast<std::size_t>(QNMathUtilities::valueBetween(0, last, static_cast<std::uint32_t>(words()))));
  }

  // Objects that have been pulled are moved from.
  std::vector<T> myArray;
  detail::RemainingPlaces myPlaces;
};

}  // namespace kelvane
