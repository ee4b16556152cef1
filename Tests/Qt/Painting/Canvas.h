#pragma once

#include <QImage>
#include <QPainter>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Desktop/NSImage.h"
#include "Qt/QtPainting.h"

namespace kelvane {

// A transparent picture to draw in with the library, whose pixels can be looked at.
class Canvas {
 public:
  Canvas(int width, int height, double scale = 1, QtPainting::YAxis yAxis = QtPainting::YAxis::Upwards)
      : image(static_cast<int>(std::round(width * scale)), static_cast<int>(std::round(height * scale)),
              QImage::Format_ARGB32_Premultiplied),
        myHeight(height),
        myScale(scale),
        myYAxis(yAxis) {
    image.fill(Qt::transparent);
  }

  // Calls `draw` with the context, which is the current one.
  template <class Draw>
  Canvas& draw(Draw draw) {
    QPainter painter(&image);
    painter.scale(myScale, myScale);
    const QtPainting painting(painter, myHeight, myYAxis);
    draw(painting.context());
    return *this;
  }

  // Rows from the top: '.' for a transparent pixel, a tenth of the alpha as a digit for a half-transparent one, and for
  // an opaque one K, W, R, G, B or, for other colours, '?'.
  std::vector<std::string> rows() const {
    std::vector<std::string> rows;
    for (int y = 0; y < image.height(); ++y) {
      std::string& row = rows.emplace_back();
      for (int x = 0; x < image.width(); ++x) row += shown(image.pixel(x, y));
    }
    return rows;
  }

  QImage image;

 private:
  static char shown(QRgb pixel) {
    if (qAlpha(pixel) == 0) return '.';
    if (qAlpha(pixel) < 250) return static_cast<char>('0' + (qAlpha(pixel) * 10 + 127) / 255);
    constexpr std::pair<QRgb, char> colours[] = {
        {0, 'K'}, {0xF0F0F0, 'W'}, {0xF00000, 'R'}, {0x00F000, 'G'}, {0x0000F0, 'B'}};
    for (const auto& [colour, letter] : colours)
      if ((pixel & 0xF0F0F0U) == colour) return letter;
    return '?';
  }

  double myHeight;
  double myScale;
  QtPainting::YAxis myYAxis;
};

// A bitmap of these pixels, 0xAARRGGBB with alpha multiplied in, a point each.
inline Ref<NSBitmapImageRep> bitmapOfPixels(std::vector<std::uint32_t> pixels, std::int64_t width) {
  const auto owner = std::make_shared<const std::vector<std::uint32_t>>(std::move(pixels));
  const auto height = static_cast<std::int64_t>(owner->size()) / width;
  return std::make_shared<NSBitmapImageRep>(
      BitmapPixels{std::shared_ptr<const std::uint32_t>(owner, owner->data()), width, height, width});
}

// A bitmap of one colour.
inline Ref<NSBitmapImageRep> bitmapOf(std::int64_t width, std::int64_t height, std::uint32_t color = 0xFFFF0000) {
  return bitmapOfPixels(std::vector<std::uint32_t>(static_cast<std::size_t>(width * height), color), width);
}

inline Ref<NSImage> imageOf(std::initializer_list<Ref<NSImageRep>> representations) {
  auto image = std::make_shared<NSImage>();
  for (const auto& representation : representations) image->addRepresentation(representation);
  return image;
}

}  // namespace kelvane
