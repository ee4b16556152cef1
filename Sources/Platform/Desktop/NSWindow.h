#pragma once

#include <cstdint>

#include "Platform/Desktop/NSScreen.h"
#include "Platform/Desktop/NSToolbar.h"
#include "Platform/Desktop/NSView.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"

namespace kelvane {

// Where a window goes in the stack, seen from another one.
enum class NSWindowOrderingMode { Below, Above };

// A window of the application. For each window of the window system there is one object, so that identity tells them
// apart; Desktop tells which windows there are. A window whose original has gone answers with zero rectangles, nil and
// nothing, and ignores what it is told. Main thread only.
//
// Of a window's rectangles the frame is the outermost: title bar and borders included. What is inside of these is the
// content rectangle, which the toolbar shares with the content view.
class KELVANE_EXPORT NSWindow : public NSObject {
 public:
  virtual CGRect frame() const = 0;
  // setFrame:display:animate:  Moves and resizes the window; `display` draws it anew at once, `animate` takes it there
  // in steps. What the window system cannot do it comes close to: sizes are held within its limits, and a frame with a
  // number that is not finite changes nothing.
  virtual void setFrame(const CGRect& frame, bool display, bool animate) = 0;

  // contentRectForFrameRect:, frameRectForContentRect:  From one rectangle to the other, for a window of this one's
  // style.
  virtual CGRect contentRectForFrameRect(const CGRect& frame) const = 0;
  virtual CGRect frameRectForContentRect(const CGRect& content) const = 0;
  // constrainFrameRect:toScreen:  The frame moved as little as it takes to keep the window within the user's reach, its
  // size unchanged: all of the title bar's height lies in the screen's visible frame, where there is room, and no less
  // than that same length of its width is in there, wherever the window hangs out on either side.
  virtual CGRect constrainFrameRect(const CGRect& frame, const NSScreen& toScreen) const;

  // Nil when there is none.
  virtual Ref<NSView> contentView() const = 0;
  virtual Ref<NSToolbar> toolbar() const = 0;

  // Limits for the frame's size when the user changes it.
  virtual void setMinSize(const CGSize& size) = 0;
  virtual void setMaxSize(const CGSize& size) = 0;

  virtual bool isVisible() const = 0;
  // Positive and like no other window's of the application.
  virtual std::int64_t windowNumber() const = 0;
  // orderWindow:relativeTo:  Puts the window right above or below the one of that number; 0 stands for all others.
  virtual void orderWindow(NSWindowOrderingMode place, std::int64_t relativeTo) = 0;

 protected:
  // constrainFrameRect for a window whose title bar is that high, and what panels and docks leave of the screen.
  static CGRect constrained(const CGRect& frame, double titleBar, const CGRect& visible);
};

}  // namespace kelvane
