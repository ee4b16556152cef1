#include "Platform/Desktop/NSTreeController.h"

#include <algorithm>

#include "Platform/Foundation/Raise.h"

namespace kelvane {

void NSTreeController::setContent(Ref<NSArray> content) {
  myContent = std::move(content);
  rearrangeObjects();
}

void NSTreeController::rearrangeObjects() {
  myObservers.notify([this](NSTreeControllerObserver& observer) { observer.treeControllerContentDidChange(*this); });
}

Ref<NSArray> NSTreeController::childrenOf(const NSObject& object) const {
  return as<NSArray>(object.valueForKeyPath(myChildrenKeyPath));
}

void NSTreeController::setSelectionIndexPaths(std::vector<Ref<NSIndexPath>> paths) {
  if (std::ranges::find(paths, nullptr) != paths.end())
    raiseInvalidArgument("setSelectionIndexPaths:", "a path is nil");
  mySelectionIndexPaths = std::move(paths);
  myObservers.notify([this](NSTreeControllerObserver& observer) { observer.treeControllerSelectionDidChange(*this); });
}

}  // namespace kelvane
