#pragma once

#include "Platform/Desktop/NSShadow.h"
#include "Platform/Foundation/Export.h"

namespace kelvane {

// setShadowAngle:andOffset:  Lets the shadow fall `andOffset` away in the direction of `angle`, in degrees from the
// positive y axis towards the positive x axis, and blurs it by the same distance. A degree is 3.1415927 / 180 radians.
//   90, 4 => offset {4, -9.3e-8}, radius 4      0, 4 => offset {0, 4}, radius 4
KELVANE_EXPORT void setShadowAngle(NSShadow& receiver, double angle, double andOffset);

}  // namespace kelvane
