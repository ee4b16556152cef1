#include "Platform/Desktop/NSIndexPath.h"

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/Raise.h"

namespace kelvane {

Ref<NSIndexPath> NSIndexPath::indexPathWithIndex(std::size_t index) {
  return std::make_shared<NSIndexPath>(std::vector<std::size_t>{index});
}

Ref<NSIndexPath> NSIndexPath::indexPathByAddingIndex(std::size_t index) const {
  std::vector<std::size_t> indexes;
  indexes.reserve(myIndexes.size() + 1);
  indexes = myIndexes;
  indexes.push_back(index);
  return std::make_shared<NSIndexPath>(std::move(indexes));
}

std::size_t NSIndexPath::indexAtPosition(std::size_t position) const {
  requireIndex("indexAtPosition:", position, myIndexes.size());
  return myIndexes[position];
}

bool NSIndexPath::isEqual(const NSObject& other) const {
  const auto* path = as<NSIndexPath>(&other);
  return path && path->myIndexes == myIndexes;
}

std::size_t NSIndexPath::hash() const {
  std::size_t hash = myIndexes.size();
  for (const std::size_t index : myIndexes) hash = hash * 31 + index;
  return hash;
}

std::weak_ordering NSIndexPath::compare(const NSObject& other) const {
  const auto* path = as<NSIndexPath>(&other);
  if (!path) raiseInvalidArgument("compare:", "not an index path", other.description());
  return myIndexes <=> path->myIndexes;
}

Text NSIndexPath::description() const {
  Text text = u"(";
  for (const std::size_t index : myIndexes) {
    if (text.size() > 1) text += u", ";
    text += format(u"%lu", index);
  }
  return text + u")";
}

Ref<NSObject> NSIndexPath::copy() const {
  return selfOr([this] { return std::make_shared<NSIndexPath>(*this); });
}

}  // namespace kelvane
