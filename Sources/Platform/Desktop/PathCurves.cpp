#include "Platform/Desktop/PathCurves.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numbers>
#include <optional>
#include <utility>
#include <variant>

namespace kelvane {
namespace {

constexpr double radiansPerDegree = std::numbers::pi / 180;
constexpr double quarterTurn = std::numbers::pi / 2;

bool areFinite(std::initializer_list<double> numbers) {
  return std::all_of(numbers.begin(), numbers.end(), [](double number) { return std::isfinite(number); });
}

CGPoint operator+(const CGPoint& a, const CGPoint& b) { return {a.x + b.x, a.y + b.y}; }
CGPoint operator-(const CGPoint& a, const CGPoint& b) { return {a.x - b.x, a.y - b.y}; }
CGPoint operator*(double factor, const CGPoint& a) { return {factor * a.x, factor * a.y}; }
double cross(const CGPoint& a, const CGPoint& b) { return a.x * b.y - a.y * b.x; }
double dot(const CGPoint& a, const CGPoint& b) { return a.x * b.x + a.y * b.y; }
// Not a number for a vector of no length.
CGPoint unit(const CGPoint& a) { return 1 / std::hypot(a.x, a.y) * a; }
CGPoint direction(double angle) { return {std::cos(angle), std::sin(angle)}; }

class CurveMaker {
 public:
  explicit CurveMaker(std::size_t count) { myCurves.reserve(count); }

  std::vector<PathElement> take() { return std::move(myCurves); }

  void operator()(const PathMove& move) {
    if (areFinite({move.point.x, move.point.y})) moveTo(move.point);
  }

  void operator()(const PathLine& line) {
    if (areFinite({line.point.x, line.point.y})) lineTo(line.point);
  }

  void operator()(const PathCurve& curve) {
    const auto& [point, control1, control2] = curve;
    if (!areFinite({point.x, point.y, control1.x, control1.y, control2.x, control2.y})) return;
    if (!myCurrent) return moveTo(point);
    reopen();
    myCurves.emplace_back(curve);
    myCurrent = point;
  }

  void operator()(const PathArc& arc) {
    const auto& [center, radius, startAngle, endAngle] = arc;
    if (!areFinite({std::abs(center.x) + std::abs(radius), std::abs(center.y) + std::abs(radius), startAngle, endAngle,
                    endAngle - startAngle}))
      return;
    double sweep = 0;
    if (endAngle - startAngle >= 360)
      sweep = 360;
    else if (endAngle != startAngle)
      sweep = std::fmod(endAngle - startAngle, 360);
    if (endAngle < startAngle) sweep += 360;
    const double start = std::fmod(startAngle, 360) * radiansPerDegree;
    const CGPoint first = center + radius * direction(start);
    if (!isCurrent(first, center, radius)) lineTo(first);
    curveAround(center, radius, start, sweep * radiansPerDegree);
  }

  void operator()(const PathCorner& corner) {
    const auto& [from, to, radius] = corner;
    if (!areFinite({from.x, from.y, to.x, to.y, radius})) return;
    if (!myCurrent) return moveTo(from);
    const CGPoint in = unit(*myCurrent - from);
    const CGPoint out = unit(to - from);
    const double sine = cross(in, out);
    const double cosine = dot(in, out);
    if (!(radius > 0) || !(std::abs(sine) > 1e-12)) return lineTo(from);
    // From the corner to where the arc touches the sides: the radius over the tangent of half the angle.
    const double distance = radius * (1 + cosine) / std::abs(sine);
    const CGPoint first = from + distance * in;
    // The arc bends away from the corner, by what the path turns there, clockwise where the corner is to its left.
    const double side = sine < 0 ? 1 : -1;
    const CGPoint outward = side * CGPoint{-in.y, in.x};
    const CGPoint center = first - radius * outward;
    if (!areFinite({first.x, first.y, std::abs(center.x) + radius, std::abs(center.y) + radius})) return lineTo(from);
    const double turn = std::numbers::pi - std::atan2(std::abs(sine), cosine);
    if (!isCurrent(first, center, radius)) lineTo(first);
    curveAround(center, radius, std::atan2(outward.y, outward.x), side * turn);
  }

  void operator()(const PathClose& close) {
    if (!myCurrent) return;
    myCurves.emplace_back(close);
    myCurrent = myStart;
    myIsClosed = true;
  }

 private:
  void moveTo(const CGPoint& point) {
    myCurves.emplace_back(PathMove{point});
    myCurrent = myStart = point;
    myIsClosed = false;
  }

  void lineTo(const CGPoint& point) {
    if (!myCurrent) return moveTo(point);
    reopen();
    myCurves.emplace_back(PathLine{point});
    myCurrent = point;
  }

  void reopen() {
    if (myIsClosed) moveTo(myStart);
  }

  // Whether the path stands at `point` of a circle, give or take what computing it has lost.
  bool isCurrent(const CGPoint& point, const CGPoint& center, double radius) const {
    if (!myCurrent || myIsClosed) return false;
    const CGPoint gap = point - *myCurrent;
    const double size = std::abs(center.x) + std::abs(center.y) + std::abs(radius);
    return std::abs(gap.x) + std::abs(gap.y) <= 1e-12 * size;
  }

  // Goes on along the circle, from the angle `start` on which the path stands.
  void curveAround(const CGPoint& center, double radius, double start, double sweep) {
    const auto count = static_cast<int>(std::ceil(std::abs(sweep) / quarterTurn - 1e-9));
    if (count == 0) return;
    const double step = sweep / count;
    const double reach = radius * 4 / 3 * std::tan(step / 4);
    CGPoint from = direction(start);
    for (int i = 1; i <= count; ++i) {
      const CGPoint to = direction(start + i * step);
      const CGPoint end = center + radius * to;
      myCurves.emplace_back(PathCurve{end, center + radius * from + reach * CGPoint{-from.y, from.x},
                                      end - reach * CGPoint{-to.y, to.x}});
      myCurrent = end;
      from = to;
    }
  }

  std::vector<PathElement> myCurves;
  std::optional<CGPoint> myCurrent;
  CGPoint myStart;
  bool myIsClosed = false;
};

}  // namespace

std::vector<PathElement> pathCurves(std::span<const PathElement> elements) {
  CurveMaker maker(elements.size());
  for (const PathElement& element : elements) std::visit(maker, element);
  return maker.take();
}

}  // namespace kelvane
