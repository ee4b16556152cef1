#include "Qt/Painting/QtGraphicsContext.h"

#include <QPaintDevice>
#include <QPainterPath>
#include <QPen>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <utility>
#include <variant>

#include "Platform/Desktop/NSImageRep.h"
#include "Platform/Desktop/NSStringDrawing.h"
#include "Platform/Desktop/PathCurves.h"
#include "Qt/Painting/Conversions.h"
#include "Qt/Painting/Pixels.h"
#include "Qt/Painting/TextLayout.h"

namespace kelvane {
namespace {

// The sharpest corners that are drawn to their point: ten times as long as the line is wide.
constexpr double miterLimit = 10;
// By how many pixels an outline may leave the curve that it stands for.
constexpr double curveTolerance = 0.25;

// A whole number, so that what is aligned from below is so from above.
double heightInPixels(const QPainter& painter) {
  const QPaintDevice* const device = painter.device();
  if (device->devType() != QInternal::Widget) return device->height();
  const QWidget& window = *static_cast<const QWidget*>(device)->window();
  return std::round(window.height() * window.devicePixelRatioF());
}

QPainterPath qtPath(const NSBezierPath& path) {
  struct Writer {
    void operator()(const PathMove& move) { made.moveTo(qtPoint(move.point)); }
    void operator()(const PathLine& line) { made.lineTo(qtPoint(line.point)); }
    void operator()(const PathCurve& curve) {
      made.cubicTo(qtPoint(curve.controlPoint1), qtPoint(curve.controlPoint2), qtPoint(curve.point));
    }
    void operator()(const PathClose&) { made.closeSubpath(); }
    // pathCurves leaves none of these.
    void operator()(const PathArc&) {}
    void operator()(const PathCorner&) {}
    QPainterPath made;
  } writer;
  writer.made.setFillRule(Qt::WindingFill);
  for (const PathElement& element : pathCurves(path.elements())) std::visit(writer, element);
  return std::move(writer.made);
}

QPainter::CompositionMode compositionMode(NSCompositingOperation operation) {
  switch (operation) {
    case NSCompositingOperation::Clear:
      return QPainter::CompositionMode_Clear;
    case NSCompositingOperation::Copy:
      return QPainter::CompositionMode_Source;
    case NSCompositingOperation::SourceIn:
      return QPainter::CompositionMode_SourceIn;
    case NSCompositingOperation::SourceOut:
      return QPainter::CompositionMode_SourceOut;
    case NSCompositingOperation::SourceAtop:
      return QPainter::CompositionMode_SourceAtop;
    case NSCompositingOperation::DestinationOver:
      return QPainter::CompositionMode_DestinationOver;
    case NSCompositingOperation::DestinationIn:
      return QPainter::CompositionMode_DestinationIn;
    case NSCompositingOperation::DestinationOut:
      return QPainter::CompositionMode_DestinationOut;
    case NSCompositingOperation::DestinationAtop:
      return QPainter::CompositionMode_DestinationAtop;
    case NSCompositingOperation::XOR:
      return QPainter::CompositionMode_Xor;
    case NSCompositingOperation::PlusLighter:
      return QPainter::CompositionMode_Plus;
    case NSCompositingOperation::SourceOver:
    case NSCompositingOperation::PlusDarker:
      break;  // the latter has a way of its own
  }
  return QPainter::CompositionMode_SourceOver;
}

// A copy whose alpha is multiplied.
QImage faded(const QImage& image, double alpha) {
  QImage copy = image.copy();
  QPainter painter(&copy);
  painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
  painter.fillRect(copy.rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha)));
  return copy;
}

bool isFinite(const QTransform& m) { return std::isfinite(m.m11() + m.m12() + m.m21() + m.m22() + m.dx() + m.dy()); }

double withinUnit(double number) { return std::isnan(number) ? 0 : std::clamp(number, 0.0, 1.0); }

}  // namespace

