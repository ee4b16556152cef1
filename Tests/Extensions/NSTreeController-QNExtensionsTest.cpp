#include <functional>
#include <random>
#include <set>

#include "Extensions/NSOutlineView-QNExtensions.h"
#include "Extensions/NSTreeController-QNExtensions.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/Properties.h"
#include "Support/FakeDesktop.h"
#include "Support/Testing.h"

namespace kelvane {
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
  setSelectedObjects(*tree, NSArray::arrayWithObjects({node(u"E"), node(u"F"), node(u"B"), node(u"E")}));
  Text selection;
  for (const auto& selected : tree->selectionIndexPaths()) selection += selected->description();
  EXPECT_EQ(selection, u"(2)(0, 0)(2)");
  EXPECT_EQ(listener.heard, u"cs");

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
  EXPECT_THROW(search({NSArray::arrayWithObjects({})}, std::nullopt, u"B"), std::invalid_argument);
}

// An outline whose rows hold one item for each object that expanded objects show.
struct FakeOutlineView : FakeViewOf<NSOutlineView> {
  FakeOutlineView(Ref<NSTreeController> theTree, std::function<bool(const Node&)> isExpanded)
      : tree(std::move(theTree)) {
    addRows(*tree->content(), isExpanded);
  }
  void addRows(const NSArray& objects, const std::function<bool(const Node&)>& isExpanded) {
    for (const Ref<NSObject>& object : objects) {
      const auto model = as<Node>(object);
      rows.push_back(std::make_shared<NSObject>());
      if (!isExpanded(*model)) continue;
      expanded.insert(rows.back());
      addRows(*model->children, isExpanded);
    }
  }

  std::int64_t numberOfRows() const override { return static_cast<std::int64_t>(rows.size()); }
  Ref<NSObject> itemAtRow(std::int64_t row) const override { return rows.at(static_cast<std::size_t>(row)); }
  bool isItemExpanded(const Ref<NSObject>& item) const override { return expanded.contains(item); }
  Ref<NSDictionary> infoForBinding(TextView binding) const override {
    if (!tree || binding != u"contentAttributeKey") return nullptr;
    return NSDictionary::dictionaryWithEntries({{Text(NSObservedObjectKey), tree}});
  }

  Ref<NSTreeController> tree;
  std::vector<Ref<NSObject>> rows;
  std::set<Ref<NSObject>> expanded;
};

TEST(NSOutlineView, FindsWhatRowsShow) {
  const auto tree = controller({node(u"A", {node(u"a"), node(u"b"), node(u"c")}), node(u"B"), node(u"C")});
  FakeOutlineView open(tree, [](const Node&) { return true; });
  Text names;
  for (const Ref<NSObject>& row : open.rows) {
    const auto model = as<Node>(realItemForOpaqueItem(open, row));
    names += model ? model->name : u"-";
  }
  // The children of an expanded row are held against one row too early, and the last of their rows against none.
  EXPECT_EQ(names, u"Abc-BC");
  EXPECT_EQ(_treeController(open), tree);
  open.tree = nullptr;
  EXPECT_EQ(_treeController(open), nullptr);
  EXPECT_EQ(realItemForOpaqueItem(open, open.rows[0]), nullptr);
}

// The searches as one would write them down.
Ref<NSIndexPath> plainPath(const NSArray& children, const NSObject& wanted, const NSIndexPath& base) {
  for (std::size_t i = 0; i < children.count(); ++i) {
    const auto child = as<Node>(children.objectAtIndex(i));
    const auto here = base.indexPathByAddingIndex(i);
    if (wanted.isEqual(*child)) return here;
    if (const auto below = plainPath(*child->children, wanted, *here)) return below;
  }
  return nullptr;
}

Ref<NSObject> plainItem(const NSOutlineView& view, const Ref<NSObject>& opaque, std::int64_t& row,
                        const NSArray& items) {
  for (const Ref<NSObject>& model : items) {
    if (row >= view.numberOfRows()) return nullptr;
    const Ref<NSObject> rowItem = view.itemAtRow(row);
    if (rowItem == opaque) return model;
    if (view.isItemExpanded(rowItem))
      if (const auto below = plainItem(view, opaque, row, *as<Node>(model)->children)) return below;
    ++row;
  }
  return nullptr;
}

TEST(NSOutlineView, SearchesRandomTreesAsThePlainOnesDo) {
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
    const std::uint_fast32_t open = static_cast<std::uint_fast32_t>(random());
    const FakeOutlineView view(tree, [&](const Node& model) { return (open >> (model.name[0] % 32) & 1) != 0; });
    for (const Ref<NSObject>& wanted : nodes)
      EXPECT_TRUE(isEqual(indexPathToObject(*tree, wanted), plainPath(*content, *wanted, NSIndexPath())));
    std::vector<Ref<NSObject>> items = view.rows;
    items.push_back(nullptr);
    for (const Ref<NSObject>& item : items) {
      std::int64_t row = 0, plainRow = 0;
      EXPECT_EQ(_realItemForOpaqueItem(view, item, row, content), plainItem(view, item, plainRow, *content));
      EXPECT_EQ(row, plainRow);
    }
  }
}

TEST(NSOutlineView, TreesMayBeDeepOrEndless) {
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
  FakeOutlineView view(tree, [](const Node&) { return false; });
  view.expanded.insert(view.rows[0]);
  EXPECT_EQ(realItemForOpaqueItem(view, node(u"D")), nullptr);
  endless->children->removeAllObjects();
}

}  // namespace
}  // namespace kelvane
