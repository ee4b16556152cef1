#pragma once

#include <QPointer>
#include <QWidget>

#include "Platform/Desktop/NSWindow.h"
#include "Qt/Widgets/WindowFrame.h"

namespace kelvane {

// The adapter of a top-level widget. Frames are rounded to whole units, origin and size each for itself and halves up:
// what Qt places windows by.
class QtWindow final : public NSWindow {
 public:
  explicit QtWindow(QWidget& window);

  QWidget* widget() const { return myWindow; }

  CGRect frame() const override;
  void setFrame(const CGRect& frame, bool display, bool animate) override;
  CGRect contentRectForFrameRect(const CGRect& frame) const override;
  CGRect frameRectForContentRect(const CGRect& content) const override;
  CGRect constrainFrameRect(const CGRect& frame, const NSScreen& toScreen) const override;
  Ref<NSView> contentView() const override;
  Ref<NSToolbar> toolbar() const override;
  void setMinSize(const CGSize& size) override;
  void setMaxSize(const CGSize& size) override;
  bool isVisible() const override;
  std::int64_t windowNumber() const override { return myNumber; }
  void orderWindow(NSWindowOrderingMode place, std::int64_t relativeTo) override;

 private:
  // All that is inside of the frame and outside of the content rectangle.
  QMargins contentMargins() const;

  QPointer<QWidget> myWindow;
  WindowFrame myFrame;
  std::int64_t myNumber;
};

}  // namespace kelvane
