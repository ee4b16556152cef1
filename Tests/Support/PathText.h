#pragma once

#include <span>
#include <string>
#include <variant>

#include "Platform/Desktop/NSBezierPath.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextNumbers.h"

namespace kelvane {

inline std::string shown(double number) { return utf8(shortestDecimal(number)); }
inline std::string shown(const CGPoint& point) { return shown(point.x) + "," + shown(point.y); }

// "M10,20 L0,20 A10,10r10:90-270 C0,0>40,0r5 Z": moves, lines, arcs, corners, closes; curves are "B".
inline std::string shown(std::span<const PathElement> elements) {
  struct Writer {
    std::string operator()(const PathMove& move) const { return "M" + shown(move.point); }
    std::string operator()(const PathLine& line) const { return "L" + shown(line.point); }
    std::string operator()(const PathCurve& curve) const { return "B" + shown(curve.point); }
    std::string operator()(const PathArc& arc) const {
      return "A" + shown(arc.center) + "r" + shown(arc.radius) + ":" + shown(arc.startAngle) + "-" +
             shown(arc.endAngle);
    }
    std::string operator()(const PathCorner& corner) const {
      return "C" + shown(corner.fromPoint) + ">" + shown(corner.toPoint) + "r" + shown(corner.radius);
    }
    std::string operator()(const PathClose&) const { return "Z"; }
  };
  std::string text;
  for (const PathElement& element : elements) text += (text.empty() ? "" : " ") + std::visit(Writer(), element);
  return text;
}

}  // namespace kelvane
