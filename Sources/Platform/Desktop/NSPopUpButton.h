#pragma once

#include <cstddef>

#include "Platform/Desktop/NSView.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// A button that opens a list of titled items, one of which is selected and shown. Main thread only.
class KELVANE_EXPORT NSPopUpButton : public NSView {
 public:
  virtual std::size_t numberOfItems() const = 0;
  // itemTitleAtIndex:  Empty for an item that there is not.
  virtual Text itemTitleAtIndex(std::size_t index) const = 0;
  // selectItemAtIndex:  Nothing for an item that there is not.
  virtual void selectItemAtIndex(std::size_t index) = 0;
  // NSNotFound when none is.
  virtual std::size_t indexOfSelectedItem() const = 0;
};

}  // namespace kelvane
