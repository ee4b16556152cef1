#include <atomic>
#include <thread>

#include "Geo/QNRectTree.h"
#include "Support/Testing.h"

namespace {

using Tree = QNRectTree<>;
using Node = Tree::Node;

// A node whose data is its key with "!" and whose rectangle is as wide as the key's first code unit.
Ref<Node> node(const Text& key) {
  const auto made = Node::RectTreeNode();
  made->setKey(box(key));
  made->setData(box(key + u"!"));
  made->setRect({0, 0, static_cast<double>(key[0]), 1});
  return made;
}

// "(left key right)" for each node, "." for none, each payload complete.
Text shape(const Ref<Node>& top) {
  if (!top) return u".";
  const Text key = description(top->key());
  EXPECT_EQ(description(top->data()), key + u"!");
  EXPECT_EQ(top->rect().size.width, key[0]);
  if (top->isLeaf()) return key;
  return u"(" + shape(top->leftNode()) + u" " + key + u" " + shape(top->rightNode()) + u")";
}

// The tree as it is told: heights and balances anew at each step, one after another.
void insertPlainly(const Ref<Node>& at, const Ref<Node>& added) {
  const bool goesLeft = at->key()->compare(*added->key()) > 0;
  const Ref<Node> child = goesLeft ? at->leftNode() : at->rightNode();
  if (child)
    insertPlainly(child, added);
  else if (goesLeft)
    at->setLeftNode(added);
  else
    at->setRightNode(added);
  if (at->balance() >= 2)
    at->leftNode()->balance() > 0 ? at->rotateRight() : at->rotateLeftRight();
  else if (at->balance() <= -2)
    at->rightNode()->balance() < 0 ? at->rotateLeft() : at->rotateRightLeft();
}

TEST(QNRectTree, IsWhatThePlainStepsMake) {
  std::mt19937 random(3);
  for (int round = 0; round < 60; ++round) {
    Tree tree;
    Ref<Node> plain, root;
    const int kinds = 1 + static_cast<int>(random() % 60);
    for (int i = 0; i < 60; ++i) {
      const Text key = format(u"%02d", static_cast<int>(random()) % kinds);
      tree.insertNode(node(key));
      plain ? insertPlainly(plain, node(key)) : void(plain = node(key));
      if (i == 0) root = tree.rootNode();
      ASSERT_EQ(shape(tree.rootNode()), shape(plain));
      ASSERT_EQ(tree.rootNode(), root) << "the root stays the same object";
    }
    EXPECT_LE(tree.rootNode()->height(), 8);
  }
}

// Trees that a host has linked by hand are out of balance, and a child may be in balance where none of ours is.
TEST(QNRectTree, ChildInBalanceTakesTheDoubleRotation) {
  const auto top = node(u"e");
  top->setLeftNode(node(u"b"));
  top->leftNode()->setLeftChild(node(u"a"), node(u"c"));
  EXPECT_EQ(top->height(), 3);
  EXPECT_EQ(top->balance(), 2);
  EXPECT_EQ(top->leafs(), 3) << "a node with one child counts";
  top->doBalance();
  EXPECT_EQ(shape(top), u"((a b .) c e)");
  const auto mirrored = node(u"a");
  mirrored->setRightNode(node(u"d"));
  mirrored->rightNode()->setLeftChild(node(u"c"), node(u"e"));
  mirrored->doBalance();
  EXPECT_EQ(shape(mirrored), u"(a c (. d e))");
  Node::swapDataFromNode(nullptr, top);
  EXPECT_TRUE(!top->key() && !top->data() && top->rect() == CGRectZero);
}

TEST(QNRectTree, RefusesNodesWithoutKeyAndMissingChildren) {
  CapturedSystemLog log;
  Tree tree;
  tree.insertNode(Node::RectTreeNode());
  EXPECT_THAT(log.take(), ElementsAre(u"ERROR -[QNRectTree insertNode:]:40 - Tree node has no key."));
  EXPECT_EQ(tree.rootNode(), nullptr);
  tree.insertNode(node(u"b"));
  const auto number = Node::RectTreeNode();
  number->setKey(box(1));
  EXPECT_THAT([&] { tree.insertNode(number); }, refuses("compare:"));
  EXPECT_EQ(shape(tree.rootNode()), u"b");
  for (const auto rotate : {&Node::rotateLeft, &Node::rotateRight, &Node::rotateLeftRight, &Node::rotateRightLeft})
    EXPECT_THROW((*tree.rootNode().*rotate)(), std::invalid_argument);
  EXPECT_EQ(shape(tree.rootNode()), u"b");
}

TEST(QNRectTree, VisitsNodeThenLeftThenRight) {
  struct Visitor {
    void visit(const Ref<Node>& visited, const Ref<NSObject>& object) {
      seen += description(visited->key()) + description(object);
    }
    Text seen;
  } visitor;
  Tree tree;
  for (const char16_t key : TextView(u"dbface")) tree.insertNode(node(Text(1, key)));
  tree.makeNodePerformSelector(&Visitor::visit, &visitor, box(0));
  EXPECT_EQ(visitor.seen, u"d0b0a0c0f0e0");
  tree.makeNode(nullptr, &Visitor::visit, &visitor, nullptr);
  tree.makeNodePerformSelector(&Visitor::visit, nullptr, nullptr);
  EXPECT_EQ(visitor.seen, u"d0b0a0c0f0e0");
}

TEST(QNRectTree, Prints) {
  CapturedSystemLog log;
  Tree tree;
  tree.printTree();
  EXPECT_THAT(log.take(), ElementsAre(u"- Tree is empty. -"));
  for (const char16_t* key : {u"/x/a", u"/x/b", u"/x/c"}) tree.insertNode(node(key));
  tree.printTree();
  EXPECT_THAT(log.take(), ElementsAre(u"    c\nb\n    a\n", u"Leafs: 2"));
  tree.printInorderNode(tree.rootNode());
  tree.printInorderNode(nullptr);
  EXPECT_THAT(log.take(),
              ElementsAre(u"Key: /x/a (is leaf: yes)", u"Key: /x/b (is leaf: no)", u"Key: /x/c (is leaf: yes)"));
  EXPECT_EQ(tree.printTree(node(u"ends/"), 1), u"    \n");
}

TEST(QNRectTree, FreesFromTheRootDownHoweverDeep) {
  Text freed;
  struct Datum : NSObject {
    Datum(Text& theLog, Text theName) : log(theLog), name(std::move(theName)) {}
    ~Datum() override { log += name; }
    Text& log;
    Text name;
  };
  Ref<Node> kept;
  {
    Tree tree;
    for (const char16_t key : TextView(u"dbface")) tree.insertNode(node(Text(1, key)));
    tree.makeNodePerformSelector(
        [&](const Ref<Node>& at, const Ref<NSObject>&) {
          at->setData(std::make_shared<Datum>(freed, description(at->key())));
        },
        nullptr);
    kept = tree.rootNode()->rightNode();
  }
  EXPECT_EQ(freed, u"dbac") << "a node that somebody holds keeps its subtree";
  kept.reset();
  EXPECT_EQ(freed, u"dbacfe");
  Ref<Node> deep;
  for (int i = 0; i < 300000; ++i) {
    const auto above = Node::RectTreeNode();
    above->setRightNode(std::move(deep));
    deep = above;
  }
  deep.reset();
}

// Readers of single properties meet whole values while another thread turns the tree about.
TEST(QNRectTree, SinglePropertiesAreIndivisible) {
  Tree tree;
  tree.insertNode(node(u"m"));
  const Ref<Node> root = tree.rootNode();
  std::atomic<bool> isDone = false;
  std::thread reader([&] {
    while (!isDone) {
      EXPECT_EQ(as<NSString>(root->key())->length(), 1U);
      EXPECT_EQ(as<NSString>(root->data())->length(), 2U);
      EXPECT_EQ(root->rect().size.height, 1);
      EXPECT_NE(tree.rootNode()->leftNode(), root);
    }
  });
  for (int i = 0; i < 300; ++i) tree.insertNode(node(Text(1, static_cast<char16_t>(u'm' + i))));
  isDone = true;
  reader.join();
}

}  // namespace
