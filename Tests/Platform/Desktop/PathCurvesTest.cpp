#include "Platform/Desktop/PathCurves.h"
#include "Support/PathText.h"
#include "Support/Testing.h"

namespace {

CGPoint pointOn(const CGPoint& start, const PathCurve& curve, double t) {
  const double s = 1 - t;
  const auto mix = [&](double a, double b, double c, double d) {
    return s * s * s * a + 3 * s * s * t * b + 3 * s * t * t * c + t * t * t * d;
  };
  return {mix(start.x, curve.controlPoint1.x, curve.controlPoint2.x, curve.point.x),
          mix(start.y, curve.controlPoint1.y, curve.controlPoint2.y, curve.point.y)};
}

double distance(const CGPoint& a, const CGPoint& b) { return std::hypot(a.x - b.x, a.y - b.y); }

TEST(PathCurves, ElementsWithoutArcsStayAndLeaveOutWhatIsNoNumber) {
  const std::tuple<std::vector<PathElement>, const char*> rows[] = {
      {{PathMove{{1, 1}}, PathLine{{2, 1}}, PathCurve{{3, 3}, {2, 2}, {3, 2}}, PathClose{}}, "M1,1 L2,1 B3,3 Z"},
      {{PathCurve{{3, 3}, {2, 2}, {3, 2}}, PathClose{}, PathLine{{9, 9}}}, "M3,3 Z M3,3 L9,9"},
      {{PathMove{{1, 1}}, PathLine{{NaN, 1}}, PathLine{{2, infinity}}, PathLine{{5, 5}}}, "M1,1 L5,5"},
      {{PathClose{}, PathCorner{{1, 2}, {3, 4}, 1}, PathLine{{2, 2}}}, "M1,2 L2,2"},
      {{PathMove{{1, 1}}, PathArc{{1e308, 0}, 1e308, 0, 90}, PathArc{{0, 0}, NaN, 0, 90},
        PathCorner{{2, 2}, {3, 3}, NaN}},
       "M1,1"},
      // Corners without an arc: no radius, sides on one line, no sides.
      {{PathMove{{0, 0}}, PathCorner{{4, 0}, {4, 4}, 0}}, "M0,0 L4,0"},
      {{PathMove{{0, 0}}, PathCorner{{4, 0}, {9, 0}, 1}, PathCorner{{6, 0}, {4, 0}, 1}}, "M0,0 L4,0 L6,0"},
      {{PathMove{{2, 0}}, PathArc{{1, 0}, 1, 0, 0}, PathArc{{0, 0}, 1, 0, 0}}, "M2,0 L1,0"},
  };
  for (const auto& [elements, curves] : rows) EXPECT_EQ(shown(pathCurves(elements)), curves);
}

TEST(PathCurves, ArcsLieOnTheirCircle) {
  const std::tuple<double, double, double> rows[] = {{90, 270, 180}, {270, 90, 180},   {0, 360, 360},  {360, 0, 360},
                                                     {-90, 0, 90},   {0, 1000, 360},   {10, 370, 360}, {350, 10, 20},
                                                     {0, -90, 270},  {1e6, 1e6 + 1, 1}};
  for (const auto& [start, end, wantedTurn] : rows) {
    const std::vector<PathElement> curves = pathCurves({{PathArc{{5, -7}, 20, start, end}}});
    CGPoint point = std::get<PathMove>(curves.front()).point;
    const double radians = std::fmod(start, 360) * std::acos(-1) / 180;
    EXPECT_LT(distance(point, {5 + 20 * std::cos(radians), -7 + 20 * std::sin(radians)}), 1e-9) << start;
    double turn = 0;
    for (std::size_t i = 1; i < curves.size(); ++i) {
      const PathCurve curve = std::get<PathCurve>(curves[i]);
      for (int step = 1; step <= 8; ++step) {
        const CGPoint before = pointOn(point, curve, (step - 1) / 8.0);
        const CGPoint next = pointOn(point, curve, step / 8.0);
        EXPECT_NEAR(distance(next, {5, -7}), 20, 20 * 0.0003);
        turn += std::asin(((before.x - 5) * (next.y + 7) - (before.y + 7) * (next.x - 5)) / 400);
      }
      point = curve.point;
    }
    EXPECT_NEAR(turn * 180 / std::acos(-1), wantedTurn, 0.2) << start << " to " << end;
  }
}

TEST(PathCurves, CornersTouchBothSides) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> place(-100, 100);
  for (int round = 0; round < 500; ++round) {
    const CGPoint from{place(random), place(random)};
    const CGPoint corner{place(random), place(random)};
    const CGPoint to{place(random), place(random)};
    const double radius = 1 + std::abs(place(random)) / 10;
    const auto curves = pathCurves({{PathMove{from}, PathCorner{corner, to, radius}}});
    // Each side is touched in its own direction, where the radius and half the angle say.
    const auto along = [&](const CGPoint& a, const CGPoint& b) {
      const CGPoint u{a.x - corner.x, a.y - corner.y};
      const CGPoint v{b.x - corner.x, b.y - corner.y};
      return (u.x * v.x + u.y * v.y) / (std::hypot(u.x, u.y) * std::hypot(v.x, v.y));
    };
    const double reach = radius / std::tan(std::acos(along(from, to)) / 2);
    const std::pair<CGPoint, CGPoint> rows[] = {{from, std::get<PathLine>(curves[1]).point},
                                                {to, std::get<PathCurve>(curves.back()).point}};
    for (const auto& [side, touched] : rows) {
      EXPECT_NEAR(along(side, touched), 1, 1e-9);
      EXPECT_NEAR(distance(corner, touched) / reach, 1, 1e-6);
    }
  }
}

}  // namespace
