#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSKeyValueMutableArray.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/Properties.h"
#include "Support/Testing.h"

namespace {

using Texts = std::vector<Text>;

constexpr NSKeyValueObservingOptions both = NSKeyValueObservingOptionNew | NSKeyValueObservingOptionOld;

struct Node : NSObject {
  Node() = default;
  explicit Node(int value) : myValue(value) {}
  const PropertyTable& propertyTable() const override {
    static const PropertyTable table(
        NSObject::propertyTable(),
        {property(u"value", &Node::myValue), property(u"name", &Node::name, &Node::setName),
         property(u"next", &Node::myNext, &Node::setNext), property(u"nodes", &Node::myNodes),
         property(u"fixed", &Node::myFixed), property(u"double", &Node::doubleValue, &Node::setDoubleValue)});
    return table;
  }
  void setValue(int value) { setField(myValue, value); }
  const Text& name() const { return myName; }
  void setName(TextView name) { setField(myName, name); }
  const Ref<Node>& next() const { return myNext; }
  void setNext(const Ref<Node>& next) { setField(myNext, next); }
  int doubleValue() const { return 2 * myValue; }
  void setDoubleValue(int value) { myValue = value / 2; }
  int value() const { return myValue; }
  const Ref<NSMutableArray>& nodes() const { return myNodes; }
  Text description() const override { return format(u"N%d", myValue); }
  using NSObject::isObserving;

  int myValue = 0;
  Text myName;
  Ref<Node> myNext;
  Ref<NSMutableArray> myNodes = std::make_shared<NSMutableArray>();
  Ref<NSArray> myFixed;
};

struct Listener : NSObject {
  void observeValueForKeyPath(TextView keyPath, NSObject& ofObject, const NSKeyValueChange& change,
                              void* context) override {
    heard.push_back(format(u"%@ of %@%@ %@: %@ -> %@", keyPath, ofObject.description(),
                           context ? format(u"[%ld]", reinterpret_cast<std::intptr_t>(context)) : Text(), shown(change),
                           flat(change.oldValue()), flat(change.newValue())));
    if (then) std::exchange(then, nullptr)();
  }
  Texts take() { return std::exchange(heard, {}); }

  Texts heard;
  std::function<void()> then;

