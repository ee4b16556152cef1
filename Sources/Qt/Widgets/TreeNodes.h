#pragma once

#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Platform/Desktop/NSTreeController.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Ref.h"
#include "Qt/Widgets/Guarded.h"

namespace kelvane {

class TreeNodes;

// The place of a model object in a shown tree. It stays the same as long as the object stays below the same other one,
// wherever that goes; so its identity is that of the row where it is shown.
class TreeNode final : public NSObject {
 public:
  explicit TreeNode(Ref<NSObject> object) : myObject(std::move(object)) {}

  // Nil for the node at the top.
  const Ref<NSObject>& object() const { return myObject; }
  // Null at the top, and for a node that is not shown any more.
  TreeNode* parent() const { return myParentRef; }
  // Its index among its parent's children.
  std::size_t row() const { return myRow; }

 private:
  friend class TreeNodes;

  const Ref<NSObject> myObject;
  // Whose node it is; null when it is not in the tree any more.
  const TreeNodes* myTreeRef = nullptr;
  TreeNode* myParentRef = nullptr;
  std::size_t myRow = 0;
  // The children are made when somebody asks for them, so that a model may be without end.
  bool myIsLoaded = false;
  std::vector<Ref<TreeNode>> myChildren;
};

// The nodes of a tree controller's content, as far as somebody has looked. An object that throws when it is asked has
// no children; the first time is logged. Main thread only.
class TreeNodes {
 public:
  explicit TreeNodes(Ref<NSTreeController> controller);
  ~TreeNodes();
  TreeNodes(const TreeNodes&) = delete;
  TreeNodes& operator=(const TreeNodes&) = delete;

  TreeNode& top() const { return *myTop; }
  bool has(const TreeNode& node) const { return node.myTreeRef == this; }

  // Makes those that are not there yet.
  const std::vector<Ref<TreeNode>>& childrenOf(TreeNode& node);
  // Whether there are any, as the controller's key paths tell; makes none.
  bool hasChildren(const TreeNode& node) const;

  // Takes over what has become of the content, all known nodes at once. Those of objects that are not in their place
  // any more are returned; they have no tree, and those below them went with them. Linear in the number of known nodes.
  std::vector<Ref<TreeNode>> update();

 private:
  using ByObject = std::unordered_multimap<const NSObject*, Ref<TreeNode>>;

  Ref<NSArray> childObjectsOf(const TreeNode& node) const;
  void updateChildren(TreeNode& node, std::vector<Ref<TreeNode>>& gone);
  Ref<TreeNode> takeOrMake(ByObject& known, const Ref<NSObject>& object) const;
  void adopt(TreeNode& node, std::vector<Ref<TreeNode>> children) const;
  static void takeOut(std::vector<Ref<TreeNode>>& nodes);

  const Ref<NSTreeController> myController;
  const Ref<TreeNode> myTop;
  mutable GuardedOnce myGuarded;
};

}  // namespace kelvane
