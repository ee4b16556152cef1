#include <QAbstractItemModelTester>
#include <QApplication>
#include <QTreeView>

#include "Extensions/NSOutlineView-QNExtensions.h"
#include "Extensions/NSTreeController-QNExtensions.h"
#include "Platform/Foundation/Properties.h"
#include "Qt/QtOutlineView.h"
#include "Support/Testing.h"

namespace {

// A model object, which counts how often all of its kind are asked for their children.
struct Folder : NSObject {
  explicit Folder(TextView name) : myName(name) {}

  const PropertyTable& propertyTable() const override {
    static const PropertyTable table(NSObject::propertyTable(),
                                     {property(u"name", &Folder::myName), property(u"children", &Folder::children),
                                      property(u"size", &Folder::mySize), property(u"isOpen", &Folder::myIsOpen)});
    return table;
  }
  Ref<NSMutableArray> children() const {
    ++reads;
    return myChildren;
  }
  Ref<Folder> add(TextView name) {
    auto child = std::make_shared<Folder>(name);
    myChildren->addObject(child);
    return child;
  }

  static inline int reads = 0;
  Text myName;
  int mySize = 7;
  bool myIsOpen = false;
  Ref<NSMutableArray> myChildren = std::make_shared<NSMutableArray>();
};

struct QtOutlineViewTest : testing::Test {
  QtOutlineViewTest() {
    a->add(u"a1");
    a->add(u"a2")->add(u"a2x");
    top->addObject(a);
    top->addObject(b);
    controller->setContent(top);
    outline = bindOutlineView(*tree, controller, {{u"Name", u"name", true}, {u"Size", u"size", true}});
    tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    tree->show();
  }

  static std::string nameOf(const Ref<NSObject>& object) {
    return object ? utf8(static_cast<const Folder&>(*object).myName) : "nil";
  }
  std::string rows() const {
    std::string result;
    QModelIndex index = tree->model()->index(0, 0);
    for (std::int64_t row = 0; row < outline->numberOfRows(); ++row, index = tree->indexBelow(index)) {
      EXPECT_EQ(nameOf(modelObjectAt(index)), index.data().toString().toStdString());
      result += index.data().toString().toStdString() + " ";
    }
    EXPECT_FALSE(index.isValid()) << "no more rows than that";
    return result;
  }
  QModelIndex at(std::initializer_list<int> path) const {
    QModelIndex index;
    for (const int row : path) index = tree->model()->index(row, 0, index);
    return index;
  }
  std::vector<std::string> selected() const {
    std::vector<std::string> paths;
    for (const auto& path : controller->selectionIndexPaths()) paths.push_back(utf8(path->description()));
    return paths;
  }

