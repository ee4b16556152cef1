#include "Qt/Painting/QtImageCodec.h"

#include <QBuffer>
#include <QByteArray>
#include <QColorSpace>
#include <QIODevice>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "Platform/Foundation/Boxing.h"
#include "Qt/Painting/JPEGEncoder.h"
#include "Qt/Painting/Pixels.h"

namespace kelvane {
namespace {

using namespace std::string_view_literals;

constexpr double inchesPerMeter = 39.3700787401574803;
constexpr double pointsPerInch = 72;
// Stands for a resolution that a file does not tell: Qt would put in the screen's.
constexpr int untold = -1;
// In megabytes: room for 16 bits a component.
constexpr int allocationLimit = static_cast<int>(largestPixelCount * 8 >> 20);
// Each image of a TIFF file is looked for from the file's beginning, so that their number counts twice.
constexpr int mostImages = 1000;
constexpr int lzwCompression = 1;

// By what the bytes begin with; only these formats are tried, with a reader of their own.
const char* formatOf(std::string_view bytes) {
  constexpr std::pair<std::string_view, const char*> beginnings[] = {
      {"\x89PNG\r\n\x1A\n"sv, "png"}, {"\xFF\xD8\xFF"sv, "jpeg"}, {"II*\0"sv, "tiff"}, {"MM\0*"sv, "tiff"},
      {"II+\0\x08\0"sv, "tiff"},      {"MM\0+\0\x08"sv, "tiff"}};
  for (const auto& [beginning, format] : beginnings)
    if (bytes.starts_with(beginning)) return format;
  return nullptr;
}

// A JPEG file that was cut off would be read as far as it goes, and grey from there. Its end mark stands somewhere
// behind the header of its image; what comes before may hold a small picture with an end of its own.
bool isWholeJPEG(std::string_view bytes) {
  std::size_t place = 2;
  while (place + 4 <= bytes.size() && bytes[place] == '\xFF' && bytes[place + 1] != '\xDA') {
    const auto high = static_cast<unsigned char>(bytes[place + 2]);
    const auto low = static_cast<unsigned char>(bytes[place + 3]);
    // Marks may be stuffed with more of their first byte.
    place += bytes[place + 1] == '\xFF' ? 1U : 2U + high * 256U + low;
  }
  return place < bytes.size() && bytes.find("\xFF\xD9"sv, place) != std::string_view::npos;
}

// Bytes to be read where they are. Unlike QBuffer it lets damaged files seek behind the end, where nothing is, without
// a word on standard error.
class BytesDevice : public QIODevice {
 public:
  explicit BytesDevice(std::string_view bytes) : myBytes(bytes) { open(QIODevice::ReadOnly | QIODevice::Unbuffered); }
  qint64 size() const override { return static_cast<qint64>(myBytes.size()); }

 protected:
  qint64 readData(char* to, qint64 count) override {
    if (pos() < 0 || pos() >= size()) return 0;
    return static_cast<qint64>(myBytes.copy(to, static_cast<std::size_t>(count), static_cast<std::size_t>(pos())));
  }
  qint64 writeData(const char*, qint64) override { return -1; }

