#include "Qt/QtPainting.h"

#include <QPainter>
#include <QWidget>
#include <memory>
#include <utility>

#include "Platform/Desktop/NSView.h"
#include "Qt/Painting/QtGraphicsContext.h"
#include "Qt/QtDesktop.h"

namespace kelvane {
namespace {

// `bounds` is what is drawn in, in its own coordinates; in the painter's it begins at (0, 0).
QTransform userToPainter(const CGRect& bounds, bool isFlipped) {
  if (isFlipped) return QTransform::fromTranslate(-bounds.origin.x, -bounds.origin.y);
  return {1, 0, 0, -1, -bounds.origin.x, bounds.size.height + bounds.origin.y};
}

}  // namespace

struct QtPainting::Parts {
  Parts(QPainter& painter, const CGRect& bounds, bool isFlipped)
      : context(painter, userToPainter(bounds, isFlipped), isFlipped) {}
  Parts(std::unique_ptr<QPainter> painter, const NSView& view)
      : ownPainter(std::move(painter)),
        context(*ownPainter, userToPainter(view.bounds(), view.isFlipped()), view.isFlipped()) {}

  // The painter outlives the context, which puts it back as it was.
  std::unique_ptr<QPainter> ownPainter;
  QtGraphicsContext context;
  CurrentContextScope scope{&context};
};

QtPainting::QtPainting(QWidget& widget)
    : myParts(std::make_unique<Parts>(std::make_unique<QPainter>(&widget), *viewFor(widget))) {}

QtPainting::QtPainting(QPainter& painter, double height, YAxis yAxis)
    : myParts(std::make_unique<Parts>(painter, CGRect(0, 0, 0, height), yAxis == YAxis::Downwards)) {}

QtPainting::~QtPainting() = default;

NSGraphicsContext& QtPainting::context() const { return myParts->context; }

}  // namespace kelvane
