#include "Platform/Foundation/NSKeyValueMutableArray.h"

#include <string>
#include <utility>

#include "Platform/Foundation/PropertyChange.h"
#include "Platform/Foundation/Raise.h"

namespace kelvane {
namespace {

using Kind = NSKeyValueChangeKind;

Ref<NSArray> arrayOf(const Ref<NSObject>& value, TextView key) {
  if (!value) return std::make_shared<NSArray>();
  if (auto array = as<NSArray>(value)) return array;
  raiseInvalidArgument("mutableArrayValueForKey:", "no array stands under key", key);
}

void requireAsMany(std::string_view operation, const NSArray& objects, const NSIndexSet& indexes) {
  if (objects.count() != indexes.count())
    raiseInvalidArgument(operation, std::to_string(objects.count()) + " objects cannot stand at " +
                                        std::to_string(indexes.count()) + " indexes");
}

void requireWithin(std::string_view operation, const NSIndexSet& indexes, std::size_t count) {
  for (const NSRange& range : indexes.ranges()) requireRange(operation, range, count);
}

}  // namespace

// An object that lives outside of references is only referred to.
NSKeyValueMutableArray::NSKeyValueMutableArray(NSObject& object, TextView key)
    : myObject(object.weak_from_this().lock()), myKey(key) {
  if (!myObject) myObject = Ref<NSObject>(Ref<NSObject>(), &object);
  array();
}

Ref<NSArray> NSKeyValueMutableArray::array() const { return arrayOf(myObject->valueForKey(myKey), myKey); }

template <class Edit>
void NSKeyValueMutableArray::change(Kind kind, const NSIndexSet& indexes, Edit edit) {
  if (indexes.ranges().empty()) return;
  // The observers may let go of this very proxy.
  const Ref<NSObject> object = myObject;
  detail::PropertyChange change(*object, myKey, kind, &indexes);
  const Ref<NSArray> current = array();
  if (const auto array = as<NSMutableArray>(current)) {
    edit(*array);
  } else {
    const auto changed = as<NSMutableArray>(current->mutableCopy());
    edit(*changed);
    object->setValueForKey(changed, myKey);
  }
  change.tell();
}

void NSKeyValueMutableArray::addObjectsFromArray(const NSArray& objects) {
  insertObjects(objects, NSIndexSet(NSRange{count(), objects.count()}));
}

void NSKeyValueMutableArray::insertObject(const Ref<NSObject>& object, std::size_t index) {
  if (!object) raiseInvalidArgument("insertObject:atIndex:", "an element cannot be nil");
  requireRange("insertObject:atIndex:", {index, 0}, count());
  change(Kind::Insertion, NSIndexSet(index), [&](NSMutableArray& array) { array.insertObject(object, index); });
}

void NSKeyValueMutableArray::insertObjects(const NSArray& objects, const NSIndexSet& atIndexes) {
  requireAsMany("insertObjects:atIndexes:", objects, atIndexes);
  requireWithin("insertObjects:atIndexes:", atIndexes, count() + objects.count());
  change(Kind::Insertion, atIndexes, [&](NSMutableArray& array) { array.insertObjects(objects, atIndexes.ranges()); });
}

void NSKeyValueMutableArray::removeLastObject() {
  requireIndex("removeLastObject", 0, count());
  removeObjectAtIndex(count() - 1);
}

void NSKeyValueMutableArray::removeObjectsAtIndexes(const NSIndexSet& indexes) {
  requireWithin("removeObjectsAtIndexes:", indexes, count());
  change(Kind::Removal, indexes, [&](NSMutableArray& array) { array.removeObjects(indexes.ranges()); });
}

void NSKeyValueMutableArray::replaceObjectAtIndex(std::size_t index, const Ref<NSObject>& object) {
  if (!object) raiseInvalidArgument("replaceObjectAtIndex:withObject:", "an element cannot be nil");
  requireIndex("replaceObjectAtIndex:withObject:", index, count());
  change(Kind::Replacement, NSIndexSet(index),
         [&](NSMutableArray& array) { array.replaceObjectAtIndex(index, object); });
}

void NSKeyValueMutableArray::replaceObjectsAtIndexes(const NSIndexSet& indexes, const NSArray& withObjects) {
  requireAsMany("replaceObjectsAtIndexes:withObjects:", withObjects, indexes);
  requireWithin("replaceObjectsAtIndexes:withObjects:", indexes, count());
  change(Kind::Replacement, indexes, [&](NSMutableArray& array) {
    std::size_t taken = 0;
    for (const NSRange& range : indexes.ranges())
      for (std::size_t index = range.location; index < range.end(); ++index)
        array.replaceObjectAtIndex(index, withObjects.objectAtIndex(taken++));
  });
}

void NSKeyValueMutableArray::setArray(const NSArray& array) {
  const Ref<NSObject> object = myObject;
  object->setValueForKey(array.mutableCopy(), myKey);
}

}  // namespace kelvane
