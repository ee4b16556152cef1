#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "Platform/Desktop/NSIndexPath.h"
#include "Platform/Desktop/ObserverList.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

class NSTreeController;

// Hears of a tree controller's changes, in order to show them. It overrides what it wants to hear.
class KELVANE_EXPORT NSTreeControllerObserver {
 public:
  virtual ~NSTreeControllerObserver() = default;
  virtual void treeControllerContentDidChange(NSTreeController&) {}
  virtual void treeControllerSelectionDidChange(NSTreeController&) {}
};

// Stands between a tree of model objects and the views that show it: the objects at the top, how the others are reached
// from them, and which are selected. The objects are shared, not copied. Main thread only.
class KELVANE_EXPORT NSTreeController : public NSObject {
 public:
  // What is read of each model object: an array of its children; their number, and whether it can have any, where the
  // model tells.
  explicit NSTreeController(Text childrenKeyPath, std::optional<Text> countKeyPath = std::nullopt,
                            std::optional<Text> leafKeyPath = std::nullopt)
      : myChildrenKeyPath(std::move(childrenKeyPath)),
        myCountKeyPath(std::move(countKeyPath)),
        myLeafKeyPath(std::move(leafKeyPath)) {}
  NSTreeController(const NSTreeController&) = delete;
  NSTreeController& operator=(const NSTreeController&) = delete;

  const Text& childrenKeyPath() const { return myChildrenKeyPath; }
  const std::optional<Text>& countKeyPath() const { return myCountKeyPath; }
  const std::optional<Text>& leafKeyPath() const { return myLeafKeyPath; }

  // The objects at the top; nil is as none.
  const Ref<NSArray>& content() const { return myContent; }
  void setContent(Ref<NSArray> content);
  // rearrangeObjects  Tells the observers that the tree has changed somewhere.
  void rearrangeObjects();

  // The children of a model object: what it has under the children key path, if that is an array; nil otherwise. An
  // object without such a property raises std::invalid_argument.
  Ref<NSArray> childrenOf(const NSObject& object) const;

  // In the order in which they were given.
  const std::vector<Ref<NSIndexPath>>& selectionIndexPaths() const { return mySelectionIndexPaths; }
  // setSelectionIndexPaths:  Selects what is at these paths and nothing else. A path that leads nowhere selects
  // nothing; a nil one raises std::invalid_argument.
  void setSelectionIndexPaths(std::vector<Ref<NSIndexPath>> paths);

  void addControllerObserver(NSTreeControllerObserver& observer) { myObservers.add(observer); }
  void removeControllerObserver(NSTreeControllerObserver& observer) { myObservers.remove(observer); }

 private:
  Text myChildrenKeyPath;
  std::optional<Text> myCountKeyPath;
  std::optional<Text> myLeafKeyPath;
  Ref<NSArray> myContent;
  std::vector<Ref<NSIndexPath>> mySelectionIndexPaths;
  ObserverList<NSTreeControllerObserver> myObservers;
};

}  // namespace kelvane
