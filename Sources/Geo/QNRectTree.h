#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <type_traits>
#include <utility>

#include "Geo/RectTreeLinks.h"
#include "Platform/Foundation/ElementTraits.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// A node of a QNRectTree: a key, by which alone nodes are ordered, and data and a rectangle that go with it. A node is
// made with RectTreeNode() and belongs to one tree at most.
//
// Keys are ordered by ElementTraits<Key>::compare: text by its code units, numbers by value. Keys that have no order
// raise std::invalid_argument when they meet.
//
// What is derived from a subtree (height, balance, leafs) is worked out at each call; the walks go as deep into the
// stack as the tree is high, which is less than 1.5 log2 n for what inserting builds. Each single access to a property
// is indivisible; everything else is for one thread at a time, and while it walks or changes the tree nobody else may
// change it.
template <class Key = Ref<NSObject>, class Data = Ref<NSObject>>
class QNRectTreeNode : public detail::RectTreeLinks {
 public:
  using Node = QNRectTreeNode;

  // RectTreeNode  A new node with nil data, nil key, no children and the zero rectangle.
  static Ref<Node> RectTreeNode() { return std::make_shared<Node>(); }

  QNRectTreeNode() = default;
  // Gives up data, key, left and right subtree, in this order.
  ~QNRectTreeNode() override { giveUpAll(); }

  // data
  Data data() const { return load(myData); }
  // setData:
  void setData(Data data) { store(myData, std::move(data)); }
  // key
  Key key() const { return load(myKey); }
  // setKey:
  void setKey(Key key) { store(myKey, std::move(key)); }
  // leftNode  The subtree of the keys that come before this one; nil when there are none.
  Ref<Node> leftNode() const { return std::static_pointer_cast<Node>(loadLink(myLeftNode)); }
  // setLeftNode:
  void setLeftNode(Ref<Node> node) { storeLink(myLeftNode, std::move(node)); }
  // rightNode  The subtree of the keys that are equal to this one or come behind.
  Ref<Node> rightNode() const { return std::static_pointer_cast<Node>(loadLink(myRightNode)); }
  // setRightNode:
  void setRightNode(Ref<Node> node) { storeLink(myRightNode, std::move(node)); }
  // setLeftChild:rightChild:  Both, the left one first.
  void setLeftChild(Ref<Node> left, Ref<Node> rightChild) {
    setLeftNode(std::move(left));
    setRightNode(std::move(rightChild));
  }

  // insert:  Puts a node into its place in this subtree: left of the keys that it comes before, right of the others,
  // equal ones included. Then every node on the way is balanced, from below. Nothing for nil. The node must not be in
  // the tree yet. Linear in the size of the subtree, since heights are not kept.
  void insert(const Ref<Node>& node) {
    if (node) insertLinks(node);
  }

  // swapDataFromNode:withDataFromNode:  Two nodes exchange data, key and rectangle, in this order; the children stay.
  // Null reads as nil data, nil key and the zero rectangle, and takes nothing.
  static void swapDataFromNode(const Ref<Node>& node, const Ref<Node>& withDataFromNode) {
    swapDataFromNode(node.get(), withDataFromNode.get());
  }
  static void swapDataFromNode(Node* node, Node* withDataFromNode) {
    Node nothing;
    Node& a = node ? *node : nothing;
    Node& b = withDataFromNode ? *withDataFromNode : nothing;
    b.setData(a.exchange(a.myData, b.data()));
    b.setKey(a.exchange(a.myKey, b.key()));
    const CGRect rect = a.rect();
    a.setRect(b.rect());
    b.setRect(rect);
  }

 private:
  template <class, class>
  friend class QNRectTree;

  void swapPayload(detail::RectTreeLinks& other) override { swapDataFromNode(this, &static_cast<Node&>(other)); }
  void giveUpPayload() noexcept override {
    myData = ElementTraits<Data>::nil();
    myKey = ElementTraits<Key>::nil();
  }
  bool hasKeyBefore(const detail::RectTreeLinks& other) const override {
    return ElementTraits<Key>::compare(myKey, static_cast<const Node&>(other).myKey) < 0;
  }
  Text keyText() const override { return ElementTraits<Key>::description(myKey); }

  template <class T>
  T load(const T& property) const {
    const std::lock_guard lock(accessLock());
    return property;
  }
  template <class T>
  T exchange(T& property, T value) {
    const std::lock_guard lock(accessLock());
    std::swap(property, value);
    return value;
  }
  // What was there before is given up without the lock.
  template <class T>
  void store(T& property, T value) {
    exchange(property, std::move(value));
  }

  Data myData = ElementTraits<Data>::nil();
  Key myKey = ElementTraits<Key>::nil();
};

