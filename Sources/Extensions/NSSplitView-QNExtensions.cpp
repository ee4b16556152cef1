#include "Extensions/NSSplitView-QNExtensions.h"

#include <cmath>

#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "Platform/Foundation/Raise.h"

namespace kelvane {
namespace {

Text keyOfSecond(TextView key) { return Text(key) + u".frame2"; }

Ref<NSView> paneAtIndex(const NSSplitView& splitView, std::string_view operation, std::size_t index) {
  const std::vector<Ref<NSView>> panes = splitView.subviews();
  requireIndex(operation, index, panes.size());
  return panes[index];
}

void saveExtent(const NSSplitView& splitView, const Ref<NSView>& pane, TextView key) {
  const CGSize size = pane ? pane->frame().size : CGSize();
  const auto extent = static_cast<float>(splitView.isVertical() ? size.width : size.height);
  NSUserDefaults::standardUserDefaults().setObject(std::make_shared<NSNumber>(extent), key);
}

// The number under the key, or the one that a text there begins with; 0 for none, and for one beyond all measure.
float keptExtent(TextView key) {
  const Ref<NSObject> kept = NSUserDefaults::standardUserDefaults().objectForKey(key);
  float extent = 0;
  if (const auto* number = as<NSNumber>(kept.get())) extent = number->floatValue();
  if (const auto* text = as<NSString>(kept.get())) extent = text->floatValue();
  return std::isinf(extent) ? 0 : extent;
}

void restoreExtent(const NSSplitView& splitView, const Ref<NSView>& pane, double extent) {
  if (!pane) return;
  const CGSize size = pane->frame().size;
  pane->setFrameSize(splitView.isVertical() ? CGSize{extent, size.height} : CGSize{size.width, extent});
}

}  // namespace

Ref<NSView> firstSubview(const NSSplitView& receiver) { return paneAtIndex(receiver, "firstSubview", 0); }

Ref<NSView> secondSubview(const NSSplitView& receiver) { return paneAtIndex(receiver, "secondSubview", 1); }

void saveDividerPosition(const NSSplitView& receiver, TextView key) {
  saveExtent(receiver, firstSubview(receiver), key);
  saveExtent(receiver, secondSubview(receiver), keyOfSecond(key));
}

void loadDividerPosition(NSSplitView& receiver, TextView key) {
  // Zero is nothing, and nothing else is: what is not a number goes on to the pane, which ignores it.
  if (const float extent = keptExtent(key); extent != 0) restoreExtent(receiver, firstSubview(receiver), extent);
  if (const float extent = keptExtent(keyOfSecond(key)); extent != 0)
    restoreExtent(receiver, secondSubview(receiver), extent);
}

}  // namespace kelvane
