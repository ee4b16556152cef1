#include "Extensions/NSTreeController-QNExtensions.h"
#include "Platform/Foundation/Properties.h"
#include "Support/Testing.h"

namespace {

// A model object; equal to others of the same name. What it has under "leaf" is a script: one value for each reading,
// the last one for good.
struct Node : NSObject {
  explicit Node(Text theName, std::vector<Ref<NSObject>> below = {})
      : name(std::move(theName)), children(std::make_shared<NSMutableArray>(std::move(below))) {}

  const PropertyTable& propertyTable() const override {
    static const PropertyTable table(
        NSObject::propertyTable(),
        {property(u"children", &Node::children),
         property(u"count", &Node::count),
         {u"leaf", [](const NSObject& node) { return static_cast<const Node&>(node).leaf(); }, nullptr}});
    return table;
  }
  bool isEqual(const NSObject& other) const override { return as<Node>(&other) && as<Node>(&other)->name == name; }
  std::size_t hash() const override { return std::hash<Text>()(name); }

  int count() const { return static_cast<int>(children->count()); }
  Ref<NSObject> leaf() const {
    if (leaves.empty()) return nullptr;
    return leaves[std::min(readings++, leaves.size() - 1)];
  }

  Text name;
  Ref<NSMutableArray> children;
  std::vector<Ref<NSObject>> leaves;
  mutable std::size_t readings = 0;
};

Ref<Node> node(TextView name, std::vector<Ref<NSObject>> below = {}) {
  return std::make_shared<Node>(Text(name), std::move(below));
}

Ref<NSTreeController> controller(std::vector<Ref<NSObject>> content, std::optional<Text> countKeyPath = {},
                                 std::optional<Text> leafKeyPath = {}) {
  auto made = std::make_shared<NSTreeController>(u"children", std::move(countKeyPath), std::move(leafKeyPath));
  made->setContent(std::make_shared<NSArray>(std::move(content)));
  return made;
}

Text path(const NSTreeController& tree, TextView name) { return description(indexPathToObject(tree, node(name))); }

TEST(NSTreeController, FindsEqualObjectsInOrder) {
  const auto content = [] {
    return std::vector<Ref<NSObject>>{node(u"A", {node(u"B"), node(u"C", {node(u"D")})}), node(u"D"), node(u"E")};
  };
  const auto tree = controller(content());
  EXPECT_EQ(path(*tree, u"C"), u"(0, 1)");
  EXPECT_EQ(path(*tree, u"D"), u"(0, 1, 0)");  // before the one at the top
  EXPECT_EQ(path(*tree, u"F"), u"(null)");
  EXPECT_EQ(indexPathToObject(*tree, nullptr), nullptr);

  struct Listener : NSTreeControllerObserver {
    void treeControllerContentDidChange(NSTreeController&) override { heard += u'c'; }
    void treeControllerSelectionDidChange(NSTreeController&) override { heard += u's'; }
    Text heard;
  } listener;
  tree->addControllerObserver(listener);
  tree->rearrangeObjects();
  setSelectedObjects(*tree, arrayOf({node(u"E"), node(u"F"), node(u"B"), node(u"E")}));
  Text selection;
  for (const auto& selected : tree->selectionIndexPaths()) selection += selected->description();
  EXPECT_EQ(selection, u"(2)(0, 0)(2)");
  EXPECT_EQ(listener.heard, u"cs");

  const auto twins = controller({node(u"T"), node(u"T")});
  setSelectedObjects(*twins, arrayOf({node(u"T"), node(u"T")}));
  for (const auto& selected : twins->selectionIndexPaths()) EXPECT_EQ(selected->description(), u"(0)");
  EXPECT_EQ(twins->selectionIndexPaths().size(), 2U);

  // A count key path alone hides all that is not at the top, and so does the truth about leaves beside it.
  EXPECT_EQ(path(*controller(content(), u"count"), u"C"), u"(null)");
  EXPECT_EQ(path(*controller(content(), u"count", u"leaf"), u"C"), u"(null)");
  EXPECT_EQ(path(*controller(content(), std::nullopt, u"leaf"), u"C"), u"(0, 1)");
}

TEST(NSTreeController, CountsUnderTheLeafKeyPath) {
  const auto parent = node(u"A", {node(u"B"), node(u"C")});
  const auto search = [&](std::vector<Ref<NSObject>> leaves, std::optional<Text> countKeyPath, TextView name) {
    parent->leaves = std::move(leaves);
    parent->readings = 0;
    return path(*controller({parent}, std::move(countKeyPath), u"leaf"), name);
  };
  EXPECT_EQ(search({box(u"no")}, std::nullopt, u"B"), u"(0, 0)");
  // First it says that it is no leaf, then how many there are.
  EXPECT_EQ(search({box(0), box(1)}, u"count", u"B"), u"(0, 0)");
  EXPECT_EQ(search({box(0), box(1)}, u"count", u"C"), u"(null)");
  EXPECT_EQ(search({box(0), box((std::int64_t{1} << 32) + 2)}, u"count", u"C"), u"(0, 1)");
  EXPECT_THROW(search({box(0), box(3)}, u"count", u"D"), std::out_of_range);
  EXPECT_THROW(search({arrayOf({})}, std::nullopt, u"B"), std::invalid_argument);
}

// The search as one would write it down.
Ref<NSIndexPath> plainPath(const NSArray& children, const NSObject& wanted, const NSIndexPath& base) {
  for (std::size_t i = 0; i < children.count(); ++i) {
    const auto child = as<Node>(children.objectAtIndex(i));
    const auto here = base.indexPathByAddingIndex(i);
    if (wanted.isEqual(*child)) return here;
    if (const auto below = plainPath(*child->children, wanted, *here)) return below;
  }
  return nullptr;
}

TEST(NSTreeController, SearchesRandomTreesAsThePlainSearchDoes) {
  std::mt19937 random(23);
  for (int round = 0; round < 300; ++round) {
    std::vector<Ref<NSObject>> nodes{node(u"root")};
    for (std::size_t i = 1 + random() % 30; i > 0; --i) {
      const Ref<NSObject> made = node(Text(1, static_cast<char16_t>(u'a' + random() % 20)));
      as<Node>(nodes[random() % nodes.size()])->children->addObject(made);
      nodes.push_back(made);
    }
    const Ref<NSArray> content = as<Node>(nodes[0])->children;
    const auto tree = controller({content->begin(), content->end()});
    for (const Ref<NSObject>& wanted : nodes)
      EXPECT_TRUE(isEqual(indexPathToObject(*tree, wanted), plainPath(*content, *wanted, NSIndexPath())));
  }
}

TEST(NSTreeController, TreesMayBeDeepOrEndless) {
  std::vector<Ref<Node>> chain{node(u"0")};
  for (int i = 1; i < 100000; ++i) {
    chain.push_back(node(Text(1, u'x')));
    chain[chain.size() - 2]->children->addObject(chain.back());
  }
  chain.back()->children->addObject(node(u"last"));
  EXPECT_EQ(indexPathToObject(*controller({chain[0]}), node(u"last"))->length(), 100001U);
  // Taken apart, lest they go by recursion.
  for (const auto& each : chain) each->children->removeAllObjects();

  const auto endless = node(u"A", {node(u"B")});
  endless->children->addObject(endless);
  const auto tree = controller({endless, node(u"C")});
  EXPECT_EQ(path(*tree, u"C"), u"(1)");
  EXPECT_EQ(path(*tree, u"D"), u"(null)");
  endless->children->removeAllObjects();
}

}  // namespace
