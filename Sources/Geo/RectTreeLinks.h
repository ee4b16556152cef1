#pragma once

#include <cstdint>
#include <mutex>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

namespace kelvane::detail {

// What a node of a QNRectTree is apart from its payload: a place in a tree that can be measured and balanced.
//
// Each access through a function here or in QNRectTreeNode is indivisible. Measuring, walking and balancing read the
// links as they are, since nobody else may change the tree meanwhile; they write them under the lock, for those that
// read one property.
class KELVANE_EXPORT RectTreeLinks {
 public:
  RectTreeLinks() = default;
  virtual ~RectTreeLinks();
  RectTreeLinks(const RectTreeLinks&) = delete;
  RectTreeLinks& operator=(const RectTreeLinks&) = delete;

  // rect  The payload rectangle.
  CGRect rect() const;
  // setRect:
  void setRect(const CGRect& rect);

  // leaf, isLeaf  Whether the node has no children.
  bool isLeaf() const { return !myLeftNode && !myRightNode; }
  // height  1 for a node without children, else 1 more than the higher child's. Linear in the size of the subtree.
  std::int64_t height() const;
  // balance  The left child's height less the right one's, where a missing child counts 0. Linear.
  std::int64_t balance() const;
  // leafs  The number of nodes in the subtree that have fewer than two children. Linear.
  std::int64_t leafs() const;

  // doBalance  Restores the balance of this node with one rotation, when its children's heights differ by two or more.
  // A child in balance takes the double rotation.
  void doBalance();
  // rotateLeft  Turns the node and its right child to the left: their payloads change places, and then their children
  // move. This and the other rotations raise std::invalid_argument when a child that they turn is missing.
  void rotateLeft();
  // rotateRight
  void rotateRight();
  // rotateLeftRight  Turns the left child to the left, then the node to the right.
  void rotateLeftRight();
  // rotateRightLeft  Turns the right child to the right, then the node to the left.
  void rotateRightLeft();

 protected:
  using Link = Ref<RectTreeLinks>;

  // A subtree, measured in one walk.
  struct Shape {
    std::int64_t height = 0;
    std::int64_t balance = 0;
  };

  // What the payload's type has to answer.
  virtual void swapPayload(RectTreeLinks& other) = 0;
  virtual void giveUpPayload() noexcept = 0;
  virtual bool hasKeyBefore(const RectTreeLinks& other) const = 0;
  virtual Text keyText() const = 0;

  // Gives up the payload and then the subtree, from the node down. For the destructor of the class that has the
  // payload, as long as that is alive. However deep the subtree, it takes no stack.
  void giveUpAll() noexcept;

  // Puts a node, which is not null, into its place in the subtree and balances all nodes on the way, from below. One
  // walk through the subtree.
  void insertLinks(Link node);
  static void appendRendering(const RectTreeLinks* node, std::int64_t indent, Text& rendering);
  static void logInorder(const RectTreeLinks* node);

  // The lock for the properties of one node. Nodes share a few locks: a node is smaller than a lock.
  std::mutex& accessLock() const;
  Link loadLink(const Link& link) const;
  // What the link referred to before is given up without the lock.
  void storeLink(Link& link, Link node);

  Link myLeftNode;
  Link myRightNode;
  CGRect myRect;

 private:
  static std::int64_t heightOf(const RectTreeLinks* node);
  static Shape measure(const RectTreeLinks* node);
  // Balances the node, whose children have these shapes.
  Shape balanceWith(const Shape& left, const Shape& right);
  // Turns the node and the child on one side, which is not null, so that the child comes up.
  void bringUp(Link RectTreeLinks::*side, Link RectTreeLinks::*otherSide);
};

// "Tree node has no key."
KELVANE_EXPORT void reportNodeWithoutKey();
// `count` blanks; none for a count below 1.
KELVANE_EXPORT Text blanks(std::int64_t count);
KELVANE_EXPORT void logTree(const Text& rendering, std::int64_t leafs);
KELVANE_EXPORT void logEmptyTree();

}  // namespace kelvane::detail
