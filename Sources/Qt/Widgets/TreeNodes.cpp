#include "Qt/Widgets/TreeNodes.h"

#include <algorithm>

#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSString.h"

namespace kelvane {
namespace {

// The truth and the number of what stands under a key path; nil and all else is 0.
bool truthOf(const Ref<NSObject>& value) {
  if (const auto* number = as<NSNumber>(value.get())) return number->boolValue();
  const auto* text = as<NSString>(value.get());
  return text && text->boolValue();
}

std::int64_t numberOf(const Ref<NSObject>& value) {
  if (const auto* number = as<NSNumber>(value.get())) return number->integerValue();
  const auto* text = as<NSString>(value.get());
  return text ? text->integerValue() : 0;
}

}  // namespace

TreeNodes::TreeNodes(Ref<NSTreeController> controller)
    : myController(std::move(controller)), myTop(std::make_shared<TreeNode>(nullptr)) {
  myTop->myTreeRef = this;
}

TreeNodes::~TreeNodes() {
  std::vector<Ref<TreeNode>> all{myTop};
  takeOut(all);
}

const std::vector<Ref<TreeNode>>& TreeNodes::childrenOf(TreeNode& node) {
  if (!std::exchange(node.myIsLoaded, true)) {
    std::vector<Ref<TreeNode>> none;
    updateChildren(node, none);
  }
  return node.myChildren;
}

bool TreeNodes::hasChildren(const TreeNode& node) const {
  if (node.myIsLoaded) return !node.myChildren.empty();
  bool result = false;
  myGuarded("hasChildren", [&] {
    const auto& leaf = myController->leafKeyPath();
    const auto& count = myController->countKeyPath();
    if (node.myObject && leaf && truthOf(node.myObject->valueForKeyPath(*leaf))) return;
    if (node.myObject && count) {
      result = numberOf(node.myObject->valueForKeyPath(*count)) > 0;
      return;
    }
    const Ref<NSArray> children = childObjectsOf(node);
    result = children && children->count() > 0;
  });
  return result;
}

std::vector<Ref<TreeNode>> TreeNodes::update() {
  std::vector<Ref<TreeNode>> gone;
  std::vector<TreeNode*> known{myTop.get()};
  while (!known.empty()) {
    TreeNode& node = *known.back();
    known.pop_back();
    if (!node.myIsLoaded) continue;
    updateChildren(node, gone);
    for (const Ref<TreeNode>& child : node.myChildren) known.push_back(child.get());
  }
  takeOut(gone);
  return gone;
}

Ref<NSArray> TreeNodes::childObjectsOf(const TreeNode& node) const {
  return node.myObject ? myController->childrenOf(*node.myObject) : myController->content();
}

void TreeNodes::updateChildren(TreeNode& node, std::vector<Ref<TreeNode>>& gone) {
  Ref<NSArray> objects;
  myGuarded("childrenOf", [&] {
    const auto& leaf = myController->leafKeyPath();
    if (node.myObject && leaf && truthOf(node.myObject->valueForKeyPath(*leaf))) return;
    objects = childObjectsOf(node);
  });
  static const NSArray none;
  const NSArray& now = objects ? *objects : none;
  const auto isSame = [](const Ref<TreeNode>& child, const Ref<NSObject>& object) { return child->myObject == object; };
  if (std::ranges::equal(node.myChildren, now, isSame)) return;
  ByObject known;
  for (Ref<TreeNode>& child : node.myChildren) {
    const NSObject* const object = child->myObject.get();
    known.emplace(object, std::move(child));
  }
  std::vector<Ref<TreeNode>> children;
  children.reserve(now.count());
  for (const Ref<NSObject>& object : now) children.push_back(takeOrMake(known, object));
  adopt(node, std::move(children));
  for (auto& [object, child] : known) gone.push_back(std::move(child));
}

Ref<TreeNode> TreeNodes::takeOrMake(ByObject& known, const Ref<NSObject>& object) const {
  const auto found = known.find(object.get());
  if (found == known.end()) return std::make_shared<TreeNode>(object);
  return std::move(known.extract(found).mapped());
}

void TreeNodes::adopt(TreeNode& node, std::vector<Ref<TreeNode>> children) const {
  node.myChildren = std::move(children);
  for (std::size_t row = 0; row < node.myChildren.size(); ++row) {
    TreeNode& child = *node.myChildren[row];
    child.myTreeRef = this;
    child.myParentRef = &node;
    child.myRow = row;
  }
}

// One after the other, however deep they are: somebody may still hold any of them.
void TreeNodes::takeOut(std::vector<Ref<TreeNode>>& nodes) {
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    TreeNode& node = *nodes[i];
    node.myTreeRef = nullptr;
    node.myParentRef = nullptr;
    const std::vector<Ref<TreeNode>> children = std::exchange(node.myChildren, {});
    nodes.insert(nodes.end(), children.begin(), children.end());
  }
}

}  // namespace kelvane