// A tree of rectangles in the order of their keys that keeps itself in balance: the heights of two children never
// differ by more than one.
//
// ```cpp
// QNRectTree<Text, Ref<NSImage>> photos;
// const auto node = QNRectTreeNode<Text, Ref<NSImage>>::RectTreeNode();
// node->setKey(u"/2026/garden.png");
// node->setRect({{0, 0}, {400, 300}});
// photos.insertNode(node);
// ```
//
// Rotations move keys, data and rectangles from node to node and leave the nodes where they are, so the root stays the
// same object once there is one. Meant for some thousand nodes: inserting one is linear. Threads as for its nodes.
template <class Key = Ref<NSObject>, class Data = Ref<NSObject>>
class QNRectTree {
 public:
  using Node = QNRectTreeNode<Key, Data>;
  // What a visit calls with each node and the extra object that the visit was given.
  using Visitor = std::function<void(const Ref<Node>& node, const Ref<NSObject>& withObject)>;

  // rootNode  Nil for an empty tree.
  Ref<Node> rootNode() const { return myRoot.leftNode(); }
  // setRootNode:
  void setRootNode(Ref<Node> node) { myRoot.setLeftNode(std::move(node)); }

  // insertNode:  Nothing for nil. A node with a nil key is refused with an error in the log ("Tree node has no key.").
  // The first node becomes the root, each other one is inserted below it.
  void insertNode(const Ref<Node>& node) {
    if (!node) return;
    if (ElementTraits<Key>::isNil(node->key())) return detail::reportNodeWithoutKey();
    if (const Ref<Node> root = rootNode()) return root->insert(node);
    setRootNode(node);
  }

  // makeNodePerformSelector:target:withObject:  Calls `visitor` with every node and the object: a node comes before its
  // left subtree, and that before the right one. Nothing for an empty visitor.
  void makeNodePerformSelector(const Visitor& visitor, const Ref<NSObject>& withObject) const {
    makeNode(rootNode(), visitor, withObject);
  }
  // The same with a member function of `target`; nothing when either is null.
  template <class Target>
  void makeNodePerformSelector(void (Target::*selector)(const Ref<Node>&, const Ref<NSObject>&),
                               std::type_identity_t<Target>* target, const Ref<NSObject>& withObject) const {
    makeNode(rootNode(), selector, target, withObject);
  }
  // makeNode:performSelector:target:withObject:  The same for the nodes of a subtree; nothing for nil.
  void makeNode(const Ref<Node>& node, const Visitor& performVisitor, const Ref<NSObject>& withObject) const {
    if (performVisitor) visit(node, performVisitor, withObject);
  }
  template <class Target>
  void makeNode(const Ref<Node>& node, void (Target::*performSelector)(const Ref<Node>&, const Ref<NSObject>&),
                std::type_identity_t<Target>* target, const Ref<NSObject>& withObject) const {
    if (performSelector && target) visit(node, std::bind_front(performSelector, target), withObject);
  }

  // printTree  Writes the tree to the system log: one message with what `printTree` below gives for the root at level
  // 0, then one with the number of leafs; "- Tree is empty. -" when it is.
  void printTree() const {
    if (const Ref<Node> root = rootNode()) return detail::logTree(printTree(root, 0), root->leafs());
    detail::logEmptyTree();
  }
  // printTree:indent:  The subtree turned on its side, a line for each node: what follows the final "/" of its key,
  // indented by four blanks for each level. The greatest key comes first. Empty for nil.
  //   /x/a, /x/b, /x/c at level 0 => u"    c\nb\n    a\n"
  Text printTree(const Ref<Node>& node, std::int64_t indent) const {
    Text rendering;
    Node::appendRendering(node.get(), indent, rendering);
    return rendering;
  }
  // indentBlanks:  That many blanks; none for a number below 1.
  Text indentBlanks(std::int64_t blanks) const { return detail::blanks(blanks); }
  // printInorderNode:  Writes a message for each node of the subtree to the system log, in the order of the keys:
  // "Key: /x/a (is leaf: yes)". Nothing for nil.
  void printInorderNode(const Ref<Node>& node) const { Node::logInorder(node.get()); }

 private:
  // Holds the node while it is visited, whatever the visitor does to the tree.
  template <class Function>
  static void visit(const Ref<Node> node, const Function& visitor, const Ref<NSObject>& withObject) {
    if (!node) return;
    visitor(node, withObject);
    visit(std::static_pointer_cast<Node>(node->myLeftNode), visitor, withObject);
    visit(std::static_pointer_cast<Node>(node->myRightNode), visitor, withObject);
  }

  // A node of no tree whose left child is the root, which so has a node's indivisible access.
  Node myRoot;
};

}  // namespace kelvane
