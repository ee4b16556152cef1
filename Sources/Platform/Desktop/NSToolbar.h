#pragma once

#include <utility>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// A button or another control in a toolbar, known by an identifier. Main thread only.
class KELVANE_EXPORT NSToolbarItem : public NSObject {
 public:
  explicit NSToolbarItem(Text itemIdentifier) : myItemIdentifier(std::move(itemIdentifier)) {}

  const Text& itemIdentifier() const { return myItemIdentifier; }

 private:
  Text myItemIdentifier;
};

// The row of controls at the top of a window. Main thread only.
class KELVANE_EXPORT NSToolbar : public NSObject {
 public:
  virtual bool isVisible() const = 0;
  // In the order in which they are shown; each one stays the same object.
  virtual std::vector<Ref<NSToolbarItem>> items() const = 0;
};

}  // namespace kelvane
