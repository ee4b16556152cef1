#pragma once

#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSIndexSet.h"
#include "Platform/Foundation/NSKeyValueObserving.h"

namespace kelvane {

// An array property as an array to be changed, so that its observers hear what happened where:
//
// ```cpp
// notebook->mutableArrayValueForKey(u"notes").addObject(note);
// ```
//
// Each operation is one change: an insertion, removal, replacement or setting. Where the property holds a mutable
// array, that very one is changed; where it holds an immutable one, or nil, a changed copy is set in its place. The
// property is asked for anew each time, so this may be kept; it keeps the object alive when references hold that.
//
// Nil elements and a property that is no array raise std::invalid_argument, indexes beyond the end std::out_of_range;
// then nothing has changed. One thread at a time.
class KELVANE_EXPORT NSKeyValueMutableArray {
 public:
  // The property as it is now; an empty array for nil.
  Ref<NSArray> array() const;
  std::size_t count() const { return array()->count(); }
  Ref<NSObject> objectAtIndex(std::size_t index) const { return array()->objectAtIndex(index); }

  void addObject(const Ref<NSObject>& object) { insertObject(object, count()); }
  // addObjectsFromArray:
  void addObjectsFromArray(const NSArray& objects);
  // insertObject:atIndex:
  void insertObject(const Ref<NSObject>& object, std::size_t index);
  // insertObjects:atIndexes:  In ascending order, so that each stands at its index afterwards. As many as indexes.
  // Linear.
  void insertObjects(const NSArray& objects, const NSIndexSet& atIndexes);
  void removeObjectAtIndex(std::size_t index) { removeObjectsAtIndexes(NSIndexSet(index)); }
  void removeLastObject();
  // removeObjectsAtIndexes:  Linear.
  void removeObjectsAtIndexes(const NSIndexSet& indexes);
  // Nothing when it is empty.
  void removeAllObjects() { removeObjectsAtIndexes(NSIndexSet(NSRange{0, count()})); }
  // replaceObjectAtIndex:withObject:
  void replaceObjectAtIndex(std::size_t index, const Ref<NSObject>& object);
  // replaceObjectsAtIndexes:withObjects:  As many as indexes.
  void replaceObjectsAtIndexes(const NSIndexSet& indexes, const NSArray& withObjects);
  // setArray:  Sets the property to a new mutable array with these elements.
  void setArray(const NSArray& array);

 private:
  friend class NSObject;
  NSKeyValueMutableArray(NSObject& object, TextView key);

  // Runs `edit` on the elements as one change of this kind.
  template <class Edit>
  void change(NSKeyValueChangeKind kind, const NSIndexSet& indexes, Edit edit);

  Ref<NSObject> myObject;
  Text myKey;
};

}  // namespace kelvane
