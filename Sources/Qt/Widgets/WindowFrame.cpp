#include "Qt/Widgets/WindowFrame.h"

#include <QEvent>
#include <QGuiApplication>
#include <QLayout>
#include <QScreen>
#include <QStyle>
#include <QWindow>
#include <algorithm>

#include "Qt/Widgets/Decoration.h"
#include "Qt/Widgets/Flip.h"

namespace kelvane {
namespace {

// How long after its first appearance a window's decoration may come.
constexpr int decorationTime = 1000;

int clientLength(double frameLength, int decoration) { return std::max(0, wholeUnit(frameLength) - decoration); }

// Qt's own largest length stands for no limit.
int largestClientLength(double frameLength, int decoration) {
  if (!(frameLength > 0 && frameLength < QWIDGETSIZE_MAX)) return QWIDGETSIZE_MAX;
  return clientLength(frameLength, decoration);
}

QSize withinLimits(const QSize& clientSize, const QWidget& window) {
  return clientSize.boundedTo(window.maximumSize()).expandedTo(window.minimumSize()).expandedTo({1, 1});
}

}  // namespace

WindowFrame::WindowFrame(QWidget& window) : myWindow(&window) {
  window.installEventFilter(this);
  QWindow* const handle = window.windowHandle();
  if (handle) handle->installEventFilter(this);
  if (handle && handle->isVisible() && !handle->isExposed()) myLastCall = QDeadlineTimer(QDeadlineTimer::Forever);
  connect(&myAnimation, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& frame) { apply(frame.toRect()); });
}

QRect WindowFrame::frame() const {
  if (!myWindow) return {};
  return isAwaited() && !isDecorationKnown(*myWindow) ? *myAwaitedFrame : frameGeometryOf(*myWindow);
}

void WindowFrame::setFrame(const QRect& frame, bool animate) {
  if (!myWindow) return;
  myAnimation.stop();
  const Qt::WindowStates filling = Qt::WindowMaximized | Qt::WindowFullScreen;
  if (myWindow->windowState() & filling) myWindow->setWindowState(myWindow->windowState() & ~filling);
  const QRect wanted = heldWithinLimits(frame);
  if (!animate || !canAnimateTo(wanted)) return apply(wanted);
  myAnimation.setStartValue(this->frame());
  myAnimation.setEndValue(wanted);
  myAnimation.setDuration(myWindow->style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, myWindow));
  myAnimation.start();
}

void WindowFrame::setMinSize(const CGSize& size) {
  if (std::isnan(size.width) || std::isnan(size.height)) return;
  myMinSize = size;
  applyLimits();
}

void WindowFrame::setMaxSize(const CGSize& size) {
  if (std::isnan(size.width) || std::isnan(size.height)) return;
  myMaxSize = size;
  applyLimits();
}

bool WindowFrame::eventFilter(QObject*, QEvent* event) {
  if (!myWindow) return false;
  switch (event->type()) {
    case QEvent::Show:
      // The window of the window system is there only now.
      if (QWindow* const handle = myWindow->windowHandle()) handle->installEventFilter(this);
      if (!isAwaited()) myAwaitedFrame.reset();
      myLastCall = QDeadlineTimer(QDeadlineTimer::Forever);
      break;
    case QEvent::Expose:
    case QEvent::Move:
    case QEvent::Resize:
      if (isDecorationKnown(*myWindow) && !myLastCall.hasExpired()) settle();
      break;
    case QEvent::Hide:
    case QEvent::Close:
      finishAnimation();
      break;
    default:
      break;
  }
  return false;
}

void WindowFrame::apply(const QRect& frame) {
  if (!myWindow) return;
  myAwaitedFrame = frame;
  myAssumedDecoration = decorationOf(*myWindow);
  const QRect client = frame.marginsRemoved(myAssumedDecoration);
  if (isDecorationKnown(*myWindow)) return myWindow->setGeometry(client);
  // Qt counts the place of a window without a decoration from the corner of the one that it will get.
  myWindow->move(frame.topLeft());
  myWindow->resize(client.size());
  myHiddenPlace = {myWindow->pos(), myWindow->size()};
}

void WindowFrame::applyLimits() {
  if (!myWindow) return;
  const QMargins decoration = decorationOf(*myWindow);
  const int width = decoration.left() + decoration.right();
  const int height = decoration.top() + decoration.bottom();
  if (myMaxSize)
    myWindow->setMaximumSize(largestClientLength(myMaxSize->width, width),
                             largestClientLength(myMaxSize->height, height));
  if (myMinSize)
    myWindow->setMinimumSize(clientLength(myMinSize->width, width), clientLength(myMinSize->height, height));
}

// Whether there is a frame that waits for the window to be shown, and nobody has given the window another one since.
bool WindowFrame::isAwaited() const {
  return myWindow && myAwaitedFrame && myWindow->pos() == myHiddenPlace.topLeft() &&
         myWindow->size() == withinLimits(myHiddenPlace.size(), *myWindow);
}

// The decoration is known, for the first time or anew.
void WindowFrame::settle() {
  const bool isFirst = myLastCall.isForever();
  if (isFirst) {
    myLastCall.setRemainingTime(decorationTime);
    applyLimits();
  }
  if (myAwaitedFrame && (isFirst || decorationOf(*myWindow) != myAssumedDecoration))
    apply(heldWithinLimits(*myAwaitedFrame));
}

QRect WindowFrame::heldWithinLimits(const QRect& frame) const {
  // A layout tells the smallest size that it can do with once it has been made.
  if (QLayout* const layout = myWindow->layout()) layout->activate();
  const QMargins decoration = decorationOf(*myWindow);
  const QSize size = withinLimits(frame.size().shrunkBy(decoration), *myWindow).grownBy(decoration);
  return {frame.x(), frame.y() + frame.height() - size.height(), size.width(), size.height()};
}

bool WindowFrame::canAnimateTo(const QRect& frame) const {
  const QWindow* const handle = myWindow->windowHandle();
  if (!handle || !handle->isExposed()) return false;
  // Where nobody sees it, it would only be late.
  return std::ranges::any_of(QGuiApplication::screens(),
                             [&](const QScreen* screen) { return screen->geometry().intersects(frame); });
}

void WindowFrame::finishAnimation() {
  if (myAnimation.state() == QAbstractAnimation::Running) myAnimation.setCurrentTime(myAnimation.duration());
}

}  // namespace kelvane
