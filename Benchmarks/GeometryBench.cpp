// Fitting rectangles into one another.

#include <cmath>
#include <random>
#include <vector>

#include "Math/QNGeometryUtilities.h"
#include "Support/Row.h"

#ifdef BENCH_QT
#include <QRectF>
#endif

namespace kelvane::bench {
namespace {

constexpr std::size_t fits = 100'000'000;

struct Fit {
  double ratio;
  CGRect frame;
};

// Wide images in wide frames, where all libraries mean the same.
const std::vector<Fit>& inputs() {
  static const std::vector<Fit> inputs = [] {
    std::mt19937 random(2);
    std::uniform_real_distribution<double> side(100, 500);
    std::vector<Fit> made(1000);
    for (Fit& fit : made) {
      const double height = side(random);
      fit.frame = {side(random), side(random), height * (1 + side(random) / 500), height};
      // At least as high as the frame is, so that the image takes the frame's full height.
      fit.ratio = height / fit.frame.size.width + (1 - height / fit.frame.size.width) * 0.5;
    }
    return made;
  }();
  return inputs;
}

// What all fits come to.
template <class Function>
double sumOfFits(Function fit) {
  double sum = 0;
  for (std::size_t i = 0; i < fits; i += inputs().size())
    for (const Fit& input : inputs()) sum += fit(input);
  return sum;
}

double sumOfParts(const CGRect& rect) { return rect.origin.x + rect.origin.y + rect.size.width + rect.size.height; }

// The formulas alone, rounded by the C library, without regard to null and backward rectangles.
CGRect fitPlainly(double ratio, const CGSize& frame) {
  CGRect fitted;
  if (ratio <= 1) {
    fitted.size = {frame.height / ratio, frame.height};
    if (frame.height / frame.width <= 1 && fitted.size.width > frame.width)
      fitted.size = {frame.width, ratio * frame.width};
    fitted.origin.x = (frame.width - fitted.size.width) * 0.5;
  } else if (frame.height / frame.width > 1) {
    fitted.size = {frame.width, ratio * frame.width};
    fitted.origin.y = (frame.height - fitted.size.height) * 0.5;
  } else {
    fitted.size = {frame.height / ratio, frame.height};
    fitted.origin.x = (frame.width - fitted.size.width) * 0.5;
  }
  const double x = std::floor(fitted.origin.x);
  const double y = std::floor(fitted.origin.y);
  return {x, y, std::ceil(fitted.origin.x + fitted.size.width) - x,
          std::ceil(fitted.origin.y + fitted.size.height) - y};
}

const Subject geometry([] {
  Row("fitRectWithHWRatio:intoRect:")
      .ours([] {
        return sumOfFits([](const Fit& input) {
          return sumOfParts(QNGeometryUtilities::fitRectWithHWRatio(input.ratio, input.frame));
        });
      })
      .limit("the formulas",
             [] {
               return sumOfFits([](const Fit& input) { return sumOfParts(fitPlainly(input.ratio, input.frame.size)); });
             })
#ifdef BENCH_QT
      .peer("Qt",
            [] {
              return sumOfFits([](const Fit& input) {
                const QSizeF frame(input.frame.size.width, input.frame.size.height);
                const QSizeF size = QSizeF(1, input.ratio).scaled(frame, Qt::KeepAspectRatio);
                const QRect fitted = QRectF(QPointF((frame.width() - size.width()) * 0.5, 0), size).toAlignedRect();
                return double(fitted.x() + fitted.y() + fitted.width() + fitted.height());
              });
            })
#endif
      .reach(1)
      .per("fit", fits);
});

}  // namespace
}  // namespace kelvane::bench
