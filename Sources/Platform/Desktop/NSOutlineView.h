#pragma once

#include <cstdint>

#include "Platform/Desktop/NSView.h"
#include "Platform/Foundation/NSDictionary.h"

namespace kelvane {

// What infoForBinding keeps the bound object under.
inline constexpr TextView NSObservedObjectKey = u"NSObservedObject";

// A view that shows a tree in rows, of which some are expanded. What stands in a row is an opaque item: an object whose
// identity is all that counts, and that stays the same as long as the row shows the same. Main thread only.
class KELVANE_EXPORT NSOutlineView : public NSView {
 public:
  virtual std::int64_t numberOfRows() const = 0;
  // itemAtRow:  Nil for a row that there is not. Constant time, or close to it.
  virtual Ref<NSObject> itemAtRow(std::int64_t row) const = 0;
  // isItemExpanded:  False for nil and for what is no item of the view.
  virtual bool isItemExpanded(const Ref<NSObject>& item) const = 0;

  // infoForBinding:  What the view is bound to by that name; nil when it is not. A view that shows the content of a
  // tree controller has the controller under NSObservedObjectKey for the binding u"contentAttributeKey".
  virtual Ref<NSDictionary> infoForBinding(TextView binding) const = 0;
};

}  // namespace kelvane
