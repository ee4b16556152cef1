#pragma once

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <QWidget>
#include <chrono>
#include <functional>
#include <utility>

namespace kelvane {

inline void pressKey(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  for (const QEvent::Type kind : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(kind, key, modifiers);
    QCoreApplication::sendEvent(&widget, &event);
  }
}

inline void click(QWidget& widget, const QPoint& place) {
  for (const QEvent::Type kind : {QEvent::MouseMove, QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    const Qt::MouseButton button = kind == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held = kind == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
    QMouseEvent event(kind, place, widget.mapToGlobal(place), button, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
  }
}

// Acts as a user who sees to it again and again, while somebody else waits.
class SyntheticUser {
 public:
  explicit SyntheticUser(std::function<void()> act) {
    QObject::connect(&myTimer, &QTimer::timeout, std::move(act));
    myTimer.start(std::chrono::milliseconds(1));
  }

 private:
  QTimer myTimer;
};

}  // namespace kelvane
