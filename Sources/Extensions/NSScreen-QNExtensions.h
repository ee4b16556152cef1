#pragma once

#include "Platform/Desktop/NSScreen.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/Ref.h"

namespace kelvane {

// center  The middle of the main screen's visible frame, rounded down: of the main screen, whichever the receiver is.
// (0, 0) where there is no screen. Main thread only.
//   {{0, 0}, {1000, 800}} => {500, 400}
KELVANE_EXPORT CGPoint center(const Ref<NSScreen>& receiver);

namespace NSScreenExtensions {

// The main screen's visible frame; the zero rectangle where there is no screen.
KELVANE_EXPORT CGRect mainVisibleFrame();

}  // namespace NSScreenExtensions

}  // namespace kelvane
