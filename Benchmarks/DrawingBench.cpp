// Badges, outlines, JPEG files and the fonts of styled text.

#ifdef BENCH_DESKTOP

// The last one needs the others before it.
// clang-format off
#include <cstddef>
#include <cstdio>
#include <jpeglib.h>
// clang-format on

#include <QBuffer>
#include <QFontMetricsF>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QPainterPath>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "Extensions/NSBezierPath-QNExtensions.h"
#include "Extensions/NSImage-QNExtensions.h"
#include "Extensions/NSTextStorage-QNExtensions.h"
#include "Graphics/QNBadgeImage.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Qt/QtPainting.h"
#include "Support/QtApplication.h"
#include "Support/Row.h"

namespace kelvane::bench {
namespace {

// --- Badges

constexpr std::int64_t badgeCount = 1000;

std::int64_t widthOfBadges() {
  static const auto& badge = *new QNBadgeImage(QNBadgeImage::badgeWithDragImages());
  std::int64_t sum = 0;
  for (std::int64_t number = 1; number <= badgeCount; ++number)
    sum += static_cast<std::int64_t>(badge.imageWithNumber(number)->size().width);
  return sum;
}

const std::vector<QImage>& qtPictures() {
  static const auto& pictures = *[] {
    auto* const made = new std::vector<QImage>;
    for (int number = 1; number <= 4; ++number) {
      const Text name = u"QNDragBadge" + textFromUTF8(std::to_string(number));
      QImage picture(QString::fromStdU16String(*NSBundle::libraryBundle().pathForResource(name, u"png")));
      picture.convertTo(QImage::Format_ARGB32_Premultiplied);
      picture.setDevicePixelRatio(2);
      made->push_back(std::move(picture));
    }
    return made;
  }();
  return pictures;
}

std::int64_t widthOfQtBadges() {
  QFont font(QStringLiteral("DejaVu Sans"));
  font.setPixelSize(12);
  font.setBold(true);
  const QFontMetricsF metrics(font);
  std::int64_t sum = 0;
  for (std::int64_t number = 1; number <= badgeCount; ++number) {
    const QString digits = QString::number(number);
    const double width = metrics.horizontalAdvance(digits);
    const QImage* picture = &qtPictures().back();
    for (const QImage& candidate : qtPictures())
      if (candidate.width() / 2 < picture->width() / 2 && candidate.width() / 2.0 >= width + 12) {
        picture = &candidate;
        break;
      }
    const QSize size = picture->size() / 2;
    QImage badge(size, QImage::Format_ARGB32_Premultiplied);
    badge.fill(Qt::transparent);
    QPainter painter(&badge);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.drawImage(QPointF(0, 0), *picture);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(QPointF(0, 0), QSizeF(size)), Qt::AlignCenter, digits);
    sum += size.width();
  }
  return sum;
}

const Subject badges([] {
  needApplication();
  Row("badge images")
      .ours(widthOfBadges)
      .peer("Qt", widthOfQtBadges)
      .reach(0.5)
      .per("badge", static_cast<std::size_t>(badgeCount));
});

// --- Outlines

constexpr int outlineCount = 10'000;

QImage& canvas() {
  static auto& image = *new QImage(400, 400, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::white);
  return image;
}

template <class Draw>
void forEachPlace(Draw draw) {
  for (int i = 0; i < outlineCount; ++i) draw(i % 37 * 8.25, i % 41 * 8.25);
}

// How black the picture is, in percent.
int blackness(const QImage& image) {
  std::int64_t sum = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) sum += 255 - qRed(image.pixel(x, y));
  return static_cast<int>(sum * 100 / (255 * 400 * 400));
}

int blacknessOfOutlines() {
  QImage& image = canvas();
  QPainter painter(&image);
  {
    const QtPainting painting(painter, 400);
    forEachPlace([](double x, double y) {
      NSBezierPath path = NSBezierPathExtensions::bezierPathWithRoundedRect({x + 2, y + 2, 60, 24}, 8);
      path.setLineWidth(2);
      path.stroke();
    });
  }
  return blackness(image);
}

int blacknessOfQtOutlines() {
  QImage& image = canvas();
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Qt::black, 2, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
  forEachPlace([&](double x, double y) {
    QPainterPath path;
    path.addRoundedRect(QRectF(x + 2, 400 - (y + 26), 60, 24), 8, 8);
    painter.drawPath(path);
  });
  return blackness(image);
}

const Subject outlines([] {
  needApplication();
  Row("rounded outlines")
      .ours(blacknessOfOutlines)
      .peer("Qt", blacknessOfQtOutlines)
      .reach(0.5)
      .per("outline", outlineCount);
});

// --- JPEG files

constexpr int photographWidth = 6000;
constexpr int photographHeight = 4000;

const std::vector<std::uint32_t>& photograph() {
  static const auto& pixels = *[] {
    auto* const made = new std::vector<std::uint32_t>;
    made->reserve(std::size_t{photographWidth} * photographHeight);
    std::uint32_t grain = 1;
    for (std::uint32_t y = 0; y < photographHeight; ++y)
      for (std::uint32_t x = 0; x < photographWidth; ++x) {
        grain = grain * 1664525 + 1013904223;
        const std::uint32_t noise = grain >> 28U;
        made->push_back(0xFF000000U | (x * 240 / photographWidth + noise) << 16U |
                        (y * 240 / photographHeight + noise) << 8U | ((x / 64 + y / 64) % 2 * 120 + noise));
      }
    return made;
  }();
  return pixels;
}

