#pragma once

#include "Platform/Desktop/NSView.h"

namespace kelvane {

// A view whose subviews are panes, one beside the other, with dividers between them that the user moves. Panes are in
// order from left to right or from top to bottom; hidden ones count, and keep the size that they were given. Main
// thread only.
class KELVANE_EXPORT NSSplitView : public NSView {
 public:
  // Whether the dividers stand upright, and so the panes side by side.
  virtual bool isVertical() const = 0;
};

}  // namespace kelvane
