#pragma once

#include <vector>

#include "Platform/Foundation/Ref.h"

// What keeps collections that hold each other, or themselves, from using up the stack. Any thread, each for itself.
namespace kelvane::detail {

// Within how many others a collection is still compared.
inline constexpr int mostComparedLevels = 512;

// Stands on the stack while a collection's elements are compared.
class ComparingElements {
 public:
  ComparingElements();
  ~ComparingElements();
  ComparingElements(const ComparingElements&) = delete;
  ComparingElements& operator=(const ComparingElements&) = delete;

  bool isTooDeep() const;
};

// Stands on the stack while a collection's elements are hashed.
class HashingElements {
 public:
  HashingElements();
  ~HashingElements();
  HashingElements(const HashingElements&) = delete;
  HashingElements& operator=(const HashingElements&) = delete;

  // Whether another collection is being hashed, which is enough: this one is to give its count.
  bool isWithin() const { return myIsWithin; }

 private:
  bool myIsWithin;
};

// Stands on the stack while a collection lets go of its elements.
class ReleasingElements {
 public:
  ReleasingElements();
  // The outermost one lets go of all that was left, one after another.
  ~ReleasingElements();
  ReleasingElements(const ReleasingElements&) = delete;
  ReleasingElements& operator=(const ReleasingElements&) = delete;

  // Deep in the destructors of others: then each element is to be left.
  bool isTooDeep() const;
  void leave(Ref<NSObject>&& element);

 private:
  std::vector<Ref<NSObject>> myLeft;
};

}  // namespace kelvane::detail
