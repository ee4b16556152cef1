#pragma once

#include <cstddef>

#include "Platform/Desktop/NSTreeController.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"

// Finds model objects in a tree controller's content. Objects are taken in order, each one before its children, and
// what the wanted object's own equality test calls equal is found; the first match counts. What a tree holds within
// itself is not searched again. Main thread only.
//
// Which children an object has is read as the controller's key paths say: none when its value under the leaf key path
// is true; otherwise those under the children key path. With a count key path however, that many of them as the value
// under the *leaf* key path says, as an unsigned number: so no others than those at the top are found where objects
// tell truth values there, and where there is no leaf key path. More than there are raise std::out_of_range; under the
// leaf key path only numbers, text and nil are expected, and all else raises std::invalid_argument.
namespace kelvane {

// indexPathToObject:  Nil when the object is not in the content, or nil.
KELVANE_EXPORT Ref<NSIndexPath> indexPathToObject(const NSTreeController& receiver, const Ref<NSObject>& object);

// setSelectedObjects:  Selects those of the objects that are in the content, in the order given; none of them clears
// the selection; of equal objects in the content the first is meant. Nil is as none. Walks the tree once, until all are
// found: linear, where hashes tell objects apart.
KELVANE_EXPORT void setSelectedObjects(NSTreeController& receiver, const Ref<NSArray>& objects);

// _indexPathFromIndexPath:inChildren:childCount:toObject:  The search among the first `childCount` of `inChildren`,
// which stand at `base`; nil stands for the top. Nil when the object is not among them or below.
KELVANE_EXPORT Ref<NSIndexPath> _indexPathFromIndexPath(const NSTreeController& receiver, const Ref<NSIndexPath>& base,
                                                        const Ref<NSArray>& inChildren, std::size_t childCount,
                                                        const Ref<NSObject>& toObject);

}  // namespace kelvane
