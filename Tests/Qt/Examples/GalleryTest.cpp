#include <QImage>
#include <QProcess>

#include "Support/Testing.h"

namespace {

constexpr int tile = 32;

// How far two tiles are apart: the mean difference of their components.
double difference(const QImage& a, const QImage& b, const QPoint& corner) {
  double sum = 0;
  for (int y = corner.y(); y < corner.y() + tile; ++y)
    for (int x = corner.x(); x < corner.x() + tile; ++x) {
      const QRgb one = a.pixel(x, y);
      const QRgb other = b.pixel(x, y);
      sum += std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other)) +
             std::abs(qBlue(one) - qBlue(other));
    }
  return sum / (3.0 * tile * tile);
}

struct Comparison {
  double worst = 0;
  QPoint where;
};

Comparison compared(const QImage& a, const QImage& b) {
  Comparison comparison;
  for (int y = 0; y + tile <= a.height(); y += tile)
    for (int x = 0; x + tile <= a.width(); x += tile)
      if (const double here = difference(a, b, {x, y}); here > comparison.worst) comparison = {here, {x, y}};
  return comparison;
}

// What the README shows is what is drawn. Another build of the font renderer may shade letters a little differently,
// but nothing may move by half a pixel or change its colour.
TEST(Gallery, LooksAsInTheDocumentation) {
  constexpr double tolerance = 1;
  const QImage golden(QStringLiteral(KELVANE_SOURCE_DIR "/Documentation/gallery.png"));
  ASSERT_FALSE(golden.isNull());
  const TemporaryFolder folder;
  const QString path = QString::fromStdString(folder.path("gallery.png"));
  ASSERT_EQ(QProcess::execute(QStringLiteral(KELVANE_GALLERY), {path}), 0);
  const QImage drawn(path);
  ASSERT_EQ(drawn.size(), golden.size());
  const Comparison comparison = compared(drawn, golden);
  EXPECT_LT(comparison.worst, tolerance) << "at " << comparison.where.x() << ", " << comparison.where.y()
                                         << "; ./kelvane gallery draws it anew";
  // The measure itself: a shift by a pixel is noticed.
  EXPECT_GT(compared(drawn, golden.copy(QRect(QPoint(0, 1), golden.size()))).worst, tolerance * 10);
  EXPECT_NE(QProcess::execute(QStringLiteral(KELVANE_GALLERY), {QStringLiteral("/no/such/folder/gallery.png")}), 0);
}

}  // namespace