  Ref<Folder> a = std::make_shared<Folder>(u"a");
  Ref<Folder> b = std::make_shared<Folder>(u"b");
  Ref<NSMutableArray> top = std::make_shared<NSMutableArray>();
  Ref<NSTreeController> controller = std::make_shared<NSTreeController>(u"children");
  std::unique_ptr<QTreeView> tree = std::make_unique<QTreeView>();
  Ref<NSOutlineView> outline;
};

TEST_F(QtOutlineViewTest, RowsAreItemsWithModelObjects) {
  EXPECT_EQ(rows(), "a b ");
  tree->expand(at({0}));
  EXPECT_EQ(rows(), "a a1 a2 b ");
  tree->expandAll();
  EXPECT_EQ(rows(), "a a1 a2 a2x b ");
  const Ref<NSObject> item = outline->itemAtRow(2);
  EXPECT_TRUE(outline->isItemExpanded(item));
  EXPECT_FALSE(outline->isItemExpanded(outline->itemAtRow(1)));
  EXPECT_EQ(outline->itemAtRow(5), nullptr);
  EXPECT_EQ(outline->itemAtRow(-1), nullptr);
  EXPECT_EQ(realItemForOpaqueItem(*outline, outline->itemAtRow(0)), a);
  tree->collapseAll();
  EXPECT_EQ(rows(), "a b ");
  EXPECT_EQ(realItemForOpaqueItem(*outline, outline->itemAtRow(1)), b);
  tree->expandToDepth(0);
  EXPECT_EQ(rows(), "a a1 a2 b ");
  EXPECT_EQ(outline->itemAtRow(2), item) << "the same item for the same row";
  EXPECT_EQ(outline, outlineViewFor(*tree));
}

TEST_F(QtOutlineViewTest, WhatIsStillThereStaysExpandedAndSelected) {
  const QAbstractItemModelTester tester(tree->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  tree->expandAll();
  setSelectedObjects(*controller, arrayOf({a->myChildren->objectAtIndex(1), b}));
  EXPECT_EQ(tree->selectionModel()->selectedRows().size(), 2);
  const Ref<NSObject> a1 = outline->itemAtRow(1);
  const Ref<NSObject> a2 = outline->itemAtRow(2);
  a->myChildren->insertObject(std::make_shared<Folder>(u"a0"), 0);
  a->myChildren->exchangeObjectAtIndex(1, 2);
  controller->rearrangeObjects();
  EXPECT_EQ(rows(), "a a0 a2 a2x a1 b ");
  EXPECT_EQ(outline->itemAtRow(2), a2);
  EXPECT_TRUE(outline->isItemExpanded(a2));
  EXPECT_THAT(selected(), ElementsAre("(0, 1)", "(1)"));
  controller->setContent(arrayOf({std::make_shared<Folder>(u"new"), a}));
  EXPECT_EQ(rows(), "new a a0 a2 a2x a1 ");
  EXPECT_THAT(selected(), ElementsAre("(1, 1)"));
  a->myChildren->removeAllObjects();
  controller->rearrangeObjects();
  EXPECT_EQ(rows(), "new a ");
  EXPECT_TRUE(selected().empty());
  EXPECT_FALSE(outline->isItemExpanded(a1));
  controller->setContent(nullptr);
  EXPECT_EQ(outline->numberOfRows(), 0);
}

TEST_F(QtOutlineViewTest, UsersSelectAndEdit) {
  CapturedSystemLog log;
  tree->expandAll();
  tree->selectionModel()->select(at({0, 1}), QItemSelectionModel::Select | QItemSelectionModel::Rows);
  tree->selectionModel()->select(at({0, 0}), QItemSelectionModel::Select | QItemSelectionModel::Rows);
  EXPECT_THAT(selected(), ElementsAre("(0, 0)", "(0, 1)"));
  QAbstractItemModel& model = *tree->model();
  EXPECT_TRUE(model.setData(at({1}), u"Ö"_qs));
  EXPECT_EQ(b->myName, u"Ö");
  const QModelIndex size = at({1}).siblingAtColumn(1);
  EXPECT_TRUE(model.setData(size, 12));
  EXPECT_EQ(b->mySize, 12);
  EXPECT_FALSE(model.setData(size, u"many"_qs));
  EXPECT_EQ(model.headerData(1, Qt::Horizontal), u"Size"_qs);
  // A key path that leads nowhere is reported, but not with each painting; truth values are boxes.
  bindOutlineView(*tree, controller, {{u"", u"isOpen", true}, {u"", u"isOpen"}, {u"", u"none"}});
  EXPECT_TRUE(tree->model()->setData(at({1}), Qt::Checked, Qt::CheckStateRole));
  EXPECT_TRUE(b->myIsOpen);
  EXPECT_FALSE(tree->model()->setData(at({1}).siblingAtColumn(1), Qt::Unchecked, Qt::CheckStateRole));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(at({1}).siblingAtColumn(2).data(), QVariant());
  EXPECT_EQ(log.take().size(), 1U);
}

TEST_F(QtOutlineViewTest, HasChildrenAsTheKeyPathsSay) {
  a->myIsOpen = true;
  b->mySize = 0;
  const auto hasChildren = [&](std::optional<Text> count, std::optional<Text> leaf) {
    controller = std::make_shared<NSTreeController>(u"children", std::move(count), std::move(leaf));
    controller->setContent(top);
    bindOutlineView(*tree, controller, {{u"", u"name"}});
    return std::pair(tree->model()->hasChildren(at({0})), tree->model()->hasChildren(at({1})));
  };
  EXPECT_EQ(hasChildren(std::nullopt, std::nullopt), std::pair(true, false));
  EXPECT_EQ(hasChildren(std::nullopt, u"isOpen"), std::pair(false, false));
  b->mySize = 1;
  EXPECT_EQ(hasChildren(u"size", u"isOpen"), std::pair(false, true));
}

// The search as one would write it down.
Ref<NSObject> plainItem(const NSOutlineView& view, const Ref<NSObject>& opaque, std::int64_t& row,
                        const NSArray& items) {
  for (const Ref<NSObject>& model : items) {
    if (row >= view.numberOfRows()) return nullptr;
    const Ref<NSObject> rowItem = view.itemAtRow(row);
    if (rowItem == opaque) return model;
    if (view.isItemExpanded(rowItem))
      if (const auto below = plainItem(view, opaque, row, *as<Folder>(model)->myChildren)) return below;
    ++row;
  }
  return nullptr;
}

TEST_F(QtOutlineViewTest, SearchesRandomTreesAsThePlainSearchDoes) {
  std::mt19937 random(23);
  for (int round = 0; round < 50; ++round) {
    std::vector<Ref<Folder>> folders{std::make_shared<Folder>(u"root")};
    for (std::size_t i = 1 + random() % 30; i > 0; --i)
      folders.push_back(folders[random() % folders.size()]->add(Text(1, static_cast<char16_t>(u'a' + random() % 20))));
    controller->setContent(folders[0]->myChildren);
    for (QModelIndex index = at({0}); index.isValid(); index = tree->indexBelow(index))
      if (random() % 2 == 0) tree->expand(index);
    for (std::int64_t i = 0; i <= outline->numberOfRows(); ++i) {
      std::int64_t row = 0, plainRow = 0;
      const Ref<NSObject> item = outline->itemAtRow(i);
      EXPECT_EQ(_realItemForOpaqueItem(*outline, item, row, folders[0]->myChildren),
                plainItem(*outline, item, plainRow, *folders[0]->myChildren));
      EXPECT_EQ(row, plainRow);
    }
  }
  // The children of an expanded row are held against one row too early, and the last of their rows against none.
  for (const TextView name : {u"a3", u"a4"}) a->add(name);
  a->myChildren->removeObjectAtIndex(1);
  controller->setContent(top);
  tree->expandAll();
  std::string names;
  for (std::int64_t row = 0; row < outline->numberOfRows(); ++row)
    names += nameOf(realItemForOpaqueItem(*outline, outline->itemAtRow(row))) + " ";
  EXPECT_EQ(names, "a a3 a4 nil b ");
}

TEST_F(QtOutlineViewTest, ManyRowsTakeLinearWork) {
  const auto big = std::make_shared<NSMutableArray>();
  constexpr int folders = 1000;
  constexpr int all = folders * 100;
  for (int i = 0; i < folders; ++i) {
    const auto folder = std::make_shared<Folder>(u"f");
    for (int k = 0; k < 99; ++k) folder->add(u"x");
    big->addObject(folder);
  }
  controller->setContent(big);
  Folder::reads = 0;
  tree->expandAll();
  ASSERT_EQ(outline->numberOfRows(), all);
  for (int row = 0; row < all; ++row) ASSERT_NE(outline->itemAtRow(row), nullptr);
  EXPECT_EQ(realItemForOpaqueItem(*outline, std::make_shared<NSObject>()), nullptr);
  const Ref<NSObject> last = outline->itemAtRow(all - 1);
  big->removeObjectAtIndex(0);
  tree->selectAll();
  controller->rearrangeObjects();
  EXPECT_EQ(outline->itemAtRow(all - 101), last);
  EXPECT_EQ(controller->selectionIndexPaths().size(), std::size_t{all - 100});
  EXPECT_LT(Folder::reads, 20 * all);
}

TEST_F(QtOutlineViewTest, TreesMayBeDeepAndWithoutEnd) {
  Ref<Folder> bottom = b;
  std::vector<std::size_t> path{1};
  for (path.resize(20000); path.size() > 1; path.pop_back()) bottom = bottom->add(u"b");
  path.resize(20000);
  controller->setSelectionIndexPaths({std::make_shared<NSIndexPath>(path)});
  EXPECT_EQ(modelObjectAt(tree->selectionModel()->selectedRows().value(0)), bottom);
  b->myChildren->removeAllObjects();
  b->myChildren->addObject(b);
  controller->rearrangeObjects();
  EXPECT_TRUE(controller->selectionIndexPaths().empty());
  tree->expand(at({1}));
  tree->expand(at({1, 0}));
  EXPECT_EQ(rows(), "a b b b ");
  EXPECT_EQ(realItemForOpaqueItem(*outline, std::make_shared<NSObject>()), nullptr);
  b->myChildren->removeAllObjects();
}

TEST_F(QtOutlineViewTest, MayBeBoundAnewToWhatIsSelected) {
  struct GoesInto : NSTreeControllerObserver {
    void treeControllerSelectionDidChange(NSTreeController&) override { go(); }
    std::function<void()> go;
  } user;
  const auto within = std::make_shared<NSTreeController>(u"children");
  within->setContent(a->myChildren);
  user.go = [&] { bindOutlineView(*tree, within, {{u"", u"name"}}); };
  controller->addControllerObserver(user);
  tree->selectionModel()->select(at({0}), QItemSelectionModel::Select | QItemSelectionModel::Rows);
  controller->removeControllerObserver(user);
  EXPECT_EQ(rows(), "a1 a2 ");
  EXPECT_EQ(_treeController(*outline), within);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(controller.use_count(), 1) << "nobody else holds it";
  EXPECT_EQ(rows(), "a1 a2 ");
}

TEST_F(QtOutlineViewTest, ViewsAndBindingsMayGo) {
  const Ref<NSObject> item = outline->itemAtRow(0);
  EXPECT_EQ(_treeController(*outline), controller);
  EXPECT_EQ(outline->infoForBinding(u"value"), nullptr);
  bindOutlineView(*tree, nullptr, {});
  EXPECT_EQ(tree->model(), nullptr);
  EXPECT_EQ(outline->numberOfRows(), 0);
  EXPECT_EQ(_treeController(*outline), nullptr);
  EXPECT_FALSE(outline->isItemExpanded(item));
  bindOutlineView(*tree, controller, {{u"", u"name"}});
  EXPECT_EQ(rows(), "a b ");
  tree.reset();
  EXPECT_EQ(outline->numberOfRows(), 0);
  EXPECT_EQ(outline->itemAtRow(0), nullptr);
  controller->rearrangeObjects();
  EXPECT_EQ(controller.use_count(), 1) << "nobody else holds it";
}

}  // namespace
