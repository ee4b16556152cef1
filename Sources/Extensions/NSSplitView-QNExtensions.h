#pragma once

#include "Platform/Desktop/NSSplitView.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

// Where a split view's dividers are, kept in NSUserDefaults::standardUserDefaults(). Main thread only.
//
// ```cpp
// loadDividerPosition(*splitView, u"sidebar");  // when it opens
// saveDividerPosition(*splitView, u"sidebar");  // when it closes
// ```
namespace kelvane {

// firstSubview, secondSubview  The panes at index 0 and 1; std::out_of_range when there are not that many.
KELVANE_EXPORT Ref<NSView> firstSubview(const NSSplitView& receiver);
KELVANE_EXPORT Ref<NSView> secondSubview(const NSSplitView& receiver);

// saveDividerPosition:  Keeps the extents of the first two panes (widths, where they stand side by side, else heights)
// as numbers in single precision: the first one's under the key, the second one's under the key and ".frame2". Further
// panes are not kept. A split view with one pane has that one kept, and then raises std::out_of_range. To make it
// durable is NSUserDefaults::synchronize's work.
KELVANE_EXPORT void saveDividerPosition(const NSSplitView& receiver, TextView key);

// loadDividerPosition:  Gives the first two panes the extents that were kept, each if there is one for it, and leaves
// the other direction as it is. 0 counts as nothing kept, so that a collapsed pane comes back as it is now, and so does
// what is beyond single precision. The host lays the split view out anew, where that is needed. A pane that is to be
// restored and is not there raises std::out_of_range.
KELVANE_EXPORT void loadDividerPosition(NSSplitView& receiver, TextView key);

}  // namespace kelvane
