#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// A screen of the desktop. All screens lie in one plane, and windows have their frames in it. Desktop tells which
// screens there are. One that was unplugged keeps its last rectangles. Main thread only.
class KELVANE_EXPORT NSScreen : public NSObject {
 public:
  // All of the screen.
  virtual CGRect frame() const = 0;
  // What panels and docks leave of it.
  virtual CGRect visibleFrame() const = 0;
};

}  // namespace kelvane
