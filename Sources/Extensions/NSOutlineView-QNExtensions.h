#pragma once

#include <cstdint>

#include "Platform/Desktop/NSOutlineView.h"
#include "Platform/Desktop/NSTreeController.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/Ref.h"

// From what stands in an outline view's rows to the model objects shown there. Main thread only.
namespace kelvane {

// realItemForOpaqueItem:  The model object behind a row's item; nil when the view shows no such item, and when it is
// bound to no tree controller. Linear in the number of rows.
//
// Rows and objects are walked along together, and the row is counted on after an object's children have been: the first
// object below an expanded row is held against that very row, the second one against the row of the first, and so on.
KELVANE_EXPORT Ref<NSObject> realItemForOpaqueItem(const NSOutlineView& receiver, const Ref<NSObject>& opaqueItem);

// _treeController  The tree controller whose content the view shows; nil when there is none.
KELVANE_EXPORT Ref<NSTreeController> _treeController(const NSOutlineView& receiver);

// _realItemForOpaqueItem:outlineRowIndex:items:  The search among `items` and below, from the row on that
// `outlineRowIndex` holds; that is counted on, and is where the search ended when nothing was found. Nil items are as
// none. What a tree holds within itself is not searched again.
KELVANE_EXPORT Ref<NSObject> _realItemForOpaqueItem(const NSOutlineView& receiver, const Ref<NSObject>& opaqueItem,
                                                    std::int64_t& outlineRowIndex, const Ref<NSArray>& items);

}  // namespace kelvane
