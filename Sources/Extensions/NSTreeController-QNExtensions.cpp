#include "Extensions/NSTreeController-QNExtensions.h"

#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/Raise.h"

namespace kelvane {
namespace {

struct Children {
  Ref<NSArray> array;
  std::size_t count = 0;
};

// A value that is nil, a number or text.
struct LeafValue {
  Ref<NSObject> object;

  bool boolValue() const {
    if (const auto* number = as<NSNumber>(object.get())) return number->boolValue();
    const auto* text = as<NSString>(object.get());
    return text && text->boolValue();
  }
  std::uint32_t unsignedIntValue() const {
    if (const auto* number = as<NSNumber>(object.get()))
      return static_cast<std::uint32_t>(number->unsignedIntegerValue());
    const auto* text = as<NSString>(object.get());
    return text ? static_cast<std::uint32_t>(text->integerValue()) : 0;
  }
};

LeafValue leafValue(const NSTreeController& controller, const NSObject& object) {
  if (!controller.leafKeyPath()) return {};
  Ref<NSObject> value = object.valueForKeyPath(*controller.leafKeyPath());
  if (value && !as<NSNumber>(value.get()) && !as<NSString>(value.get()))
    raiseInvalidArgument("indexPathToObject:", "neither a number nor text under the leaf key path",
                         value->description());
  return {std::move(value)};
}

Children childrenToSearch(const NSTreeController& controller, const NSObject& object) {
  if (leafValue(controller, object).boolValue()) return {};
  if (controller.countKeyPath()) {
    // The leaf key path it is, not the count key path: whole trees are found or not found by it.
    const std::size_t count = leafValue(controller, object).unsignedIntValue();
    return count == 0 ? Children() : Children{controller.childrenOf(object), count};
  }
  Ref<NSArray> array = controller.childrenOf(object);
  const std::size_t count = array ? array->count() : 0;
  return {std::move(array), count};
}

// Goes through a tree, each object before its children, however deep it is.
class Walk {
 public:
  Walk(const NSTreeController& controller, Children top) : myController(controller) { push(nullptr, std::move(top)); }

  // The next object; nil behind the last one.
  Ref<NSObject> next() {
    // The children of an object are gone into only now that it has been looked at.
    if (myCurrent && myBelow.count > 0 && !myOwners.contains(myCurrent.get()))
      push(std::exchange(myCurrent, nullptr), std::exchange(myBelow, {}));
    while (!myLevels.empty() && myLevels.back().next == myLevels.back().children.count) pop();
    if (myLevels.empty()) return nullptr;
    Level& level = myLevels.back();
    const std::size_t index = level.next++;
    requireIndex("objectAtIndex:", index, level.children.array ? level.children.array->count() : 0);
    myCurrent = level.children.array->objectAtIndex(index);
    myBelow = childrenToSearch(myController, *myCurrent);
    return myCurrent;
  }

  // Where the object that `next` gave last stands, seen from `base`; nil for the top.
  Ref<NSIndexPath> path(const Ref<NSIndexPath>& base = nullptr) const {
    std::vector<std::size_t> indexes = base ? base->indexes() : std::vector<std::size_t>();
    for (const Level& level : myLevels) indexes.push_back(level.next - 1);
    return std::make_shared<NSIndexPath>(std::move(indexes));
  }

 private:
  struct Level {
    Ref<NSObject> owner;
    Children children;
    std::size_t next = 0;
  };

  void push(Ref<NSObject> owner, Children children) {
    if (owner) myOwners.insert(owner.get());
    myLevels.push_back({std::move(owner), std::move(children)});
  }
  void pop() {
    myOwners.erase(myLevels.back().owner.get());
    myLevels.pop_back();
  }

  const NSTreeController& myController;
  std::vector<Level> myLevels;
  std::unordered_set<const NSObject*> myOwners;
  Ref<NSObject> myCurrent;
  Children myBelow;
};

struct HashOfObject {
  std::size_t operator()(const Ref<NSObject>& object) const { return object->hash(); }
};

struct EqualToWanted {
  bool operator()(const Ref<NSObject>& object, const Ref<NSObject>& wanted) const { return wanted->isEqual(*object); }
};

Children top(const NSTreeController& controller) {
  const Ref<NSArray>& content = controller.content();
  return {content, content ? content->count() : 0};
}

}  // namespace

Ref<NSIndexPath> indexPathToObject(const NSTreeController& receiver, const Ref<NSObject>& object) {
  const auto [content, count] = top(receiver);
  return _indexPathFromIndexPath(receiver, nullptr, content, count, object);
}

void setSelectedObjects(NSTreeController& receiver, const Ref<NSArray>& objects) {
  const std::size_t count = objects ? objects->count() : 0;
  std::vector<Ref<NSIndexPath>> paths(count);
  std::unordered_multimap<Ref<NSObject>, std::size_t, HashOfObject, EqualToWanted> missing;
  for (std::size_t i = 0; i < count; ++i) missing.emplace(objects->objectAtIndex(i), i);
  Walk walk(receiver, top(receiver));
  while (!missing.empty()) {
    const Ref<NSObject> object = walk.next();
    if (!object) break;
    const auto [first, last] = missing.equal_range(object);
    for (auto found = first; found != last; ++found) paths[found->second] = walk.path();
    missing.erase(first, last);
  }
  std::erase(paths, nullptr);
  receiver.setSelectionIndexPaths(std::move(paths));
}

Ref<NSIndexPath> _indexPathFromIndexPath(const NSTreeController& receiver, const Ref<NSIndexPath>& base,
                                         const Ref<NSArray>& inChildren, std::size_t childCount,
                                         const Ref<NSObject>& toObject) {
  Walk walk(receiver, {inChildren, childCount});
  while (const Ref<NSObject> object = walk.next())
    if (isEqual(toObject, object)) return walk.path(base);
  return nullptr;
}

}  // namespace kelvane
