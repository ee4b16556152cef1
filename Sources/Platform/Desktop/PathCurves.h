#pragma once

#include <span>
#include <vector>

#include "Platform/Desktop/NSBezierPath.h"
#include "Platform/Foundation/Export.h"

namespace kelvane {

// What a painter draws for `elements`: the same outlines of moves, lines, curves and closes alone, so that each painter
// draws arcs alike. An arc becomes a curve for each quarter turn that it begins, which leaves the circle by less than
// 0.03 % of its radius.
//
//  - An arc goes from its start angle counter-clockwise to its end angle, a full turn at most; nothing but the line to
//    its start when the angles are equal.
//  - A corner of radius 0 or less, and one whose sides lie on one line, is a line to the corner. The radius counts as
//    it is given, also where the sides are too short for it.
//  - What needs a current point and has none begins where it would lead to, or where its arc starts. Behind a close,
//  the
//    next outline begins where the closed one did.
//  - What holds a number that is infinite or none is left out.
//
// Linear. Any thread.
KELVANE_EXPORT std::vector<PathElement> pathCurves(std::span<const PathElement> elements);

}  // namespace kelvane
