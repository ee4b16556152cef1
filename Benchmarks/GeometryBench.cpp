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
    std::vector<Fit> inputs(1000);
    for (Fit& fit : inputs) {
      const double height = side(random);
      fit.frame = {side(random), side(random), height * (1 + side(random) / 500), height};
      // At least as high as the frame is, so that the image takes the frame's full height.
      fit.ratio = height / fit.frame.size.width + (1 - height / fit.frame.size.width) * 0.5;
    }
    return inputs;
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

const Subject geometry([] {
  Row("fitRectWithHWRatio:intoRect:")
      .ours([] {
        return sumOfFits([](const Fit& input) {
          const CGRect fitted = QNGeometryUtilities::fitRectWithHWRatio(input.ratio, input.frame);
          return fitted.origin.x + fitted.origin.y + fitted.size.width + fitted.size.height;
        });
      })
      .peer("std::floor",
            [] {
              return sumOfFits([](const Fit& input) {
                const double width = input.frame.size.height / input.ratio;
                const double x = (input.frame.size.width - width) * 0.5;
                return std::floor(x) + std::ceil(x + width) - std::floor(x) + std::ceil(input.frame.size.height);
              });
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
