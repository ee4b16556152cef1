#include "Window/Pictures.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QTextDocument>
#include <memory>

#include "Platform/Desktop/NSImageRep.h"
#include "Window/StyledDocument.h"

namespace notebook {
namespace {

using kelvane::BitmapPixels;
using kelvane::NSBitmapImageRep;
using kelvane::NSImage;
using kelvane::Ref;

constexpr QSizeF paper(595, 842);  // A4 in points
constexpr double margin = 56;
constexpr double pixelsPerPoint = 2;

}  // namespace

Ref<NSImage> imageOf(const QImage& picture) {
  const auto kept = std::make_shared<QImage>(picture.convertToFormat(QImage::Format_ARGB32_Premultiplied));
  BitmapPixels pixels;
  pixels.data = {kept, reinterpret_cast<const std::uint32_t*>(kept->constBits())};
  pixels.pixelsWide = kept->width();
  pixels.pixelsHigh = kept->height();
  pixels.pixelsPerRow = kept->bytesPerLine() / static_cast<qsizetype>(sizeof(std::uint32_t));
  auto image = std::make_shared<NSImage>();
  auto bitmap = std::make_shared<NSBitmapImageRep>(pixels);
  bitmap->setSize({kept->width() / picture.devicePixelRatio(), kept->height() / picture.devicePixelRatio()});
  image->addRepresentation(bitmap);
  return image;
}

QPixmap pixmapOf(const NSImage& image) {
  for (const auto& representation : image.representations()) {
    const auto bitmap = kelvane::as<NSBitmapImageRep>(representation);
    if (!bitmap || !bitmap->pixels().data) continue;
    const BitmapPixels& pixels = bitmap->pixels();
    const QImage picture(reinterpret_cast<const uchar*>(pixels.data.get()), static_cast<int>(pixels.pixelsWide),
                         static_cast<int>(pixels.pixelsHigh),
                         static_cast<qsizetype>(pixels.pixelsPerRow) * static_cast<qsizetype>(sizeof(std::uint32_t)),
                         QImage::Format_ARGB32_Premultiplied);
    QPixmap pixmap = QPixmap::fromImage(picture.copy());
    if (bitmap->size().width > 0)
      pixmap.setDevicePixelRatio(static_cast<double>(pixels.pixelsWide) / bitmap->size().width);
    return pixmap;
  }
  return {};
}

Ref<NSImage> firstPage(const Ref<kelvane::NSTextStorage>& note) {
  // Not what the window shows, which has its zoom.
  QTextDocument page;
  StyledDocument(page).setText(note);
  page.setPageSize(paper);
  page.setDocumentMargin(margin);
  QImage picture((paper * pixelsPerPoint).toSize(), QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(pixelsPerPoint);
  picture.fill(Qt::white);
  QPainter painter(&picture);
  painter.setClipRect(QRectF(QPointF(), paper));
  QAbstractTextDocumentLayout::PaintContext context;
  context.palette.setColor(QPalette::Text, Qt::black);
  page.documentLayout()->draw(&painter, context);
  painter.end();
  return imageOf(picture);
}

}  // namespace notebook