  static Text shown(const NSKeyValueChange& change) {
    if (change.isPrior()) return u"will";
    const Text kinds[] = {u"?", u"set", u"insert", u"remove", u"replace"};
    return kinds[static_cast<std::size_t>(change.kind())] +
           (change.indexes() ? change.indexes()->description() : Text());
  }
  static Text flat(const Ref<NSObject>& value) {
    return value ? stringByRemovingWhitespace(value->description()) : Text(u"-");
  }
};

void* context(std::intptr_t number) { return reinterpret_cast<void*>(number); }

TEST(Observing, EachWayToChangeAPropertyIsHeardOnce) {
  const auto node = std::make_shared<Node>(1);
  const auto other = std::make_shared<Node>(7);
  Listener listener;
  for (const TextView key : {u"value", u"name", u"next", u"double"}) node->addObserver(listener, key, both, nullptr);
  const std::tuple<std::function<void()>, Texts> rows[] = {
      {[&] { node->setValue(2); }, {u"value of N2 set: 1 -> 2"}},
      {[&] { node->setValue(2); }, {u"value of N2 set: 2 -> 2"}},
      {[&] { node->setValueForKey(box(3), u"value"); }, {u"value of N3 set: 2 -> 3"}},
      {[&] { node->setName(u"a"); }, {u"name of N3 set:  -> a"}},
      {[&] { node->setName(node->name()); }, {u"name of N3 set: a -> a"}},
      {[&] { node->setValueForKey(box(u"b"), u"name"); }, {u"name of N3 set: a -> b"}},
      {[&] { node->setValueForKeyPath(other, u"next"); }, {u"next of N3 set: <null> -> N7"}},
      {[&] { node->setNext(nullptr); }, {u"next of N3 set: N7 -> <null>"}},
      {[&] { node->setDoubleValue(8); }, {}},
      {[&] { node->setValueForKey(box(10), u"double"); }, {u"double of N5 set: 8 -> 10"}},
      {[&] {
         node->willChangeValueForKey(u"double");
         node->willChangeValueForKey(u"double");
         node->setDoubleValue(12);
         node->didChangeValueForKey(u"double");
         node->setDoubleValue(14);
         node->didChangeValueForKey(u"double");
       },
       {u"double of N7 set: 10 -> 14"}},
      {[&] { node->didChangeValueForKey(u"value"); }, {}},
      {[&] { EXPECT_THROW(node->setValueForKey(box(u"x"), u"value"), std::invalid_argument); }, {}},
      {[&] { node->setValue(1); }, {u"value of N1 set: 7 -> 1"}},
  };
  for (const auto& [change, heard] : rows) {
    change();
    EXPECT_EQ(listener.take(), heard);
  }
}

TEST(Observing, OptionsDecideWhatARecordHolds) {
  const std::pair<NSKeyValueObservingOptions, Texts> rows[] = {
      {0, {u"value of N2 set: - -> -"}},
      {NSKeyValueObservingOptionNew, {u"value of N2 set: - -> 2"}},
      {NSKeyValueObservingOptionOld, {u"value of N2 set: 1 -> -"}},
      {NSKeyValueObservingOptionInitial, {u"value of N1 set: - -> -", u"value of N2 set: - -> -"}},
      {NSKeyValueObservingOptionInitial | both, {u"value of N1 set: - -> 1", u"value of N2 set: 1 -> 2"}},
      {NSKeyValueObservingOptionPrior | both, {u"value of N1 will: 1 -> -", u"value of N2 set: 1 -> 2"}},
  };
  for (const auto& [options, heard] : rows) {
    Node node(1);
    Listener listener;
    node.addObserver(listener, u"value", options, nullptr);
    node.setValue(2);
    EXPECT_EQ(listener.heard, heard) << options;
  }
  Node node(1);
  Listener listener;
  node.addObserver(listener, u"value", NSKeyValueObservingOptionPrior, nullptr);
  listener.then = [] { throw std::runtime_error("no"); };
  EXPECT_THROW(node.setValue(2), std::runtime_error);
  EXPECT_EQ(node.value(), 1) << "changed in spite of a veto";
  node.setValue(3);
  EXPECT_EQ(listener.heard.size(), 3U);
}

TEST(Observing, PlainValuesAndCopies) {
  struct Reader : NSObject {
    void observeValueForKeyPath(TextView, NSObject&, const NSKeyValueChange& change, void*) override {
      sum += change.newValueAs<int>() * 100 + change.oldValueAs<short>();
    }
    int sum = 0;
  } reader;
  struct Copied : Node {
    using Node::Node;
    Copied(const Copied&) = default;
    Copied& operator=(const Copied&) = default;
  };
  Copied node(1);
  node.addObserver(reader, u"value", both, nullptr);
  node.setValue(2);
  node.setValueForKey(box(3), u"value");
  EXPECT_EQ(std::exchange(reader.sum, 0), 201 + 302);
  Copied copy(node);
  copy.setValue(4);
  EXPECT_EQ(reader.sum, 0) << "a copy is observed";
  node = copy;
  node.setValue(5);
  EXPECT_EQ(reader.sum, 504);
}

TEST(Observing, KeyPathsFollowWhatStandsOnTheWay) {
  const auto a = std::make_shared<Node>(1), b = std::make_shared<Node>(2), c = std::make_shared<Node>(3);
  const auto dictionary = std::make_shared<NSMutableDictionary>();
  Listener listener;
  dictionary->addObserver(listener, u"node.next.value", both, nullptr);
  const Texts none;
  const auto heard = [&](TextView values) { return Texts{u"node.next.value of {} set: " + Text(values)}; };
  const auto take = [&] {
    Texts texts = listener.take();
    for (Text& text : texts) text.replace(19, text.find(u" set") - 19, u"{}");
    return texts;
  };
  dictionary->setObject(a, u"node");
  EXPECT_EQ(take(), heard(u"<null> -> <null>"));
  a->setNext(b);
  EXPECT_EQ(take(), heard(u"<null> -> 2"));
  b->setValue(4);
  EXPECT_EQ(take(), heard(u"2 -> 4"));
  a->setNext(a);
  EXPECT_EQ(take(), heard(u"4 -> 1"));
  b->setValue(5);
  EXPECT_EQ(take(), none) << "no longer on the way";
  a->setValue(6);
  EXPECT_EQ(take(), heard(u"1 -> 6"));
  c->setNext(b);
  dictionary->setObject(c, u"node");
  EXPECT_EQ(take(), heard(u"6 -> 5"));
  a->setNext(nullptr);
  dictionary->removeAllObjects();
  EXPECT_EQ(take(), heard(u"5 -> <null>"));
  dictionary->setObject(c, u"node");
  EXPECT_EQ(take().size(), 1U);
  CapturedSystemLog log;
  dictionary->setObject(box(u"no node"), u"node");
  EXPECT_EQ(take(), heard(u"5 -> <null>"));
  const Texts logged = log.take();
  EXPECT_TRUE(logged.size() == 1 && logged[0].find(u"'node.next.value'") < logged[0].size());
  dictionary->setObject(c, u"node");
  EXPECT_EQ(take(), heard(u"<null> -> 5"));
  dictionary->removeObserver(listener, u"node.next.value");
  c->setNext(nullptr);
  EXPECT_EQ(take(), none);
}

TEST(Observing, ArraysAreChangedThroughAProxy) {
  const auto owner = std::make_shared<Node>(9);
  const auto n = [](int value) { return std::make_shared<Node>(value); };
  Listener listener;
  for (const TextView key : {u"nodes", u"fixed"}) owner->addObserver(listener, key, both, nullptr);
  for (const TextView key : {u"nodes", u"fixed"}) {
    auto nodes = owner->mutableArrayValueForKey(key);
    const auto heard = [&](TextView change) { return Texts{Text(key) + u" of N9 " + Text(change)}; };
    nodes.addObject(n(1));
    EXPECT_EQ(listener.take(), heard(u"insert(0): - -> (N1)"));
    NSMutableIndexSet indexes(NSRange{0, 2});
    indexes.addIndex(3);
    nodes.insertObjects(*arrayOf({n(2), n(3), n(4)}), indexes);
    EXPECT_EQ(listener.take(), heard(u"insert(0-1, 3): - -> (N2,N3,N4)"));
    EXPECT_EQ(nodes.array()->description(), u"(\n    N2,\n    N3,\n    N1,\n    N4\n)");
    nodes.replaceObjectsAtIndexes(indexes, *arrayOf({n(5), n(6), n(7)}));
    EXPECT_EQ(listener.take(), heard(u"replace(0-1, 3): (N2,N3,N4) -> (N5,N6,N7)"));
    nodes.removeObjectsAtIndexes(indexes);
    EXPECT_EQ(listener.take(), heard(u"remove(0-1, 3): (N5,N6,N7) -> -"));
    nodes.removeLastObject();
    EXPECT_EQ(listener.take(), heard(u"remove(0): (N1) -> -"));
    nodes.removeAllObjects();
    nodes.addObjectsFromArray(NSArray());
    EXPECT_THAT(listener.take(), IsEmpty());
    nodes.setArray(*arrayOf({n(1)}));
    EXPECT_EQ(listener.take(), heard(u"set: () -> (N1)"));
    EXPECT_THROW(nodes.insertObject(n(1), 2), std::out_of_range);
    EXPECT_THROW(nodes.addObject(nullptr), std::invalid_argument);
    EXPECT_EQ(nodes.count(), 1U);
    EXPECT_THAT(listener.take(), IsEmpty());
  }
  EXPECT_THAT([&] { owner->mutableArrayValueForKey(u"value"); }, refuses("mutableArrayValueForKey:", "'value'"));
}

TEST(Observing, SomeElementsOfAnArrayAndChangesToldByHand) {
  const auto first = std::make_shared<Node>(1), second = std::make_shared<Node>(2), third = std::make_shared<Node>(3);
  const auto array = arrayOf({first, second, third});
  NSMutableIndexSet ends;
  ends.addIndex(0);
  ends.addIndex(2);
  NSMutableIndexSet beyond = ends;
  beyond.addIndex(3);
  Listener listener;
  addObserver(*array, listener, ends, u"value", both, context(1));
  EXPECT_THROW(addObserver(*array, listener, beyond, u"value", both, context(2)), std::out_of_range);
  for (const auto& node : {first, second, third}) node->setValue(node->value() + 10);
  EXPECT_EQ(listener.take(), (Texts{u"value of N11[1] set: 1 -> 11", u"value of N13[1] set: 3 -> 13"}));
  EXPECT_THROW(removeObserver(*array, listener, beyond, u"value"), std::out_of_range);
  EXPECT_THROW(removeObserver(*array, listener, ends, u"value", context(2)), std::invalid_argument);
  removeObserver(*array, listener, ends, u"value");
  first->setValue(1);
  third->setValue(3);
  EXPECT_THAT(listener.take(), IsEmpty());

  Node owner(9);
  owner.addObserver(listener, u"nodes", both, nullptr);
  owner.willChange(NSKeyValueChangeKind::Insertion, NSIndexSet(0), u"nodes");
  owner.nodes()->addObject(first);
  owner.didChange(NSKeyValueChangeKind::Insertion, NSIndexSet(0), u"nodes");
  EXPECT_EQ(listener.take(), Texts{u"nodes of N9 insert(0): - -> (N1)"});
  owner.removeObserver(listener, u"nodes");
}

TEST(Observing, WhatCannotBeObservedOrEndedIsRefused) {
  const auto node = std::make_shared<Node>(1);
  const auto array = std::make_shared<NSMutableArray>();
  Listener listener;
  node->setNext(node);
  for (const TextView path : {u"", u"nothing", u"next.nothing", u"next.", u"nodes.@count", u"next.nodes.value"}) {
    EXPECT_THROW(node->addObserver(listener, path, both, nullptr), std::invalid_argument)
        << testing::PrintToString(path);
    EXPECT_FALSE(node->isObserving(node.get()));
    EXPECT_THROW(node->removeObserver(listener, path), std::invalid_argument);
  }
  EXPECT_THAT([&] { array->addObserver(listener, u"@count", 0, nullptr); }, refuses("addObserver:", "'@count'"));
  node->addObserver(listener, u"value", 0, context(1));
  node->addObserver(listener, u"value", 0, context(2));
  EXPECT_THAT([&] { node->removeObserver(listener, u"value", context(3)); },
              refuses("removeObserver:forKeyPath:context: <Listener: 0x", "N1 for key path 'value'"));
  node->removeObserver(listener, u"value", context(1));
  node->setValue(2);
  EXPECT_EQ(listener.take(), Texts{u"value of N2[2] set: - -> -"});
  node->removeObserver(listener, u"value");
  EXPECT_THROW(node->removeObserver(listener, u"value"), std::invalid_argument);

  Node unaware;
  node->addObserver(unaware, u"value", 0, nullptr);
  CapturedSystemLog log;
  node->setValue(3);
  EXPECT_THAT(log.take(), ElementsAre(u"N0 is told that 'value' of N3 has changed, and does not handle it."));
  node->setNext(nullptr);
}

TEST(Observing, ObserversComeAndGoDuringANotification) {
  auto node = std::make_shared<Node>(1);
  Listener first, last, late;
  auto middle = std::make_unique<Listener>();
  node->addObserver(first, u"value", both, nullptr);
  node->addObserver(*middle, u"value", both, nullptr);
  node->addObserver(last, u"value", both, nullptr);
  first.then = [&] {
    middle = nullptr;
    node->removeObserver(first, u"value");
    node->addObserver(late, u"value", both, nullptr);
    node->setValue(3);
  };
  node->setValue(2);
  EXPECT_EQ(first.take().size(), 1U);
  EXPECT_EQ(last.take(), (Texts{u"value of N3 set: 2 -> 3", u"value of N3 set: 1 -> 2"})) << "each its own values";
  EXPECT_EQ(late.take(), Texts{u"value of N3 set: 2 -> 3"}) << "it was there for the second change only";

  last.then = [&] { throw std::domain_error("last"); };
  late.then = [&] { throw std::range_error("late"); };
  EXPECT_THROW(node->setValue(4), std::domain_error) << "the first";
  EXPECT_EQ(late.take().size(), 1U) << "heard in spite of it";

  last.then = [&] { node = nullptr; };
  Node& dying = *node;
  dying.setValue(5);
  EXPECT_EQ(last.take().size(), 2U);
  EXPECT_THAT(late.take(), IsEmpty()) << "the object was gone";
}

}  // namespace
