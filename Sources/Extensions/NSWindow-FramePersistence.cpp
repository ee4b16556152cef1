#include "Extensions/NSWindow-QNExtensions.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/NSUserDefaults.h"

namespace kelvane {
namespace {

// The text under the key; empty for none.
Text keptFrame(TextView key) {
  const auto text = as<NSString>(NSUserDefaults::standardUserDefaults().objectForKey(key));
  return text ? text->text() : Text();
}

bool isUnusable(const CGSize& size) { return size.width == 0 || size.height == 0; }

// What is to be loaded: the kept frame, its parts replaced by what the caller wants instead.
CGRect wantedFrame(const NSWindow& window, std::optional<TextView> key, const NSWindowExtensions::FrameLoading& how) {
  CGRect wanted;
  if (key) {
    wanted = NSRectFromString(keptFrame(*key));
    if (!how.respectSize) wanted.size = window.frame().size;
  }
  if (wanted.size == CGSize() && !isUnusable(how.defaultSize)) wanted.size = how.defaultSize;
  return wanted;
}

}  // namespace

bool hasFrameForUserDefaultsForKey(const NSWindow&, std::optional<TextView> key) {
  return key && !keptFrame(*key).empty();
}

namespace NSWindowExtensions {

void saveFrame(const NSWindow& window, std::optional<TextView> key, bool respectPosition) {
  if (!key || key->empty()) return;
  const CGRect frame = window.frame();
  const CGRect kept = respectPosition ? frame : window.contentRectForFrameRect(frame);
  NSUserDefaults::standardUserDefaults().setObject(std::make_shared<NSString>(NSStringFromRect(kept)), *key);
}

void saveFrame(NSWindow& window, std::optional<TextView> key, std::optional<TextView> resizeToKey,
               bool respectPosition) {
  if (!key || key->empty()) return;
  saveFrame(window, key, respectPosition);
  loadFrameFromUserDefaultsForKey(window, resizeToKey, respectPosition, noPosition);
}

bool loadFrame(NSWindow& window, std::optional<TextView> key, const FrameLoading& how) {
  CGRect wanted = wantedFrame(window, key, how);
  if (isUnusable(wanted.size)) {
    if (how.defaultPosition == bottomRight) positionAtBottomRight(window);
    if (how.defaultPosition == goldenMiddle) positionAtGoldenMiddle(window);
    return false;
  }
  if (!how.respectPosition) {
    // What was kept is a content rectangle, and that has the toolbar in it already.
    wanted = positionIndependentWindowSizeForSize(window, wanted.size, false);
    const double toolbar = toolbarHeight(window);
    wanted.origin.y += toolbar;
    wanted.size.height -= toolbar;
  }
  window.setFrame(wanted, true, how.animate);
  if (isFrameVisibleOnScreen(window, wanted)) return true;
  // Not as above: a window that nobody could see never stays where it is.
  if (how.defaultPosition == bottomRight)
    positionAtBottomRight(window);
  else
    positionAtGoldenMiddle(window);
  return true;
}

}  // namespace NSWindowExtensions

}  // namespace kelvane