QtGraphicsContext::QtGraphicsContext(QPainter& painter, const QTransform& userToPainter, bool isFlipped)
    : myPainter(painter), mySurfaceHeight(heightInPixels(painter)), mySurfaceOpacity(painter.opacity()) {
  myState.isFlipped = isFlipped;
  myPainter.save();
  myPainter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
  myPainter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  applyTransform(userToPainter);
}

QtGraphicsContext::~QtGraphicsContext() {
  while (!mySavedStates.empty()) QtGraphicsContext::restoreGraphicsState();
  myPainter.restore();
}

void QtGraphicsContext::saveGraphicsState() {
  mySavedStates.push_back(myState);
  myPainter.save();
}

void QtGraphicsContext::restoreGraphicsState() {
  if (mySavedStates.empty()) return;
  myState = std::move(mySavedStates.back());
  mySavedStates.pop_back();
  myPainter.restore();
}

NSAffineTransform QtGraphicsContext::userSpaceToDeviceSpaceTransform() const {
  const QTransform toSurface = myPainter.deviceTransform();
  return NSAffineTransform({toSurface.m11(), -toSurface.m12(), toSurface.m21(), -toSurface.m22(), toSurface.dx(),
                            mySurfaceHeight - toSurface.dy()});
}

void QtGraphicsContext::concatTransform(const NSAffineTransform& transform) { applyTransform(qtTransform(transform)); }

void QtGraphicsContext::applyTransform(const QTransform& transform) {
  if (isFinite(transform))
    myPainter.setTransform(transform, true);
  else
    myState.isNowhere = true;
}

void QtGraphicsContext::clipToPath(const NSBezierPath& path) { myPainter.setClipPath(qtPath(path), Qt::IntersectClip); }

void QtGraphicsContext::clipToRect(const CGRect& rect) {
  QPainterPath path;
  if (hasArea(rect)) path.addRect(qtRect(rect));
  myPainter.setClipPath(path, Qt::IntersectClip);
}

void QtGraphicsContext::setFillColor(const NSColor& color) { myState.fillColor = qtColor(color); }

void QtGraphicsContext::setStrokeColor(const NSColor& color) { myState.strokeColor = qtColor(color); }

void QtGraphicsContext::setAlpha(double alpha) {
  myState.alpha = withinUnit(alpha);
  myPainter.setOpacity(myState.alpha * mySurfaceOpacity);
}

void QtGraphicsContext::fillPath(const NSBezierPath& path) {
  if (!myState.isNowhere) myPainter.fillPath(qtPath(path), myState.fillColor);
}

void QtGraphicsContext::strokePath(const NSBezierPath& path) {
  const double width = path.lineWidth();
  if (myState.isNowhere || !(width >= 0) || std::isinf(width)) return;
  QPen pen(myState.strokeColor, width, Qt::SolidLine, Qt::FlatCap, Qt::SvgMiterJoin);
  pen.setMiterLimit(miterLimit);
  const QSizeF unit = deviceSize({0, 0, 1, 1});
  const double scale = std::max(unit.width(), unit.height());
  if (!(scale > 0)) return;
  if (width == 0 || width * scale > 1) return myPainter.strokePath(qtPath(path), pen);
  // Qt draws such thin lines one by one, without their corners.
  QPainterPathStroker stroker(pen);
  stroker.setCurveThreshold(curveTolerance / scale);
  myPainter.fillPath(stroker.createStroke(qtPath(path)), myState.strokeColor);
}

void QtGraphicsContext::clearRect(const CGRect& rect) {
  if (myState.isNowhere || !hasArea(rect)) return;
  myPainter.setOpacity(1);
  myPainter.setCompositionMode(QPainter::CompositionMode_Clear);
  myPainter.fillRect(qtRect(rect), Qt::black);
  myPainter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  setAlpha(myState.alpha);
}

