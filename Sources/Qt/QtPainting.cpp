#include "Qt/QtPainting.h"

#include <QPainter>
#include <QWidget>
#include <memory>
#include <optional>

#include "Qt/Painting/QtGraphicsContext.h"

namespace kelvane {
namespace {

QTransform userToPainter(double height, QtPainting::YAxis yAxis) {
  return yAxis == QtPainting::YAxis::Upwards ? QTransform(1, 0, 0, -1, 0, height) : QTransform();
}

}  // namespace

struct QtPainting::Parts {
  Parts(QPainter& painter, double height, YAxis yAxis)
      : context(painter, userToPainter(height, yAxis), yAxis == YAxis::Downwards) {}
  Parts(std::unique_ptr<QPainter> painter, double height, YAxis yAxis)
      : ownPainter(std::move(painter)), context(*ownPainter, userToPainter(height, yAxis), yAxis == YAxis::Downwards) {}

  std::unique_ptr<QPainter> ownPainter;
  QtGraphicsContext context;
  CurrentContextScope scope{&context};
};

QtPainting::QtPainting(QWidget& widget, YAxis yAxis)
    : myParts(std::make_unique<Parts>(std::make_unique<QPainter>(&widget), widget.height(), yAxis)) {}

QtPainting::QtPainting(QPainter& painter, double height, YAxis yAxis)
    : myParts(std::make_unique<Parts>(painter, height, yAxis)) {}

QtPainting::~QtPainting() = default;

NSGraphicsContext& QtPainting::context() const { return myParts->context; }

}  // namespace kelvane
