#include "Geo/RectTreeLinks.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/Raise.h"
#include "Utilities/QNLogger.h"

namespace kelvane::detail {
namespace {

void requireChild(const char* operation, const Ref<RectTreeLinks>& child) {
  if (!child) raiseInvalidArgument(operation, "the node has no child on the side that is to come up");
}

// What follows the final "/".
TextView lastPathComponent(TextView path) { return path.substr(path.rfind(u'/') + 1); }

}  // namespace

RectTreeLinks::~RectTreeLinks() = default;

CGRect RectTreeLinks::rect() const {
  const std::lock_guard lock(accessLock());
  return myRect;
}

void RectTreeLinks::setRect(const CGRect& rect) {
  const std::lock_guard lock(accessLock());
  myRect = rect;
}

std::int64_t RectTreeLinks::height() const { return heightOf(this); }

std::int64_t RectTreeLinks::balance() const { return measure(this).balance; }

std::int64_t RectTreeLinks::leafs() const {
  const std::int64_t below = (myLeftNode ? myLeftNode->leafs() : 0) + (myRightNode ? myRightNode->leafs() : 0);
  return myLeftNode && myRightNode ? below : below + 1;
}

std::int64_t RectTreeLinks::heightOf(const RectTreeLinks* node) {
  return node ? 1 + std::max(heightOf(node->myLeftNode.get()), heightOf(node->myRightNode.get())) : 0;
}

RectTreeLinks::Shape RectTreeLinks::measure(const RectTreeLinks* node) {
  if (!node) return {};
  const std::int64_t left = heightOf(node->myLeftNode.get());
  const std::int64_t right = heightOf(node->myRightNode.get());
  return {1 + std::max(left, right), left - right};
}

void RectTreeLinks::doBalance() { balanceWith(measure(myLeftNode.get()), measure(myRightNode.get())); }

RectTreeLinks::Shape RectTreeLinks::balanceWith(const Shape& left, const Shape& right) {
  const std::int64_t balance = left.height - right.height;
  if (balance >= 2)
    left.balance > 0 ? rotateRight() : rotateLeftRight();
  else if (balance <= -2)
    right.balance < 0 ? rotateLeft() : rotateRightLeft();
  else
    return {1 + std::max(left.height, right.height), balance};
  return measure(this);
}

void RectTreeLinks::insertLinks(Link node) {
  struct Step {
    RectTreeLinks* node;
    bool goesLeft;
  };
  Shape below = measure(node.get());
  std::vector<Step> way;
  for (RectTreeLinks* at = this; at;) {
    const bool goesLeft = node->hasKeyBefore(*at);
    way.push_back({at, goesLeft});
    at = (goesLeft ? at->myLeftNode : at->myRightNode).get();
  }
  const auto [last, goesLeft] = way.back();
  last->storeLink(goesLeft ? last->myLeftNode : last->myRightNode, std::move(node));
  // Each node's height follows from the child on the way, which is known, and the other one, which is walked once.
  for (; !way.empty(); way.pop_back()) {
    RectTreeLinks& at = *way.back().node;
    below = way.back().goesLeft ? at.balanceWith(below, measure(at.myRightNode.get()))
                                : at.balanceWith(measure(at.myLeftNode.get()), below);
  }
}

void RectTreeLinks::bringUp(Link RectTreeLinks::*side, Link RectTreeLinks::*otherSide) {
  RectTreeLinks& child = *(this->*side);
  swapPayload(child);
  const Link outer = child.*side;
  const Link inner = child.*otherSide;
  const Link other = this->*otherSide;
  storeLink(this->*otherSide, this->*side);
  storeLink(this->*side, outer);
  child.storeLink(child.*side, inner);
  child.storeLink(child.*otherSide, other);
}

void RectTreeLinks::rotateLeft() {
  requireChild("rotateLeft", myRightNode);
  bringUp(&RectTreeLinks::myRightNode, &RectTreeLinks::myLeftNode);
}

void RectTreeLinks::rotateRight() {
  requireChild("rotateRight", myLeftNode);
  bringUp(&RectTreeLinks::myLeftNode, &RectTreeLinks::myRightNode);
}

void RectTreeLinks::rotateLeftRight() {
  requireChild("rotateLeftRight", myLeftNode);
  myLeftNode->rotateLeft();
  rotateRight();
}

void RectTreeLinks::rotateRightLeft() {
  requireChild("rotateRightLeft", myRightNode);
  myRightNode->rotateRight();
  rotateLeft();
}

void RectTreeLinks::giveUpAll() noexcept {
  giveUpPayload();
  if (isLeaf()) return;
  std::vector<Link> pending;
  const auto postponeChildren = [&pending](RectTreeLinks& node) {
    if (node.myRightNode) pending.push_back(std::move(node.myRightNode));
    if (node.myLeftNode) pending.push_back(std::move(node.myLeftNode));
  };
  postponeChildren(*this);
  while (!pending.empty()) {
    const Link node = std::move(pending.back());
    pending.pop_back();
    // A node that somebody else holds keeps its subtree.
    if (node.use_count() > 1) continue;
    node->giveUpPayload();
    postponeChildren(*node);
  }
}

void RectTreeLinks::appendRendering(const RectTreeLinks* node, std::int64_t indent, Text& rendering) {
  if (!node) return;
  appendRendering(node->myRightNode.get(), indent + 1, rendering);
  rendering += blanks(4 * indent);
  rendering += lastPathComponent(node->keyText());
  rendering += u'\n';
  appendRendering(node->myLeftNode.get(), indent + 1, rendering);
}

void RectTreeLinks::logInorder(const RectTreeLinks* node) {
  if (!node) return;
  logInorder(node->myLeftNode.get());
  NSLog(u"Key: %@ (is leaf: %@)", node->keyText(), TextView(node->isLeaf() ? u"yes" : u"no"));
  logInorder(node->myRightNode.get());
}

std::mutex& RectTreeLinks::accessLock() const {
  static auto& locks = *new std::array<std::mutex, 16>();
  // Neighbours in memory get different locks.
  return locks[reinterpret_cast<std::uintptr_t>(this) / 64 % locks.size()];
}

RectTreeLinks::Link RectTreeLinks::loadLink(const Link& link) const {
  const std::lock_guard lock(accessLock());
  return link;
}

void RectTreeLinks::storeLink(Link& link, Link node) {
  const std::lock_guard lock(accessLock());
  link.swap(node);
}

void reportNodeWithoutKey() {
  QNLogger::sharedLogger().error(40, "Sources/Geo/QNRectTree", "-[QNRectTree insertNode:]", u"Tree node has no key.");
}

Text blanks(std::int64_t count) { return Text(static_cast<std::size_t>(std::max(count, std::int64_t{0})), u' '); }

void logTree(const Text& rendering, std::int64_t leafs) {
  systemLog(rendering);
  NSLog(u"Leafs: %ld", leafs);
}

void logEmptyTree() { systemLog(u"- Tree is empty. -"); }

}  // namespace kelvane::detail