void QtGraphicsContext::goToUpperLeft(const CGRect& rect) {
  if (myState.isFlipped) {
    myPainter.translate(rect.origin.x, rect.origin.y);
  } else {
    myPainter.translate(rect.origin.x, rect.origin.y + rect.size.height);
    myPainter.scale(1, -1);
  }
}

QSizeF QtGraphicsContext::deviceSize(const CGRect& rect) const {
  const QTransform m = myPainter.deviceTransform();
  return {std::hypot(m.m11(), m.m12()) * rect.size.width, std::hypot(m.m21(), m.m22()) * rect.size.height};
}

void QtGraphicsContext::drawRepresentation(const NSImageRep& representation, const CGRect& inRect,
                                           const CGRect& fromRect, NSCompositingOperation operation, double fraction) {
  if (myState.isNowhere || !hasArea(inRect) || !hasArea(fromRect) || std::isnan(fraction)) return;
  const double alpha = withinUnit(fraction) * myState.alpha * mySurfaceOpacity;
  const NSBitmapImageRep* const bitmap = as<NSBitmapImageRep>(&representation);
  if (!bitmap) {
    if (operation == NSCompositingOperation::SourceOver && alpha == 1)
      return drawDirectly(representation, inRect, fromRect);
    const QImage image = drawnApart(representation, inRect, fromRect);
    if (!image.isNull()) drawImage(image, inRect, image.rect(), operation, alpha);
    return;
  }
  const QImage image = imageOver(*bitmap);
  const CGSize& size = bitmap->size();
  if (image.isNull() || !(size.width > 0) || !(size.height > 0)) return;
  // The rows of pixels begin at the top, the representation's own coordinates at the bottom.
  const double pixelsPerX = image.width() / size.width;
  const double pixelsPerY = image.height() / size.height;
  const QRectF from(fromRect.origin.x * pixelsPerX,
                    image.height() - (fromRect.origin.y + fromRect.size.height) * pixelsPerY,
                    fromRect.size.width * pixelsPerX, fromRect.size.height * pixelsPerY);
  drawImage(image, inRect, from, operation, alpha);
}

void QtGraphicsContext::drawImage(const QImage& image, const CGRect& rect, const QRectF& from,
                                  NSCompositingOperation operation, double alpha) {
  if (operation == NSCompositingOperation::SourceOver && alpha == 0) return;
  QImage source = image;
  QRectF part = from;
  // Painting looks at four pixels for each it paints; where it has to make one of more, all of them are to count.
  const QSizeF wanted = deviceSize(rect);
  if (wanted.width() * 2 < from.width() || wanted.height() * 2 < from.height()) {
    const QRect whole = from.intersected(image.rect()).toAlignedRect();
    if (whole.isEmpty()) return;
    const double x = std::min(1.0, std::ceil(wanted.width()) / from.width());
    const double y = std::min(1.0, std::ceil(wanted.height()) / from.height());
    const QSize size(std::max(1, qRound(whole.width() * x)), std::max(1, qRound(whole.height() * y)));
    source = (whole == image.rect() ? image : image.copy(whole))
                 .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    part = QTransform::fromScale(double(size.width()) / whole.width(), double(size.height()) / whole.height())
               .mapRect(from.translated(-whole.topLeft()));
  }
  const QRectF to(0, 0, rect.size.width, rect.size.height);
  myPainter.save();
  goToUpperLeft(rect);
  if (operation == NSCompositingOperation::PlusDarker) {
    drawDarker(source, to, part, alpha);
  } else {
    // Qt's alpha mixes what comes out with what was there before, which only comes to the same for this one.
    const bool isMixed = operation == NSCompositingOperation::SourceOver;
    myPainter.setOpacity(isMixed ? alpha : 1);
    myPainter.setCompositionMode(compositionMode(operation));
    myPainter.drawImage(to, isMixed || alpha == 1 ? source : faded(source, alpha), part);
  }
  myPainter.restore();
}

