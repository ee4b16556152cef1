#pragma once

#include <concepts>
#include <cstdint>
#include <optional>

#include "Platform/Desktop/NSWindow.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

// Operations on windows: placing them, sizing them, and keeping their frames in the preferences.
//
// ```cpp
// loadFrameFromUserDefaultsForKey(*window, u"editor", true, NSWindowExtensions::goldenMiddle);  // when it opens
// saveFrameToUserDefaultsForKey(*window, u"editor", true);                                      // when it closes
// ```
//
// "The screen" is the main screen's visible frame, the zero rectangle where there is no screen. WindowPlacement.h has
// the geometry as functions of plain rectangles. Where the desktop gives windows no positions
// (Desktop::windowsHavePositions), sizes are set and restored all the same. Main thread only.
namespace kelvane {

// positionAtGoldenMiddle  Centres the window from left to right, with one third of the free height above it and two
// thirds below. Not rounded.
//   200 x 100 on {{0, 0}, {1000, 800}} => {400, 466.6666666666667}
KELVANE_EXPORT void positionAtGoldenMiddle(NSWindow& receiver);
// centerGoldenMiddleOnPoint:  Centres the window on the point from left to right, and puts its lower edge below the
// point by 0.3 of its width, the width it is; rounded down.
//   200 x 100 on {500, 400} => {400, 339}
KELVANE_EXPORT void centerGoldenMiddleOnPoint(NSWindow& receiver, const CGPoint& point);
// positionAtGoldenMiddleToBottomRight  Puts the window to the lower right of the screen's middle, and further out when
// it would lie over the application's other windows.
KELVANE_EXPORT void positionAtGoldenMiddleToBottomRight(NSWindow& receiver);
// positionAtBottomRight  Puts the window in the lower right corner of the screen, 30 away from its edges.
KELVANE_EXPORT void positionAtBottomRight(NSWindow& receiver);

// makeFrameStayOnScreen:  The rectangle moved to the left and up as far as it takes to stay 30 away from the right and
// the lower edge of the screen. The left and the upper edge do not count.
//   {{900, 10}, {200, 100}} on {{0, 0}, {1000, 800}} => {{770, 30}, {200, 100}}
KELVANE_EXPORT CGRect makeFrameStayOnScreen(const NSWindow& receiver, const CGRect& rect);
// stayOnMainScreen  The same with the window's frame.
KELVANE_EXPORT void stayOnMainScreen(NSWindow& receiver);
// qn_sanitizePosition  Moves the window so that its title bar can be reached (NSWindow::constrainFrameRect) on the
// first screen that holds the frame's origin; on the main screen when none does. Nothing where there is no screen.
KELVANE_EXPORT void qn_sanitizePosition(NSWindow& receiver);
// isFrameVisibleOnScreen:  Whether the rectangle and the visible frame of any screen have an area in common.
KELVANE_EXPORT bool isFrameVisibleOnScreen(const NSWindow& receiver, const CGRect& rect);
// unionFrameOfOpenWindowsExpectReceiver  The smallest rectangle around (0, 0) and the frames of all visible windows of
// the application but this one; the zero rectangle when there are none.
KELVANE_EXPORT CGRect unionFrameOfOpenWindowsExpectReceiver(const NSWindow& receiver);
// orderBehindWindow:  Puts the window right behind the other one; behind all of them for nil.
KELVANE_EXPORT void orderBehindWindow(NSWindow& receiver, const Ref<NSWindow>& otherWindow);

// toolbarHeight  How much of the content rectangle the toolbar takes; 0 when there is none, or it is hidden.
KELVANE_EXPORT double toolbarHeight(const NSWindow& receiver);
// lockWindowToCurrentSize  Makes the frame's size the largest and the smallest that the user can give it.
KELVANE_EXPORT void lockWindowToCurrentSize(NSWindow& receiver);
// alignWindowSize:toMinSize:toMaxSize:  The size with width and height each raised to the minimum and then lowered to
// the maximum; a limit of 0 is none.
//   50 x 500 within 100 x 0 and 0 x 400 => 100 x 400
KELVANE_EXPORT CGSize alignWindowSize(const NSWindow& receiver, const CGSize& size, const CGSize& toMinSize,
                                      const CGSize& toMaxSize);
// positionIndependentWindowSizeForSize:centerOnMiddle:  The frame in which the content view would have the size: its
// upper edge is where it is now, and so is its left one or, if asked for, its middle from left to right.
KELVANE_EXPORT CGRect positionIndependentWindowSizeForSize(const NSWindow& receiver, const CGSize& contentSize,
                                                           bool centerOnMiddle);
// resizeWindowToSize:  Gives the content view the size, with the window's upper left corner staying where it is.
// Animated.
KELVANE_EXPORT void resizeWindowToSize(NSWindow& receiver, const CGSize& contentSize);
// resizeWindowToSize:centerOnMiddle:  The same, staying in the middle from left to right if asked for.
inline void resizeWindowToSize(NSWindow& receiver, const CGSize& contentSize, std::same_as<bool> auto centerOnMiddle) {
  receiver.setFrame(positionIndependentWindowSizeForSize(receiver, contentSize, centerOnMiddle), true, true);
}
// resizeWindowBySizingView:toSize:  Resizes the view's window, whichever that is, so that the view gets the size, given
// that it grows along with the content view. Nothing for nil, and for a view in no window.
KELVANE_EXPORT void resizeWindowBySizingView(NSWindow& receiver, const Ref<NSView>& view, const CGSize& toSize);

// Frames in NSUserDefaults::standardUserDefaults(), as text under keys of the caller's: "{{x, y}, {w, h}}". Loading
// takes one of these codes for where the window goes when there is no frame for it; any other number is none.
namespace NSWindowExtensions {

inline constexpr std::int32_t noPosition = 0;
inline constexpr std::int32_t bottomRight = 1;   // positionAtBottomRight
inline constexpr std::int32_t goldenMiddle = 2;  // positionAtGoldenMiddle

// What is to be made of a kept frame, as the parameters of the same names say.
struct FrameLoading {
  bool respectPosition;
  std::int32_t defaultPosition;
  bool respectSize;
  CGSize defaultSize;
  bool animate;
};

// Saving and loading as the functions below call them, with which one cannot mistake a key for a truth value.
KELVANE_EXPORT void saveFrame(const NSWindow& window, std::optional<TextView> key, bool respectPosition);
KELVANE_EXPORT void saveFrame(NSWindow& window, std::optional<TextView> key, std::optional<TextView> resizeToKey,
                              bool respectPosition);
KELVANE_EXPORT bool loadFrame(NSWindow& window, std::optional<TextView> key, const FrameLoading& how);

}  // namespace NSWindowExtensions

// hasFrameForUserDefaultsForKey:  Whether there is a text under the key that is not empty. False for a nil key.
KELVANE_EXPORT bool hasFrameForUserDefaultsForKey(const NSWindow& receiver, std::optional<TextView> key);

// saveFrameToUserDefaultsForKey:respectPosition:  Keeps the frame under the key; without the position, the content
// rectangle. Nothing for a nil or empty key. To make it durable is NSUserDefaults::synchronize's work.
inline void saveFrameToUserDefaultsForKey(const NSWindow& receiver, std::optional<TextView> key,
                                          std::same_as<bool> auto respectPosition) {
  NSWindowExtensions::saveFrame(receiver, key, respectPosition);
}
// saveFrameToUserDefaultsForKey:resizeToKey:respectPosition:  Keeps the frame under the key, and takes up the one under
// the other key, if there is one: for a window that switches between two forms. Nothing for a nil or empty first key.
inline void saveFrameToUserDefaultsForKey(NSWindow& receiver, std::optional<TextView> key,
                                          std::optional<TextView> resizeToKey,
                                          std::same_as<bool> auto respectPosition) {
  NSWindowExtensions::saveFrame(receiver, key, resizeToKey, respectPosition);
}

// loadFrameFromUserDefaultsForKey:respectPosition:defaultPosition:respectSize:defaultSize:animate:  Gives the window
// the frame that is kept under the key, and returns whether there was one for it.
//
//  - Without `respectSize` the window keeps the size that it has; nil keys excepted, for which there is none.
//  - Where no size is known, it is `defaultSize`, unless that has a 0.
//  - Without a width or height even so, the window goes where `defaultPosition` says and keeps its size: false.
//  - Without `respectPosition` the upper left corner stays where it is, and the kept size is that of the content
//    rectangle, toolbar included.
//  - A frame that no screen shows is given up: the window goes to the bottom right, if that is the default, and to the
//    golden middle for every other code, 0 included.
//
// A position alone, loaded where nothing is kept, is (0, 0). Text that does not read as a rectangle counts as the zero
// rectangle.
inline bool loadFrameFromUserDefaultsForKey(NSWindow& receiver, std::optional<TextView> key,
                                            std::same_as<bool> auto respectPosition, std::int32_t defaultPosition,
                                            std::same_as<bool> auto respectSize, const CGSize& defaultSize,
                                            std::same_as<bool> auto animate) {
  return NSWindowExtensions::loadFrame(receiver, key,
                                       {respectPosition, defaultPosition, respectSize, defaultSize, animate});
}
// loadFrameFromUserDefaultsForKey:respectPosition:defaultPosition:  The same with the size, without a default size and
// not animated.
inline bool loadFrameFromUserDefaultsForKey(NSWindow& receiver, std::optional<TextView> key,
                                            std::same_as<bool> auto respectPosition, std::int32_t defaultPosition) {
  return loadFrameFromUserDefaultsForKey(receiver, key, respectPosition, defaultPosition, true, CGSize(), false);
}
// loadPositionFromUserDefaultsForKey:defaultPosition:  The same with the position alone.
inline bool loadPositionFromUserDefaultsForKey(NSWindow& receiver, std::optional<TextView> key,
                                               std::int32_t defaultPosition) {
  return loadFrameFromUserDefaultsForKey(receiver, key, true, defaultPosition, false, CGSize(), false);
}

}  // namespace kelvane
