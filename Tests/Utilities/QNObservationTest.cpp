
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSKeyValueMutableArray.h"
#include "Platform/Foundation/Properties.h"
#include "Support/Testing.h"
#include "Utilities/QNLogger.h"
#include "Utilities/QNObjectArrayPropertyObserver.h"
#include "Utilities/QNObservationHandler.h"

namespace {

using Texts = std::vector<Text>;

struct Item : NSObject {
  explicit Item(Text name) : myName(std::move(name)) {}
  const PropertyTable& propertyTable() const override {
    static const PropertyTable table(NSObject::propertyTable(),
                                     {property(u"name", &Item::myName), property(u"size", &Item::mySize)});
    return table;
  }
  void setName(Text name) { setField(myName, std::move(name)); }
  void setSize(int size) { setField(mySize, size); }
  Text description() const override { return myName; }

  Text myName;
  int mySize = 0;
};

struct Document : NSObject {
  const PropertyTable& propertyTable() const override {
    static const PropertyTable table(NSObject::propertyTable(), {property(u"items", &Document::myItems)});
    return table;
  }
  NSKeyValueMutableArray items() { return mutableArrayValueForKey(u"items"); }
  const Ref<NSMutableArray>& array() const { return myItems; }
  void setItems(const Ref<NSMutableArray>& items) { setField(myItems, items); }

