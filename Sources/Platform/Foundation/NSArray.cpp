#include "Platform/Foundation/NSArray.h"

#include <algorithm>
#include <iterator>

#include "Platform/Foundation/CollectionDescription.h"
#include "Platform/Foundation/CollectionNesting.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/Raise.h"

namespace kelvane {
namespace {

void requireObject(std::string_view operation, const Ref<NSObject>& object) {
  if (!object) raiseInvalidArgument(operation, "an element cannot be nil");
}

}  // namespace

NSArray::NSArray(std::vector<Ref<NSObject>> elements) : myElements(std::move(elements)) {
  for (const Ref<NSObject>& element : myElements) requireObject("initWithArray:", element);
}

NSArray::~NSArray() {
  detail::ReleasingElements releasing;
  if (releasing.isTooDeep())
    for (Ref<NSObject>& element : myElements) releasing.leave(std::move(element));
  myElements.clear();
}

Ref<NSArray> NSArray::arrayWithObjects(std::initializer_list<Ref<NSObject>> elements) {
  return std::make_shared<NSArray>(std::vector<Ref<NSObject>>(elements));
}

const Ref<NSObject>& NSArray::objectAtIndex(std::size_t index) const {
  requireIndex("objectAtIndex:", index, count());
  return myElements[index];
}

std::size_t NSArray::indexOfObject(const Ref<NSObject>& object) const {
  const auto place = std::find_if(begin(), end(), [&](const auto& element) { return areEqual(element, object); });
  return place == end() ? NSNotFound : static_cast<std::size_t>(place - begin());
}

bool NSArray::isEqual(const NSObject& other) const {
  if (this == &other) return true;
  const NSArray* array = as<NSArray>(&other);
  const detail::ComparingElements comparing;
  return array && !comparing.isTooDeep() && count() == array->count() &&
         std::equal(begin(), end(), array->begin(), array->end(),
                    [](const auto& a, const auto& b) { return areEqual(a, b); });
}

std::size_t NSArray::hash() const {
  std::size_t hash = count();
  const detail::HashingElements hashing;
  if (hashing.isWithin()) return hash;
  for (const Ref<NSObject>& element : myElements) hash = hash * 31 + element->hash();
  return hash;
}

Text NSArray::description() const {
  Text text;
  appendDescription(text, {});
  return text;
}

void NSArray::appendDescription(Text& out, const DescriptionNesting& within) const {
  CollectionDescription lines(out, *this, within, u'(', u')');
  for (const Ref<NSObject>& element : myElements) {
    if (!lines.startLine()) break;
    element->appendDescription(out, lines.nesting());
    if (&element != &myElements.back()) out += u',';
  }
  lines.end();
}

Ref<NSObject> NSArray::copy() const {
  return selfOr([this] { return std::make_shared<NSArray>(myElements); });
}

Ref<NSObject> NSArray::mutableCopy() const { return std::make_shared<NSMutableArray>(myElements); }

Ref<NSObject> NSArray::valueForKey(TextView key) const {
  if (key == u"@count") return std::make_shared<NSNumber>(count());
  if (key.starts_with(u'@')) return NSObject::valueForKey(key);
  std::vector<Ref<NSObject>> values;
  values.reserve(count());
  for (const Ref<NSObject>& element : myElements) {
    Ref<NSObject> value = element->valueForKey(key);
    values.push_back(value ? std::move(value) : NSNull::null());
  }
  return std::make_shared<NSArray>(std::move(values));
}

void NSArray::setValueForKey(const Ref<NSObject>& value, TextView key) {
  for (const Ref<NSObject>& element : myElements) element->setValueForKey(value, key);
}

void NSMutableArray::addObject(Ref<NSObject> object) {
  requireObject("addObject:", object);
  myElements.push_back(std::move(object));
}

void NSMutableArray::insertObject(Ref<NSObject> object, std::size_t index) {
  requireObject("insertObject:atIndex:", object);
  requireRange("insertObject:atIndex:", {index, 0}, count());
  myElements.insert(begin() + static_cast<std::ptrdiff_t>(index), std::move(object));
}

void NSMutableArray::removeObjectAtIndex(std::size_t index) {
  requireIndex("removeObjectAtIndex:", index, count());
  myElements.erase(begin() + static_cast<std::ptrdiff_t>(index));
}

void NSMutableArray::removeLastObject() {
  requireIndex("removeLastObject", 0, count());
  myElements.pop_back();
}

void NSMutableArray::replaceObjectAtIndex(std::size_t index, Ref<NSObject> object) {
  requireObject("replaceObjectAtIndex:withObject:", object);
  requireIndex("replaceObjectAtIndex:withObject:", index, count());
  myElements[index] = std::move(object);
}

void NSMutableArray::exchangeObjectAtIndex(std::size_t index, std::size_t withObjectAtIndex) {
  requireIndex("exchangeObjectAtIndex:withObjectAtIndex:", index, count());
  requireIndex("exchangeObjectAtIndex:withObjectAtIndex:", withObjectAtIndex, count());
  myElements[index].swap(myElements[withObjectAtIndex]);
}

void NSMutableArray::insertObjects(const NSArray& objects, const std::vector<NSRange>& atRanges) {
  if (!atRanges.empty()) requireRange("insertObjects:atIndexes:", atRanges.back(), count() + objects.count());
  std::vector<Ref<NSObject>> elements;
  elements.reserve(count() + objects.count());
  auto old = myElements.begin();
  auto added = objects.begin();
  for (const NSRange& range : atRanges) {
    const auto upTo = old + static_cast<std::ptrdiff_t>(range.location - elements.size());
    std::move(old, upTo, std::back_inserter(elements));
    old = upTo;
    const auto last = added + static_cast<std::ptrdiff_t>(range.length);
    elements.insert(elements.end(), added, last);
    added = last;
  }
  std::move(old, myElements.end(), std::back_inserter(elements));
  myElements.swap(elements);
}

void NSMutableArray::removeObjects(const std::vector<NSRange>& ranges) {
  if (ranges.empty()) return;
  requireRange("removeObjectsAtIndexes:", ranges.back(), count());
  const auto at = [this](std::size_t index) { return myElements.begin() + static_cast<std::ptrdiff_t>(index); };
  // Kept until the array is whole again, since a last reference may take other things with it.
  std::vector<Ref<NSObject>> removed;
  auto kept = at(ranges.front().location);
  for (auto range = ranges.begin(); range != ranges.end(); ++range) {
    std::move(at(range->location), at(range->end()), std::back_inserter(removed));
    const auto end = std::next(range) == ranges.end() ? myElements.end() : at(std::next(range)->location);
    kept = std::move(at(range->end()), end, kept);
  }
  myElements.erase(kept, myElements.end());
}

Ref<NSObject> NSMutableArray::copy() const { return std::make_shared<NSArray>(myElements); }

}  // namespace kelvane
