#include "Qt/Widgets/QtScreens.h"

#include <QGuiApplication>

#include "Qt/Widgets/AdapterCache.h"
#include "Qt/Widgets/Flip.h"

namespace kelvane {
namespace {

class QtScreen final : public NSScreen {
 public:
  explicit QtScreen(QScreen& screen) : myScreen(&screen) {
    remember();
    // What is known of it when it goes is what stays.
    QObject::connect(&screen, &QScreen::geometryChanged, [this] { remember(); });
    QObject::connect(&screen, &QScreen::availableGeometryChanged, [this] { remember(); });
  }

  CGRect frame() const override {
    remember();
    return myFrame;
  }
  CGRect visibleFrame() const override {
    remember();
    return myVisibleFrame;
  }

 private:
  void remember() const {
    if (!myScreen) return;
    myFrame = rectFromQt(myScreen->geometry(), lowerLeftOfPlane());
    myVisibleFrame = rectFromQt(myScreen->availableGeometry(), lowerLeftOfPlane());
  }

  QPointer<QScreen> myScreen;
  mutable CGRect myFrame;
  mutable CGRect myVisibleFrame;
};

}  // namespace

QPointF lowerLeftOfPlane() {
  const QScreen* const primary = QGuiApplication::primaryScreen();
  // Not bottomLeft(), which is the last row of pixels.
  return primary ? QRectF(primary->geometry()).bottomLeft() : QPointF();
}

Ref<NSScreen> screenOf(QScreen* screen) {
  static auto& cache = *new AdapterCache<NSScreen>;
  if (!screen) return nullptr;
  return cache.adapterOf(*screen, [&] { return std::make_shared<QtScreen>(*screen); });
}

std::vector<Ref<NSScreen>> allScreens() {
  std::vector<Ref<NSScreen>> result;
  for (QScreen* const screen : QGuiApplication::screens()) result.push_back(screenOf(screen));
  return result;
}

}  // namespace kelvane
