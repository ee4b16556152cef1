#include "Utilities/QNTagStack.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "Platform/Foundation/Raise.h"

namespace kelvane {
namespace {

// A hint that is beyond all reason is not worth running out of memory.
constexpr std::int64_t largestHint = 4096;
constexpr std::size_t usualMarkup = 20;

TextView given(std::string_view operation, const std::optional<TextView>& tag) {
  if (!tag) raiseInvalidArgument(operation, "the tag is nil");
  return *tag;
}

void appendClosingForm(std::string_view operation, Text& out, TextView tag) {
  if (tag.empty()) raiseInvalidArgument(operation, "an empty tag has no closing form");
  out += tag.front();
  out += u'/';
  out += tag.substr(1);
}

}  // namespace

QNTagStack::QNTagStack(std::int64_t capacity) {
  myStack.reserve(static_cast<std::size_t>(std::clamp<std::int64_t>(capacity, 0, largestHint)));
}

bool QNTagStack::isOpen(TextView tag) const { return std::ranges::find(myStack, tag) != myStack.end(); }

std::optional<Text> QNTagStack::peek() const {
  return myStack.empty() ? std::nullopt : std::optional<Text>(myStack.back());
}

void QNTagStack::push(std::optional<TextView> tag) { myStack.emplace_back(given("push:", tag)); }

void QNTagStack::pushUnique(std::optional<TextView> tag) {
  if (!isOpen(given("pushUnique:", tag))) myStack.emplace_back(*tag);
}

std::optional<Text> QNTagStack::pop() {
  if (myStack.empty()) return std::nullopt;
  Text top = std::move(myStack.back());
  myStack.pop_back();
  return top;
}

std::vector<Text> QNTagStack::popUntil(std::optional<TextView> tag) {
  const TextView wanted = given("popUntil:", tag);
  std::vector<Text> popped;
  if (myStack.empty()) return popped;
  do {
    std::optional<Text> top = pop();
    if (!top) raiseInvalidArgument("popUntil:", "no such tag is open", wanted);
    popped.push_back(std::move(*top));
  } while (popped.back() != wanted);
  return popped;
}

Text QNTagStack::openTag(std::optional<TextView> tag) {
  const TextView opened = given("openTag:", tag);
  if (isOpen(opened)) return Text();
  push(opened);
  return Text(opened);
}

Text QNTagStack::closeTag(std::optional<TextView> tag) {
  // The tag may be a view of the entry that goes.
  const Text closed(given("closeTag:", tag));
  Text markup;
  // What is on top needs no list of what was popped.
  if (!myStack.empty() && myStack.back() == closed) {
    myStack.pop_back();
    appendClosingForm("closeTag:", markup, closed);
    return markup;
  }
  std::vector<Text> popped = popUntil(closed);
  markup.reserve(usualMarkup);
  for (const Text& entry : popped) appendClosingForm("closeTag:", markup, entry);
  if (!popped.empty()) popped.pop_back();
  for (auto entry = popped.rbegin(); entry != popped.rend(); ++entry) {
    markup += *entry;
    myStack.push_back(std::move(*entry));
  }
  return markup;
}

Text QNTagStack::flushTags() {
  Text markup;
  markup.reserve(usualMarkup);
  for (auto entry = myStack.rbegin(); entry != myStack.rend(); ++entry) appendClosingForm("flushTags", markup, *entry);
  clear();
  return markup;
}

}  // namespace kelvane
