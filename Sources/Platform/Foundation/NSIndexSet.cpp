#include "Platform/Foundation/NSIndexSet.h"

#include <algorithm>
#include <utility>

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/Raise.h"

namespace kelvane {
namespace {

// The first range that ends at or behind `index`.
template <class Ranges>
auto firstEndingFrom(Ranges& ranges, std::size_t index) {
  return std::lower_bound(ranges.begin(), ranges.end(), index,
                          [](const NSRange& range, std::size_t place) { return range.end() < place; });
}

}  // namespace

NSIndexSet::NSIndexSet(NSRange range) {
  requireRange("initWithIndexesInRange:", range, NSNotFound);
  if (range.length > 0) myRanges.push_back(range);
}

std::size_t NSIndexSet::count() const {
  std::size_t count = 0;
  for (const NSRange& range : myRanges) count += range.length;
  return count;
}

bool NSIndexSet::containsIndex(std::size_t index) const {
  // No range ends behind NSNotFound, and the end itself does not belong to it.
  if (index >= NSNotFound) return false;
  const auto place = firstEndingFrom(myRanges, index + 1);
  return place != myRanges.end() && place->location <= index;
}

bool NSIndexSet::isEqual(const NSObject& other) const {
  const NSIndexSet* set = as<NSIndexSet>(&other);
  return set && set->myRanges == myRanges;
}

std::size_t NSIndexSet::hash() const {
  std::size_t hash = myRanges.size();
  for (const NSRange& range : myRanges) hash = (hash * 31 + range.location) * 31 + range.length;
  return hash;
}

Text NSIndexSet::description() const {
  Text text = u"(";
  for (const NSRange& range : myRanges) {
    if (text.size() > 1) text += u", ";
    text += format(u"%lu", range.location);
    if (range.length > 1) text += format(u"-%lu", range.end() - 1);
  }
  return text + u')';
}

Ref<NSObject> NSIndexSet::copy() const {
  return selfOr([this] { return std::make_shared<NSIndexSet>(*this); });
}

Ref<NSObject> NSIndexSet::mutableCopy() const {
  const auto copied = std::make_shared<NSMutableIndexSet>();
  copied->addIndexes(*this);
  return copied;
}

void NSMutableIndexSet::addIndexesInRange(NSRange range) {
  requireRange("addIndexesInRange:", range, NSNotFound);
  if (range.length == 0) return;
  // All that the range touches becomes one.
  const auto first = firstEndingFrom(myRanges, range.location);
  auto end = first;
  while (end != myRanges.end() && end->location <= range.end()) ++end;
  if (first == end) {
    myRanges.insert(first, range);
    return;
  }
  const std::size_t location = std::min(first->location, range.location);
  *first = {location, std::max(std::prev(end)->end(), range.end()) - location};
  myRanges.erase(std::next(first), end);
}

void NSMutableIndexSet::addIndexes(const NSIndexSet& indexes) {
  if (myRanges.empty()) {
    myRanges = indexes.ranges();
    return;
  }
  const std::vector<NSRange> added = indexes.ranges();  // `indexes` may be this very set
  for (const NSRange& range : added) addIndexesInRange(range);
}

void NSMutableIndexSet::removeIndexesInRange(NSRange range) {
  // What lies beyond the largest index is in no set.
  const std::size_t from = std::min(range.location, NSNotFound);
  const std::size_t end = from + std::min(range.length, NSNotFound - from);
  if (from == end) return;
  auto place = firstEndingFrom(myRanges, from + 1);
  if (place != myRanges.end() && place->location < from) {
    const NSRange cut = *place;
    place->length = from - cut.location;
    ++place;
    if (cut.end() > end) {
      myRanges.insert(place, {end, cut.end() - end});
      return;
    }
  }
  const auto last = firstEndingFrom(myRanges, end + 1);
  if (last != myRanges.end() && last->location < end) *last = {end, last->end() - end};
  myRanges.erase(place, last);
}

Ref<NSObject> NSMutableIndexSet::copy() const {
  return std::make_shared<NSIndexSet>(static_cast<const NSIndexSet&>(*this));
}

}  // namespace kelvane
