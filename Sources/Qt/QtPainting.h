#pragma once

#include <memory>

#include "Platform/Desktop/NSGraphicsContext.h"
#include "Platform/Foundation/Export.h"

class QPainter;
class QWidget;

namespace kelvane {

// Lets a host draw with the library where Qt paints: as long as this lives, it is the current context.
//
//   void Plate::paintEvent(QPaintEvent*) {
//     const kelvane::QtPainting painting(*this);
//     NSBezierPathExtensions::bezierPathWithPlateInRect({4, 4, 100, 20}).fill();
//   }
//
// Main thread only, but for images, which are painted on any thread.
class KELVANE_EXPORT QtPainting {
 public:
  enum class YAxis { Upwards, Downwards };

  // Within `widget`'s paintEvent. (0, 0) is its lower left corner, or its upper left one with y downwards, and the
  // context flipped.
  explicit QtPainting(QWidget& widget, YAxis yAxis = YAxis::Upwards);
  // With a painter that is active and stays so: in its coordinates as they are now, with y upwards from `height` units
  // below its origin. It is left as it was found.
  QtPainting(QPainter& painter, double height, YAxis yAxis = YAxis::Upwards);
  ~QtPainting();
  QtPainting(const QtPainting&) = delete;
  QtPainting& operator=(const QtPainting&) = delete;

  NSGraphicsContext& context() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> myParts;
};

}  // namespace kelvane
