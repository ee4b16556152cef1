#include "Qt/Painting/QtOffscreenImage.h"

#include <QImage>
#include <QPainter>
#include <cmath>
#include <utility>

#include "Qt/Painting/Conversions.h"
#include "Qt/Painting/Pixels.h"
#include "Qt/Painting/QtGraphicsContext.h"

namespace kelvane {
namespace {

class QtOffscreenImage final : public OffscreenImage {
 public:
  QtOffscreenImage(QImage image, const CGSize& size)
      : myImage(std::move(image)),
        mySize(size),
        myPainter(&myImage),
        myContext(new QtGraphicsContext(myPainter, userToPixels(), false)) {}

  NSGraphicsContext& context() override { return *myContext; }
  Ref<NSBitmapImageRep> takeBitmap() override {
    myContext.reset();
    myPainter.end();
    return bitmapOf(std::move(myImage), mySize);
  }

 private:
  QTransform userToPixels() const {
    return {myImage.width() / mySize.width, 0, 0, -myImage.height() / mySize.height, 0, double(myImage.height())};
  }

  QImage myImage;
  CGSize mySize;
  QPainter myPainter;
  std::unique_ptr<QtGraphicsContext> myContext;
};

}  // namespace

std::unique_ptr<OffscreenImage> makeQtOffscreenImage(const CGSize& size, double pixelsPerPoint) {
  if (!hasArea({{}, size})) return nullptr;
  // What only computing has made more than a whole number is one.
  const double width = std::ceil(size.width * pixelsPerPoint - 1e-6);
  const double height = std::ceil(size.height * pixelsPerPoint - 1e-6);
  if (!(width >= 1 && height >= 1 && width * height <= static_cast<double>(largestPixelCount))) return nullptr;
  QImage image(static_cast<int>(width), static_cast<int>(height), QImage::Format_ARGB32_Premultiplied);
  if (image.isNull()) return nullptr;
  image.fill(Qt::transparent);
  return std::make_unique<QtOffscreenImage>(std::move(image), size);
}

}  // namespace kelvane
