#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QWidget>
#include <limits>

#include "Qt/QtShadows.h"

namespace kelvane {
namespace {

// In the picture, where rows count downwards, a shadow to the upper right lies above the widget and right of it.
TEST(QtShadows, FallWhereTheLibrarySays) {
  QWidget window;
  window.setPalette(QPalette(Qt::white));
  window.resize(100, 100);
  QWidget box(&window);
  box.setGeometry(40, 40, 20, 20);
  box.setAutoFillBackground(true);
  box.setPalette(QPalette(Qt::white));
  NSShadow shadow;
  shadow.setShadowColor(NSColor::colorWithCalibratedWhite(0, 1));
  shadow.setShadowOffset({10, 10});
  setShadow(box, &shadow);
  const QImage picture = window.grab().toImage();
  EXPECT_LT(picture.pixelColor(65, 35).lightness(), 50);
  EXPECT_GT(picture.pixelColor(35, 65).lightness(), 200);
  // What is no number is no offset.
  constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
  shadow.setShadowOffset({notANumber, std::numeric_limits<double>::infinity()});
  shadow.setShadowBlurRadius(notANumber);
  setShadow(box, &shadow);
  EXPECT_GT(window.grab().toImage().pixelColor(65, 35).lightness(), 200);
  setShadow(box, nullptr);
  EXPECT_EQ(box.graphicsEffect(), nullptr);
}

}  // namespace
}  // namespace kelvane