  Ref<NSMutableArray> myItems = std::make_shared<NSMutableArray>();
};

Ref<Item> item(TextView name) { return std::make_shared<Item>(Text(name)); }

char itemsContext, nameContext;

struct Target : NSObject {
  void observeValueForKeyPath(TextView keyPath, NSObject& ofObject, const NSKeyValueChange& change,
                              void* context) override {
    if (context == &itemsContext)
      heard.push_back(format(u"%@ %lu", keyPath, static_cast<unsigned long>(change.kind())));
    else if (context == &nameContext)
      heard.push_back(format(u"%@ of %@: %@", keyPath, ofObject.description(), change.newValue()));
    else
      ADD_FAILURE() << "an unknown context";
  }
  Texts take() { return std::exchange(heard, {}); }
  Texts heard;
};

TEST(QNObservationHandler, FollowsElementsAsTheyComeAndGo) {
  Document document;
  Target target;
  const auto a = item(u"a"), b = item(u"b"), c = item(u"c");
  document.items().addObject(a);
  QNObservationHandler handler;
  handler.setTarget(&target);
  handler.setSubject(&document, u"items", &itemsContext);
  handler.setPropertyKeyPath(u"name", NSKeyValueObservingOptionNew, &nameContext);
  EXPECT_THAT(target.take(), IsEmpty());
  document.items().insertObjects(*arrayOf({b, c}), NSIndexSet(NSRange{0, 2}));
  EXPECT_EQ(target.take(), Texts{u"items 2"});
  for (const auto& one : {a, b, c}) one->setName(one->description() + u"1");
  EXPECT_EQ(target.take(), (Texts{u"name of a1: a1", u"name of b1: b1", u"name of c1: c1"}));
  document.items().replaceObjectAtIndex(1, a);
  EXPECT_EQ(target.take(), Texts{u"items 4"});
  document.items().removeObjectAtIndex(0);
  EXPECT_EQ(target.take(), Texts{u"items 3"});

  handler.setPropertyKeyPath(u"size", 0, &nameContext);
  a->setName(u"a3");
  a->setSize(1);
  EXPECT_EQ(target.take(), (Texts{u"size of a3: (null)", u"size of a3: (null)"}));
}

TEST(QNObservationHandler, KeptGapsAndWarnings) {
  CapturedSystemLog log;
  Document document;
  Target target;
  const auto a = item(u"a"), b = item(u"b");
  document.items().addObject(a);
  {
    QNObservationHandler handler;
    handler.setTarget(&target);
    handler.setPropertyKeyPath(u"name", NSKeyValueObservingOptionNew, &nameContext);
    handler.setSubject(&document, u"items");
    a->setName(u"a1");
    EXPECT_THAT(target.take(), IsEmpty()) << "the property was set before the subject";
    handler.setPropertyKeyPath(u"name", NSKeyValueObservingOptionNew, &nameContext);
    const Ref<NSObject> values[] = {nullptr, b};
    handler.addPropertyObserverToValues(values);
    b->setName(u"b1");
    EXPECT_EQ(target.take(), Texts{u"name of b1: b1"});
    EXPECT_EQ(log.take(),
              Texts{u"WARN -[QNObservationHandler addPropertyObserverToValues:]:123 - Can't observe nil value!"});

    const auto c = item(u"c");
    document.items().setArray(*arrayOf({c}));
    EXPECT_EQ(log.take(), Texts{u"WARN -[QNObservationHandler observeValueForKeyPath:ofObject:change:context:]:142 - "
                                u"don't know what to do"});
    a->setName(u"a2");
    c->setName(u"c1");
    EXPECT_EQ(target.take(), Texts{u"name of a2: a2"}) << "and the new element is not observed";
    EXPECT_THROW(document.items().removeLastObject(), std::invalid_argument) << "it was never registered";
    EXPECT_EQ(document.items().count(), 0U) << "removed all the same";
    document.setItems(std::make_shared<NSMutableArray>(std::vector<Ref<NSObject>>{c}));
    log.take();
  }
  const Texts logged = log.take();
  ASSERT_EQ(logged.size(), 1U);
  EXPECT_TRUE(logged[0].starts_with(u"-[QNObservationHandler dealloc]: removeObserver:forKeyPath:")) << "of the gap";
  for (const auto& one : {a, b}) one->setName(u"x");
  EXPECT_THAT(target.take(), IsEmpty());
}

struct Delegate : QNObjectArrayPropertyObserverDelegate {
  void objectArrayPropertyObserverPropertyChanged(QNObjectArrayPropertyObserver&) override { ++calls; }
  int take() { return std::exchange(calls, 0); }
  int calls = 0;
};

TEST(QNObjectArrayPropertyObserver, TellsOfArrayAndElements) {
  const auto document = std::make_shared<Document>();
  auto delegate = std::make_shared<Delegate>();
  const auto a = item(u"a"), b = item(u"b"), c = item(u"c");
  document->setItems(nullptr);
  QNObjectArrayPropertyObserver observer;
  observer.setDelegate(delegate);
  observer.observerObject(document, u"items", u"name");
  document->setItems(std::make_shared<NSMutableArray>(std::vector<Ref<NSObject>>{a, b}));
  EXPECT_EQ(delegate->take(), 1);
  a->setName(u"a1");
  EXPECT_EQ(delegate->take(), 1);
  document->setItems(std::make_shared<NSMutableArray>(std::vector<Ref<NSObject>>{c}));
  EXPECT_EQ(delegate->take(), 1);

  document->array()->addObject(b);
  observer.removeObserver();
  document->setItems(nullptr);
  c->setName(u"c3");
  EXPECT_EQ(delegate->take(), 0) << "the array had grown unseen, and only its first element was registered";
  observer.removeObserver();

  observer.observerObject(document, u"items", u"name", &observer);
  observer.setDelegate(std::make_shared<QNObjectArrayPropertyObserverDelegate>());
  EXPECT_EQ(observer.delegate(), nullptr) << "not kept alive";
  document->setItems(std::make_shared<NSMutableArray>());
}

TEST(QNObjectArrayPropertyObserver, BeginningTwiceLeavesTheFirstToNobody) {
  CapturedSystemLog log;
  const auto document = std::make_shared<Document>();
  const auto delegate = std::make_shared<Delegate>();
  const auto a = item(u"a");
  document->items().addObject(a);
  {
    QNObjectArrayPropertyObserver observer;
    observer.setDelegate(delegate);
    observer.observerObject(document, u"items", u"name");
    observer.observerObject(document, u"items", u"name");
    a->setName(u"b");
    EXPECT_EQ(delegate->take(), 1);
    EXPECT_EQ(log.take().size(), 1U) << "nobody handles the first";
    EXPECT_THROW(observer.removeArrayObjectsObservers(arrayOf({a, a})), std::invalid_argument);
  }
  EXPECT_EQ(log.take().size(), 1U) << "what ending raised";
  a->setName(u"c");
  document->setItems(nullptr);
  EXPECT_THAT(log.take(), IsEmpty());
}

// The handler forgets what it removes, however often it stood there, and removes nothing once it lists nothing.
TEST(QNObservation, ElementsThatStandTwice) {
  const auto document = std::make_shared<Document>();
  const auto delegate = std::make_shared<Delegate>();
  const auto a = item(u"a"), b = item(u"b");
  document->setItems(std::make_shared<NSMutableArray>(std::vector<Ref<NSObject>>{a, b, a, a}));
  Target target;
  QNObservationHandler handler;
  handler.setTarget(&target);
  handler.setSubject(document.get(), u"items");
  handler.setPropertyKeyPath(u"name", NSKeyValueObservingOptionNew, &nameContext);
  QNObjectArrayPropertyObserver observer;
  observer.setDelegate(delegate);
  observer.observerObject(document, u"items", u"name");
  const auto heard = [&](const Ref<Item>& one) {
    one->setName(u"n");
    return std::pair(target.take().size(), delegate->take());
  };
  EXPECT_EQ(heard(a), std::pair(3UL, 3));
  const std::tuple<std::size_t, std::size_t, int> removals[] = {{0, 2, 2}, {1, 1, 1}};
  for (const auto& [index, byHandler, byObserver] : removals) {
    document->items().removeObjectAtIndex(index);
    delegate->take();
    EXPECT_EQ(heard(a), std::pair(byHandler, byObserver));
  }
  document->items().removeObjectAtIndex(0);
  document->items().removeObjectAtIndex(0);
  delegate->take();
  EXPECT_EQ(heard(a), std::pair(1UL, 0)) << "the handler listed nobody any more, and left one registered";
  EXPECT_EQ(heard(b), std::pair(0UL, 0));
}

}  // namespace
