#pragma once

#include "Platform/Desktop/NSShadow.h"
#include "Platform/Foundation/Export.h"

class QWidget;

namespace kelvane {

// Has the widget cast the shadow, as it is now, on what is behind it in its window; null ends that. The offset counts
// upwards, as everywhere in the library. It takes the place of any other graphics effect, of which Qt lets a widget
// have one. Main thread only.
//
// ```cpp
// QPushButton button;
// OSShadow shadow;
// setShadowAngle(shadow, 135, 4);
// setShadow(button, &shadow);
// ```
KELVANE_EXPORT void setShadow(QWidget& widget, const NSShadow* shadow);

}  // namespace kelvane