 private:
  std::string_view myBytes;
};

bool isNearlySRGB(const QColorSpace& space) {
  if (space.primaries() != QColorSpace::Primaries::SRgb) return false;
  // Files that mean sRGB often tell the exponent alone.
  return space.transferFunction() == QColorSpace::TransferFunction::SRgb ||
         (space.transferFunction() == QColorSpace::TransferFunction::Gamma && std::abs(space.gamma() - 2.2F) < 0.05F);
}

double pointsFor(int pixels, int dotsPerMeter, int dotsPerMeterElsewhere) {
  if (dotsPerMeter <= 0) dotsPerMeter = dotsPerMeterElsewhere;
  if (dotsPerMeter <= 0) return pixels;
  const double dotsPerInch = dotsPerMeter / inchesPerMeter;
  // What Qt tells is whole, and cut where a file tells dots per inch. People mean whole dots per inch.
  const double whole = std::round(dotsPerInch);
  return pixels * pointsPerInch / (std::abs(dotsPerInch - whole) * inchesPerMeter <= 1 ? whole : dotsPerInch);
}

Ref<NSImageRep> nextImage(QImageReader& reader, std::int64_t& pixelsLeft) {
  const QSize size = reader.size();
  if (size.isEmpty()) return nullptr;
  pixelsLeft -= std::int64_t{size.width()} * size.height();
  if (pixelsLeft < 0) return nullptr;
  // Readers take an image of the right kind as it is, and put in a resolution only if the file tells one.
  QImage image(size, reader.imageFormat());
  // Nothing is in that memory yet, and Qt does not hold what it is given against its limit.
  if (image.sizeInBytes() > qsizetype{allocationLimit} << 20) return nullptr;
  image.setDotsPerMeterX(untold);
  image.setDotsPerMeterY(untold);
  const bool isTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
  if (!reader.read(&image) || image.isNull()) return nullptr;
  int dotsX = image.dotsPerMeterX();
  int dotsY = image.dotsPerMeterY();
  if (isTurned) std::swap(dotsX, dotsY);
  const CGSize points{pointsFor(image.width(), dotsX, dotsY), pointsFor(image.height(), dotsY, dotsX)};
  if (image.colorSpace().isValid() && !isNearlySRGB(image.colorSpace())) {
    // Kinds of fewer bits cannot hold what comes out.
    if (image.depth() < 32) image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    image.convertToColorSpace(QColorSpace(QColorSpace::SRgb));
  }
  return bitmapOf(std::move(image), points);
}

int dotsPerMeter(std::int64_t pixels, double points) {
  const double dots = std::round(static_cast<double>(pixels) / points * pointsPerInch * inchesPerMeter);
  return dots >= 1 && dots <= 1e9 ? static_cast<int>(dots) : 2835;
}

Ref<NSData> dataOf(const char* format, const NSBitmapImageRep& bitmap) {
  QImage image = isOpaque(bitmap) ? opaqueImageOver(bitmap) : imageOver(bitmap);
  if (image.isNull()) return nullptr;
  image.setDotsPerMeterX(dotsPerMeter(bitmap.pixelsWide(), bitmap.size().width));
  image.setDotsPerMeterY(dotsPerMeter(bitmap.pixelsHigh(), bitmap.size().height));
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, format);
  if (format == "tiff"sv) writer.setCompression(lzwCompression);
  if (!writer.write(image)) return nullptr;
  return std::make_shared<NSData>(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
}

Ref<NSData> JPEGDataOf(const NSBitmapImageRep& bitmap, const NSDictionary& properties) {
  JPEGOptions options;
  if (const auto factor = as<NSNumber>(properties.objectForKey(NSImageCompressionFactor)))
    options.compressionFactor = unbox<float>(factor);
  if (const auto progressive = as<NSNumber>(properties.objectForKey(NSImageProgressive)))
    options.isProgressive = unbox<bool>(progressive);
  std::vector<std::uint8_t> bytes = encodeJPEG(bitmap, options);
  return bytes.empty() ? nullptr : std::make_shared<NSData>(std::move(bytes));
}

}  // namespace

QtImageCodec::QtImageCodec() {
  // 0 is no limit.
  const int limit = QImageReader::allocationLimit();
  if (limit != 0 && limit < allocationLimit) QImageReader::setAllocationLimit(allocationLimit);
}

std::vector<Ref<NSImageRep>> QtImageCodec::decode(std::span<const std::uint8_t> bytes) {
  const std::string_view view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const char* const format = formatOf(view);
  if (!format || (format == "jpeg"sv && !isWholeJPEG(view))) return {};
  BytesDevice device(view);
  QImageReader reader(&device, format);
  reader.setAutoTransform(true);
  // Asked before anything else: once it has read an image, the reader of TIFF files finds no more.
  const int count = reader.imageCount();
  if (count > mostImages) return {};
  std::vector<Ref<NSImageRep>> images;
  std::int64_t pixelsLeft = largestPixelCount;
  for (int i = 0; i < count; ++i) {
    if (i > 0 && !reader.jumpToNextImage()) return {};
    Ref<NSImageRep> image = nextImage(reader, pixelsLeft);
    if (!image) return {};
    images.push_back(std::move(image));
  }
  return images;
}

Ref<NSData> QtImageCodec::encode(const NSBitmapImageRep& image, NSBitmapImageFileType type,
                                 const NSDictionary& properties) {
  switch (type) {
    case NSBitmapImageFileType::TIFF:
      return dataOf("tiff", image);
    case NSBitmapImageFileType::PNG:
      return dataOf("png", image);
    case NSBitmapImageFileType::JPEG:
      return JPEGDataOf(image, properties);
  }
  return nullptr;
}

}  // namespace kelvane
