#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "Platform/Foundation/ElementTraits.h"
#include "Platform/Foundation/Raise.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// Last in, first out, with a look below the top, a push that refuses duplicates, and a pop down to a marker.
//
// ```cpp
// QNStack<Text> open;
// open.push(u"html");
// open.push(u"p");
// open.popUntil(u"html");  // "p", "html"
// ```
//
// Elements are never nil: pushing nil raises std::invalid_argument. Reading where nothing is gives nil (T() for plain
// values). One thread at a time.
template <class T = Ref<NSObject>>
class QNStack {
 public:
  // stack, init  An empty stack with room for 20.
  QNStack() : QNStack(20) {}
  // stackWithCapacity:, initStackWithCapacity:  An empty stack with room for `capacity` elements, as a hint; it holds
  // as many as are pushed, and a hint beyond a million makes no more room than a million.
  explicit QNStack(std::size_t capacity) { myStack.reserve(std::min(capacity, largestHint)); }

  // clear  Removes all elements.
  void clear() { myStack.clear(); }
  // count  The number of elements.
  std::size_t count() const { return myStack.size(); }

  // peek  The top element; nil when the stack is empty.
  T peek() const { return peekAt(0); }
  // peekAt:  The element that many places below the top; nil when there is none.
  T peekAt(std::size_t index) const { return index < count() ? myStack[count() - 1 - index] : ElementTraits<T>::nil(); }

  // push:  Puts the element on top.
  void push(const T& element) {
    requireElement(element);
    myStack.push_back(element);
  }
  void push(T&& element) {
    requireElement(element);
    myStack.push_back(std::move(element));
  }
  // pushUnique:  The same, unless an equal element is anywhere on the stack. Linear.
  void pushUnique(T element) {
    const auto isSame = [&element](const T& other) { return ElementTraits<T>::equal(other, element); };
    if (std::none_of(myStack.begin(), myStack.end(), isSame)) push(std::move(element));
  }

  // pop  Takes the top element off; nil when the stack is empty.
  T pop() {
    if (myStack.empty()) return ElementTraits<T>::nil();
    T top = std::move(myStack.back());
    myStack.pop_back();
    return top;
  }
  // popUntil:  Takes elements off until one has come whose text is `marker`, and gives them in the order in which they
  // came, that one included. Nothing from an empty stack. The marker must be on the stack: without it, as with a nil
  // marker or with elements that are no text, the stack is emptied and std::invalid_argument raised.
  //   "a", "b", "c" until u"b" => "c", "b"
  std::vector<T> popUntil(std::optional<TextView> marker) {
    std::vector<T> popped;
    popped.reserve(count());
    while (!myStack.empty()) {
      popped.push_back(pop());
      if (marker && ElementTraits<T>::text(popped.back()) == marker) return popped;
    }
    if (!popped.empty()) raiseInvalidArgument("popUntil:", "not on the stack:", marker.value_or(u"(null)"));
    return popped;
  }

  // stack  A copy of the elements, bottom first.
  std::vector<T> stack() const { return myStack; }

 private:
  static constexpr std::size_t largestHint = 1'000'000;

  static void requireElement(const T& element) {
    if (ElementTraits<T>::isNil(element)) raiseInvalidArgument("push:", "an element cannot be nil");
  }

  std::vector<T> myStack;
};

}  // namespace kelvane
