#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QTransform>
#include <vector>

#include "Platform/Desktop/NSGraphicsContext.h"

namespace kelvane {

class TextLayout;

// Paints with a QPainter, which it leaves as it found it. The surface may hold something already, which is drawn over.
class QtGraphicsContext final : public NSGraphicsContext {
 public:
  // User space goes to the painter's coordinates by `userToPainter`, and is flipped where that leaves y downwards.
  QtGraphicsContext(QPainter& painter, const QTransform& userToPainter, bool isFlipped);
  ~QtGraphicsContext() override;

  void saveGraphicsState() override;
  void restoreGraphicsState() override;

  bool isFlipped() const override { return myState.isFlipped; }
  // Device pixels are counted from the lower left corner of the surface.
  NSAffineTransform userSpaceToDeviceSpaceTransform() const override;
  void concatTransform(const NSAffineTransform& transform) override;

  void clipToPath(const NSBezierPath& path) override;
  void clipToRect(const CGRect& rect) override;

  void setFillColor(const NSColor& color) override;
  void setStrokeColor(const NSColor& color) override;
  void setAlpha(double alpha) override;

  void fillPath(const NSBezierPath& path) override;
  void strokePath(const NSBezierPath& path) override;
  void clearRect(const CGRect& rect) override;

  void drawRepresentation(const NSImageRep& representation, const CGRect& inRect, const CGRect& fromRect,
                          NSCompositingOperation operation, double fraction) override;

  void drawText(TextView text, const CGPoint& atPoint, const NSDictionary& attributes) override;
  void drawText(TextView text, const CGRect& inRect, std::int64_t options, const NSDictionary& attributes) override;

 private:
  struct State {
    QColor fillColor = Qt::black;
    QColor strokeColor = Qt::black;
    double alpha = 1;
    bool isFlipped = false;
    // No transform of numbers leads to the surface.
    bool isNowhere = false;
  };

  void applyTransform(const QTransform& transform);
  // With y downwards from the upper edge of `rect`, whichever way user space has it. Between saving and restoring.
  void goToUpperLeft(const CGRect& rect);
  void drawLayout(const TextLayout& layout, const CGPoint& upperLeft);
  // `image` holds pixels for all of `rect`, of which those of `from` are drawn.
  void drawImage(const QImage& image, const CGRect& rect, const QRectF& from, NSCompositingOperation operation,
                 double alpha);
  void drawDarker(const QImage& image, const QRectF& to, const QRectF& from, double alpha);
  void drawDirectly(const NSImageRep& representation, const CGRect& inRect, const CGRect& fromRect);
  // What a representation without pixels draws, in as many as the surface has for it; null when these are too many.
  QImage drawnApart(const NSImageRep& representation, const CGRect& inRect, const CGRect& fromRect) const;
  // How many device pixels a rectangle takes along its sides.
  QSizeF deviceSize(const CGRect& rect) const;

  QPainter& myPainter;
  double mySurfaceHeight;
  double mySurfaceOpacity;
  State myState;
  std::vector<State> mySavedStates;
};

}  // namespace kelvane
