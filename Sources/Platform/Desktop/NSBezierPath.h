#pragma once

#include <span>
#include <variant>
#include <vector>

#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// The elements of a path. Angles are in degrees, counter-clockwise from the direction of x.

// Begins a new outline at `point`.
struct PathMove {
  CGPoint point;
  friend bool operator==(const PathMove&, const PathMove&) = default;
};
struct PathLine {
  CGPoint point;
  friend bool operator==(const PathLine&, const PathLine&) = default;
};
// A cubic Bézier curve to `point`.
struct PathCurve {
  CGPoint point;
  CGPoint controlPoint1;
  CGPoint controlPoint2;
  friend bool operator==(const PathCurve&, const PathCurve&) = default;
};
// A part of a circle, drawn counter-clockwise, with a line from the current point to where it starts.
struct PathArc {
  CGPoint center;
  double radius = 0;
  double startAngle = 0;
  double endAngle = 0;
  friend bool operator==(const PathArc&, const PathArc&) = default;
};
// The corner `fromPoint` between the current point and `toPoint`, rounded: a line towards the corner and an arc that
// touches both of its sides. The current point is where the arc leaves the second side.
struct PathCorner {
  CGPoint fromPoint;
  CGPoint toPoint;
  double radius = 0;
  friend bool operator==(const PathCorner&, const PathCorner&) = default;
};
// A line back to where the outline began, which is the current point then.
struct PathClose {
  friend bool operator==(const PathClose&, const PathClose&) = default;
};

using PathElement = std::variant<PathMove, PathLine, PathCurve, PathArc, PathCorner, PathClose>;

// An outline to be filled, stroked or clipped to. It keeps its elements as it was told them; only what paints makes
// curves of the arcs (PathCurves.h). Any numbers are taken, and an element that needs a current point may come without:
// it begins there. A copyable value. One thread at a time.
class KELVANE_EXPORT NSBezierPath : public NSObject {
 public:
  // bezierPath  Without elements, with a line width of 1.0.
  NSBezierPath() = default;

  std::span<const PathElement> elements() const { return myElements; }
  bool isEmpty() const { return myElements.empty(); }
  // lineWidth  The width of strokes, in the units of the path; 0 is the thinnest line that can be drawn.
  double lineWidth() const { return myLineWidth; }
  // setLineWidth:
  void setLineWidth(double lineWidth) { myLineWidth = lineWidth; }

  // moveToPoint:
  void moveToPoint(const CGPoint& point) { myElements.emplace_back(PathMove{point}); }
  // lineToPoint:
  void lineToPoint(const CGPoint& point) { myElements.emplace_back(PathLine{point}); }
  // curveToPoint:controlPoint1:controlPoint2:
  void curveToPoint(const CGPoint& point, const CGPoint& controlPoint1, const CGPoint& controlPoint2) {
    myElements.emplace_back(PathCurve{point, controlPoint1, controlPoint2});
  }
  // closePath
  void closePath() { myElements.emplace_back(PathClose{}); }
  // removeAllPoints
  void removeAllPoints() { myElements.clear(); }
  // appendBezierPath:  The other path's elements.
  void appendBezierPath(const NSBezierPath& path);
  // appendBezierPathWithRect:  The four corners, counter-clockwise from the origin, as an outline of its own.
  void appendBezierPathWithRect(const CGRect& rect);
  // appendBezierPathWithArcWithCenter:radius:startAngle:endAngle:
  void appendBezierPathWithArcWithCenter(const CGPoint& center, double radius, double startAngle, double endAngle) {
    myElements.emplace_back(PathArc{center, radius, startAngle, endAngle});
  }
  // appendBezierPathWithArcFromPoint:toPoint:radius:
  void appendBezierPathWithArcFromPoint(const CGPoint& fromPoint, const CGPoint& toPoint, double radius) {
    myElements.emplace_back(PathCorner{fromPoint, toPoint, radius});
  }

  // These draw in the current context, in its colours; nothing where there is none.

  // fill  The inside, by the rule that counts turns around a point (non-zero winding).
  void fill() const;
  // stroke  Both sides of the outline, half the line width each.
  void stroke() const;
  // addClip  Limits all that is drawn from now on to the inside as well.
  void addClip() const;

  // Equal when elements and line width are.
  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // A new path of the same elements and line width.
  Ref<NSObject> copy() const override;

 private:
  std::vector<PathElement> myElements;
  double myLineWidth = 1.0;
};

}  // namespace kelvane