const NSImage& photographImage() {
  static const auto& image = *[] {
    auto* const made = new NSImage;
    const std::shared_ptr<const std::uint32_t> data(photograph().data(), [](const std::uint32_t*) {});
    made->addRepresentation(
        std::make_shared<NSBitmapImageRep>(BitmapPixels{data, photographWidth, photographHeight, photographWidth}));
    return made;
  }();
  return image;
}

std::vector<std::uint8_t> encodedDirectly() {
  jpeg_compress_struct info;
  jpeg_error_mgr errors;
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* bytes = nullptr;
  unsigned long length = 0;
  jpeg_mem_dest(&info, &bytes, &length);
  info.image_width = photographWidth;
  info.image_height = photographHeight;
  info.input_components = 4;
  info.in_color_space = JCS_EXT_BGRX;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, 80, TRUE);
  info.density_unit = 1;
  info.X_density = info.Y_density = 72;
  jpeg_start_compress(&info, TRUE);
  while (info.next_scanline < info.image_height) {
    auto* row = const_cast<std::uint32_t*>(photograph().data()) + std::size_t{info.next_scanline} * photographWidth;
    auto* samples = reinterpret_cast<JSAMPROW>(row);
    jpeg_write_scanlines(&info, &samples, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  std::vector<std::uint8_t> result(bytes, bytes + length);
  std::free(bytes);
  return result;
}

QByteArray encodedByQt() {
  QImage image(reinterpret_cast<const uchar*>(photograph().data()), photographWidth, photographHeight,
               QImage::Format_RGB32);
  image.setDotsPerMeterX(2835);
  image.setDotsPerMeterY(2835);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, "jpeg");
  writer.setQuality(80);
  writer.write(image);
  return bytes;
}

// All but the header that says the resolution, which may be told in more than one way.
template <class Bytes>
std::string pictureOf(const Bytes& bytes) {
  return std::string(bytes.begin() + 20, bytes.end());
}

const Subject files([] {
  needApplication();
  Row("JPEG of 24 megapixels")
      .ours([] { return JPGRepresentationWithCompression(photographImage(), 0.8); },
            [](const Ref<NSData>& data) { return pictureOf(data->bytes()); })
      .peer("libjpeg-turbo", encodedDirectly, pictureOf<std::vector<std::uint8_t>>)
      .peer("Qt", encodedByQt, pictureOf<QByteArray>)
      .reach(1 / 1.1);
});

// --- Fonts of styled text

constexpr std::size_t runCount = 100'000;

NSMutableAttributedString styledText() {
  NSMutableAttributedString text(Text(runCount * 4, u'x'));
  for (std::size_t i = 0; i < runCount; ++i)
    text.addAttribute(NSFontAttributeName,
                      box(NSFont::fontWithFamily(u"DejaVu Sans", i % 2 ? NSBoldFontMask : 0, 5, 10.0 + double(i % 7))),
                      {i * 4, 4});
  return text;
}

class Scaling {
 public:
  void prepare() { *myText = *mySample; }
  std::size_t operator()() { return scaleAttributedStringUsingFactor(*myText, 1.5).runs().count(); }

 private:
  std::shared_ptr<NSTextStorage> mySample = std::make_shared<NSTextStorage>(styledText());
  std::shared_ptr<NSTextStorage> myText = std::make_shared<NSTextStorage>();
};

class QtScaling {
 public:
  void prepare() {
    myDocument = std::make_shared<QTextDocument>();
    myDocument->setUndoRedoEnabled(false);
    QTextCursor cursor(myDocument.get());
    cursor.beginEditBlock();
    for (std::size_t i = 0; i < runCount; ++i) {
      QTextCharFormat format;
      format.setFontPointSize(10.0 + double(i % 7));
      format.setFontWeight(i % 2 ? QFont::Bold : QFont::Normal);
      cursor.insertText(QStringLiteral("xxxx"), format);
    }
    cursor.endEditBlock();
  }
  std::size_t operator()() {
    struct Fragment {
      int position;
      int length;
      QTextCharFormat format;
    };
    std::vector<Fragment> fragments;
    for (QTextBlock block = myDocument->begin(); block.isValid(); block = block.next())
      for (auto i = block.begin(); !i.atEnd(); ++i)
        fragments.push_back({i.fragment().position(), i.fragment().length(), i.fragment().charFormat()});
    QTextCursor cursor(myDocument.get());
    cursor.beginEditBlock();
    for (Fragment& fragment : fragments) {
      fragment.format.setFontPointSize(CGFloor(fragment.format.fontPointSize() * 1.5));
      cursor.setPosition(fragment.position);
      cursor.setPosition(fragment.position + fragment.length, QTextCursor::KeepAnchor);
      cursor.setCharFormat(fragment.format);
    }
    cursor.endEditBlock();
    return fragments.size();
  }

 private:
  std::shared_ptr<QTextDocument> myDocument;
};

const Subject fonts([] {
  needApplication();
  Row("scale fonts").ours(Scaling()).peer("Qt", QtScaling()).reach(2).per("run", runCount);
});

}  // namespace
}  // namespace kelvane::bench

#endif
