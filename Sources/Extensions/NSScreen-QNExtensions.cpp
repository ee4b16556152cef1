#include "Extensions/NSScreen-QNExtensions.h"

#include "Extensions/WindowPlacement.h"
#include "Platform/Desktop/Desktop.h"

namespace kelvane {

CGPoint center(const Ref<NSScreen>&) { return WindowPlacement::center(NSScreenExtensions::mainVisibleFrame()); }

CGRect NSScreenExtensions::mainVisibleFrame() {
  const Ref<NSScreen> screen = Desktop::current().mainScreen();
  return screen ? screen->visibleFrame() : CGRectZero;
}

}  // namespace kelvane
