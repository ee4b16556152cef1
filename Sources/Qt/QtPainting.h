#pragma once

#include <memory>

#include "Platform/Desktop/NSGraphicsContext.h"
#include "Platform/Foundation/Export.h"

class QPainter;
class QWidget;

namespace kelvane {

// Lets a host draw with the library where Qt paints: as long as this lives, it is the current context.
//
// ```cpp
// class Plate : public QWidget {
//   void paintEvent(QPaintEvent*) override {
//     const QtPainting painting(*this);
//     NSBezierPathExtensions::bezierPathWithPlateInRect({4, 4, 100, 20}).fill();
//   }
// };
// ```
//
// Main thread only.
class KELVANE_EXPORT QtPainting {
 public:
  enum class YAxis { Upwards, Downwards };

  // Within `widget`'s paintEvent, in the own coordinates of its view (viewFor in QtDesktop.h): y grows upwards from the
  // lower left corner, unless the view is flipped (setViewFlipped), or its origin elsewhere (translateOriginToPoint).
  explicit QtPainting(QWidget& widget);
  // With a painter that is active and stays so: in its coordinates as they are now, with y upwards from `height` units
  // below its origin; with y downwards, the context is flipped. It is left as it was found. A height that is no number
  // leaves no place to draw in.
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