// max(0, S + D - 1) is what remains of white when both what S and what D lack of it are taken away.
void QtGraphicsContext::drawDarker(const QImage& image, const QRectF& to, const QRectF& from, double alpha) {
  QImage lacking(image.size(), QImage::Format_ARGB32_Premultiplied);
  lacking.fill(Qt::white);
  {
    QPainter painter(&lacking);
    painter.setOpacity(alpha);
    painter.drawImage(0, 0, image);
  }
  lacking.invertPixels(QImage::InvertRgb);
  myPainter.setOpacity(1);
  for (const bool isBack : {false, true}) {
    myPainter.setCompositionMode(QPainter::CompositionMode_Difference);
    myPainter.fillRect(to, Qt::white);
    if (isBack) break;
    myPainter.setCompositionMode(QPainter::CompositionMode_Plus);
    myPainter.drawImage(to, lacking, from);
  }
}

void QtGraphicsContext::drawDirectly(const NSImageRep& representation, const CGRect& inRect, const CGRect& fromRect) {
  const std::size_t depth = mySavedStates.size();
  saveGraphicsState();
  clipToRect(inRect);
  goToUpperLeft(inRect);
  // The representation's own space has y upwards.
  myPainter.translate(0, inRect.size.height);
  myPainter.scale(inRect.size.width / fromRect.size.width, -inRect.size.height / fromRect.size.height);
  myPainter.translate(-fromRect.origin.x, -fromRect.origin.y);
  myState = State();
  {
    const CurrentContextScope scope(this);
    representation.draw();
  }
  while (mySavedStates.size() > depth) restoreGraphicsState();
}

QImage QtGraphicsContext::drawnApart(const NSImageRep& representation, const CGRect& inRect,
                                     const CGRect& fromRect) const {
  const QSizeF size = deviceSize(inRect);
  if (!(std::ceil(size.width()) * std::ceil(size.height()) <= static_cast<double>(largestPixelCount))) return {};
  const int width = std::max(1, static_cast<int>(std::ceil(size.width())));
  const int height = std::max(1, static_cast<int>(std::ceil(size.height())));
  QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
  if (image.isNull()) return {};
  image.fill(Qt::transparent);
  QPainter painter(&image);
  QtGraphicsContext context(painter, QTransform(1, 0, 0, -1, 0, height), false);
  context.drawDirectly(representation, {0, 0, double(width), double(height)}, fromRect);
  return image;
}

void QtGraphicsContext::drawLayout(const TextLayout& layout, const CGPoint& upperLeft) {
  myPainter.save();
  goToUpperLeft({upperLeft, {}});
  layout.draw(myPainter);
  myPainter.restore();
}

void QtGraphicsContext::drawText(TextView text, const CGPoint& atPoint, const NSDictionary& attributes) {
  if (myState.isNowhere || text.empty() || !std::isfinite(atPoint.x) || !std::isfinite(atPoint.y)) return;
  const TextLayout layout(text, attributes);
  drawLayout(layout, {atPoint.x, atPoint.y + (isFlipped() ? 0 : layout.size().height)});
}

void QtGraphicsContext::drawText(TextView text, const CGRect& inRect, std::int64_t options,
                                 const NSDictionary& attributes) {
  if (myState.isNowhere || text.empty() || !hasFiniteEdges(inRect)) return;
  if (!(options & NSStringDrawingUsesLineFragmentOrigin)) {
    const TextLayout layout(text, attributes, TextLayout::unlimited, 1);
    const double ascent = layout.ascent();
    return drawLayout(layout, {inRect.origin.x, inRect.origin.y + (isFlipped() ? -ascent : ascent)});
  }
  if (!hasArea(inRect)) return;
  const TextLayout layout(text, attributes, inRect.size.width, inRect.size.height);
  drawLayout(layout, {inRect.origin.x, inRect.origin.y + (isFlipped() ? 0 : inRect.size.height)});
}

}  // namespace kelvane
