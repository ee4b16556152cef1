// QNObservationHandler and QNObjectArrayPropertyObserver.

#include <algorithm>
#include <map>
#include <random>
#include <stdexcept>

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSKeyValueMutableArray.h"
#include "Platform/Foundation/Properties.h"
#include "Support/CapturedSystemLog.h"
#include "Support/Testing.h"
#include "Utilities/QNLogger.h"
#include "Utilities/QNObjectArrayPropertyObserver.h"
#include "Utilities/QNObservationHandler.h"

namespace kelvane {
namespace {

using Texts = std::vector<Text>;

class Item : public NSObject {
 public:
  explicit Item(Text name) : myName(std::move(name)) {}
  const PropertyTable& propertyTable() const override {
    static const PropertyTable table(NSObject::propertyTable(),
                                     {property(u"name", &Item::myName), property(u"size", &Item::mySize)});
    return table;
  }
  void setName(Text name) { setField(myName, std::move(name)); }
  void setSize(int size) { setField(mySize, size); }
  Text description() const override { return myName; }

 private:
  Text myName;
  int mySize = 0;
};

class Document : public NSObject {
 public:
  const PropertyTable& propertyTable() const override {
    static const PropertyTable table(NSObject::propertyTable(), {property(u"items", &Document::myItems)});
    return table;
  }
  NSKeyValueMutableArray items() { return mutableArrayValueForKey(u"items"); }
  const Ref<NSMutableArray>& array() const { return myItems; }
  void setItems(const Ref<NSMutableArray>& items) { setField(myItems, items); }

 private:
  Ref<NSMutableArray> myItems = std::make_shared<NSMutableArray>();
};

Ref<Item> item(TextView name) { return std::make_shared<Item>(Text(name)); }

char itemsContext, nameContext;

class Target : public NSObject {
 public:
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
  document.items().insertObjects(*NSArray::arrayWithObjects({b, c}), NSIndexSet(NSRange{0, 2}));
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
    document.items().setArray(*NSArray::arrayWithObjects({c}));
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
    EXPECT_THROW(observer.removeArrayObjectsObservers(NSArray::arrayWithObjects({a, a})), std::invalid_argument);
  }
  EXPECT_EQ(log.take().size(), 1U) << "what ending raised";
  a->setName(u"c");
  document->setItems(nullptr);
  EXPECT_THAT(log.take(), IsEmpty());
}

// Both observers over random changes of one array, against a plain count of who is registered how often.
class RandomChanges {
 public:
  explicit RandomChanges(unsigned seed) : myRandom(seed) {
    for (int i = 0; i < 6; ++i) myPool.push_back(item(u"i"));
    myObserver.setDelegate(myDelegate);
    myObserver.observerObject(myDocument, u"items", u"name");
    makeHandler();
  }

  void step() {
    const std::size_t count = myDocument->array()->count();
    const std::size_t index = below(count + 1);
    const Ref<Item> one = myPool[below(myPool.size())];
    const std::size_t kind = below(30);
    if (kind == 0) return setAll();
    if (kind < 10) return rename(one);
    if (kind < 20 || index == count) {
      myDocument->items().insertObject(one, index);
      come(one.get());
    } else {
      go(as<Item>(myDocument->array()->objectAtIndex(index)).get());
      if (kind < 25) return myDocument->items().removeObjectAtIndex(index);
      myDocument->items().replaceObjectAtIndex(index, one);
      come(one.get());
    }
  }

 private:
  std::size_t below(std::size_t limit) { return myRandom() % limit; }

  void makeHandler() {
    myHandler = nullptr;
    myHandler = std::make_unique<QNObservationHandler>();
    myHandler->setTarget(&myTarget);
    myHandler->setSubject(myDocument.get(), u"items");
    myHandler->setPropertyKeyPath(u"name", NSKeyValueObservingOptionNew, &nameContext);
  }
  void come(Item* one) {
    for (auto* counts : {&myHandled, &myObserved, &myListed}) ++(*counts)[one];
  }
  // The handler forgets what it removes, however often it stood there, and removes nothing once it lists nothing.
  void go(Item* one) {
    --myObserved[one];
    if (std::all_of(myListed.begin(), myListed.end(), [](auto& entry) { return entry.second == 0; })) return;
    myListed[one] = 0;
    --myHandled[one];
  }
  // The handler keeps to the old elements, so it is made anew to go on.
  void setAll() {
    std::vector<Ref<NSObject>> items;
    for (std::size_t i = below(5); i > 0; --i) items.push_back(myPool[below(myPool.size())]);
    myDocument->setItems(std::make_shared<NSMutableArray>(items));
    makeHandler();
    for (auto* counts : {&myHandled, &myObserved, &myListed}) counts->clear();
    for (const auto& added : items) come(as<Item>(added).get());
  }
  void rename(const Ref<Item>& one) {
    myDelegate->take();
    one->setName(u"n");
    EXPECT_EQ(myTarget.take().size(), static_cast<std::size_t>(myHandled[one.get()]));
    EXPECT_EQ(myDelegate->take(), myObserved[one.get()]);
    // One that stands nowhere dies for good.
    if (myHandled[one.get()] > 0 || myObserved[one.get()] > 0) return;
    for (auto* counts : {&myHandled, &myObserved, &myListed}) counts->erase(one.get());
    *std::find(myPool.begin(), myPool.end(), one) = item(u"new");
  }

  std::mt19937 myRandom;
  Ref<Document> myDocument = std::make_shared<Document>();
  std::shared_ptr<Delegate> myDelegate = std::make_shared<Delegate>();
  std::vector<Ref<Item>> myPool;
  std::map<Item*, int> myHandled, myObserved;
  // Whom the handler lists.
  std::map<Item*, int> myListed;
  Target myTarget;
  std::unique_ptr<QNObservationHandler> myHandler;
  QNObjectArrayPropertyObserver myObserver;
};

TEST(QNObservation, RandomSequencesMatchAPlainModel) {
  const CapturedSystemLog log;
  for (unsigned seed = 0; seed < 40 && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    RandomChanges changes(seed);
    for (int step = 0; step < 200; ++step) changes.step();
  }
}

}  // namespace
}  // namespace kelvane
