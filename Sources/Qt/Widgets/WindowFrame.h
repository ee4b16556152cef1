#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>
#include <optional>

#include "Platform/Foundation/Geometry.h"

namespace kelvane {

// Gives a window the frame that it is told, decoration included. How much that takes is known only once the window is
// on the screen; a frame that was set before is set again then, and so are the limits. Rectangles are as Qt counts
// them.
class WindowFrame final : public QObject {
 public:
  explicit WindowFrame(QWidget& window);

  // One that waits for the window to be shown counts as if it were there already.
  QRect frame() const;
  // Sizes are held within the window's limits, with the lower left corner where it was told. A window that fills the
  // screen is an ordinary one afterwards. An animated one takes the time that the style has for it; none where the
  // window is not on the screen, or the place that it goes to is not.
  void setFrame(const QRect& frame, bool animate);
  // Limits for the frame's size. What is not a number limits nothing, and no more does a maximum of 0.
  void setMinSize(const CGSize& size);
  void setMaxSize(const CGSize& size);

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;

  void apply(const QRect& frame);
  void applyLimits();
  bool isAwaited() const;
  void settle();
  void watch();
  void look();
  QRect heldWithinLimits(const QRect& frame) const;
  bool canAnimateTo(const QRect& frame) const;
  void finishAnimation();

  QPointer<QWidget> myWindow;
  // The frame that was last set, what decoration it was set with, and what Qt made of it.
  std::optional<QRect> myAwaitedFrame;
  QMargins myAssumedDecoration;
  QRect myPlace;
  // Whether the window is on its way to the screen for the first time, or once more.
  bool myIsAppearing = false;
  // Runs as long as a decoration that changes is one that comes late.
  QTimer myWatch;
  int myLooksLeft = 0;
  std::optional<CGSize> myMinSize;
  std::optional<CGSize> myMaxSize;
  QVariantAnimation myAnimation;
};

}  // namespace kelvane
