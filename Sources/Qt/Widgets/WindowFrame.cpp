#include "Qt/Widgets/WindowFrame.h"

#include <QEvent>
#include <QGuiApplication>
#include <QLayout>
#include <QScreen>
#include <QStyle>
#include <QWindow>
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "Qt/Widgets/Decoration.h"
#include "Qt/Widgets/Flip.h"

namespace kelvane {
namespace {

// How often, and for how long, one looks whether the window manager has changed the decoration, of which Qt does not
// tell. It does so after a window has appeared, if it is slow, and after one became one that cannot be resized, since
// that takes no border to drag.
constexpr int lookInterval = 50;
constexpr int numberOfLooks = 20;

int clientLength(double frameLength, int decoration) { return std::max(0, wholeUnit(frameLength) - decoration); }

// Qt's own largest length stands for no limit.
int largestClientLength(double frameLength, int decoration) {
  if (!(frameLength > 0 && frameLength < QWIDGETSIZE_MAX)) return QWIDGETSIZE_MAX;
  return clientLength(frameLength, decoration);
}

constexpr Qt::WindowStates filling = Qt::WindowMaximized | Qt::WindowFullScreen;

bool fillsScreen(const QWidget& window) { return (window.windowState() & filling) != 0; }

QSize withinLimits(const QSize& clientSize, const QWidget& window) {
  return clientSize.boundedTo(window.maximumSize()).expandedTo(window.minimumSize()).expandedTo({1, 1});
}

}  // namespace

WindowFrame::WindowFrame(QWidget& window) : myWindow(&window) {
  window.installEventFilter(this);
  QWindow* const handle = window.windowHandle();
  if (handle) handle->installEventFilter(this);
  myIsAppearing = handle && handle->isVisible() && !handle->isExposed();
  connect(&myWatch, &QTimer::timeout, this, &WindowFrame::look);
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
  if (fillsScreen(*myWindow)) myWindow->setWindowState(myWindow->windowState() & ~filling);
  const QRect wanted = heldWithinLimits(frame);
  if (!animate || !canAnimateTo(wanted)) return apply(wanted);
  myAnimation.setStartValue(this->frame());
  myAnimation.setEndValue(wanted);
  myAnimation.setDuration(myWindow->style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, myWindow));
  myAnimation.start();
}

void WindowFrame::setMinSize(const CGSize& size) {
  if (!myWindow || std::isnan(size.width) || std::isnan(size.height)) return;
  myMinSize = size;
  applyLimits();
  if (isDecorationKnown(*myWindow)) watch();
}

void WindowFrame::setMaxSize(const CGSize& size) {
  if (!myWindow || std::isnan(size.width) || std::isnan(size.height)) return;
  myMaxSize = size;
  applyLimits();
  if (isDecorationKnown(*myWindow)) watch();
}

bool WindowFrame::eventFilter(QObject* watched, QEvent* event) {
  if (!myWindow) return false;
  if (watched != myWindow) {
    if (event->type() == QEvent::Expose && myIsAppearing && isDecorationKnown(*myWindow)) settle();
    return false;
  }
  // Of spontaneous ones the window manager is the cause, which minimised the window or brings it back.
  if (event->type() == QEvent::Show && !event->spontaneous()) {
    // The window of the window system is there only now.
    if (QWindow* const handle = myWindow->windowHandle()) handle->installEventFilter(this);
    if (!isAwaited()) myAwaitedFrame.reset();
    myIsAppearing = true;
  }
  if (event->type() == QEvent::Hide || event->type() == QEvent::Close) finishAnimation();
  return false;
}

void WindowFrame::apply(const QRect& frame) {
  if (!myWindow) return;
  myAwaitedFrame = frame;
  myAssumedDecoration = decorationOf(*myWindow);
  const QRect client = frame.marginsRemoved(myAssumedDecoration);
  if (isDecorationKnown(*myWindow)) {
    myWindow->setGeometry(client);
  } else {
    // Qt counts the place of a window without a decoration from the corner of the one that it will get.
    myWindow->move(frame.topLeft());
    myWindow->resize(client.size());
  }
  myPlace = {myWindow->pos(), myWindow->size()};
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

// Whether a frame was set, and nobody has given the window another one since.
bool WindowFrame::isAwaited() const {
  return myWindow && myAwaitedFrame && myWindow->pos() == myPlace.topLeft() &&
         myWindow->size() == withinLimits(myPlace.size(), *myWindow);
}

// The decoration is known.
void WindowFrame::settle() {
  myIsAppearing = false;
  applyLimits();
  // A host may restore a window's frame and have the window fill the screen all the same.
  if (myAwaitedFrame && !fillsScreen(*myWindow)) apply(heldWithinLimits(*myAwaitedFrame));
  watch();
}

void WindowFrame::watch() {
  myAssumedDecoration = decorationOf(*myWindow);
  myLooksLeft = numberOfLooks;
  myWatch.start(lookInterval);
}

// The frame stays what it is when the decoration changes.
void WindowFrame::look() {
  if (--myLooksLeft <= 0 || !myWindow) myWatch.stop();
  if (!myWindow || !isDecorationKnown(*myWindow) || fillsScreen(*myWindow)) return;
  const QMargins decoration = decorationOf(*myWindow);
  const QMargins before = std::exchange(myAssumedDecoration, decoration);
  if (decoration == before) return;
  QRect frame = myWindow->geometry().marginsAdded(before);
  // What the new decoration has pushed aside goes back; where the user has put the window meanwhile it stays.
  if (myAwaitedFrame && myAwaitedFrame->size() == frame.size()) {
    const QPoint moved = myAwaitedFrame->topLeft() - frame.topLeft();
    if (std::abs(moved.x()) <= decoration.left() && std::abs(moved.y()) <= decoration.top()) frame = *myAwaitedFrame;
  }
  applyLimits();
  apply(heldWithinLimits(frame));
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
