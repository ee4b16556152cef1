// Changing observed properties, and attaching to many elements.

#include <memory>
#include <vector>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSKeyValueMutableArray.h"
#include "Platform/Foundation/NSKeyValueObserving.h"
#include "Platform/Foundation/Properties.h"
#include "Support/Row.h"
#include "Utilities/QNObservationHandler.h"

#ifdef BENCH_BOOST
#include <boost/signals2.hpp>
#endif
#ifdef BENCH_QT
#include <QBuffer>
#include <QVariant>
#endif

namespace kelvane::bench {
namespace {

constexpr int changes = 10'000'000;
constexpr std::size_t elements = 100'000;

class Item : public NSObject {
 public:
  const PropertyTable& propertyTable() const override {
    static const PropertyTable table(NSObject::propertyTable(), {property(u"value", &Item::myValue)});
    return table;
  }
  void setValue(std::int64_t value) { setField(myValue, value); }
  void setUnobserved(std::int64_t value) { myValue = value; }
  std::int64_t value() const { return myValue; }

 private:
  std::int64_t myValue = 0;
};

class Counter : public NSObject {
 public:
  void observeValueForKeyPath(TextView, NSObject&, const NSKeyValueChange&, void*) override { ++count; }
  std::int64_t count = 0;
};

// Reads both values of each change, as numbers or as objects.
class Adder : public NSObject {
 public:
  explicit Adder(bool readsObjects) : myReadsObjects(readsObjects) {}
  void observeValueForKeyPath(TextView, NSObject&, const NSKeyValueChange& change, void*) override {
    if (myReadsObjects)
      sum += unbox<std::int64_t>(change.oldValue()) + unbox<std::int64_t>(change.newValue());
    else
      sum += change.oldValueAs<std::int64_t>() + change.newValueAs<std::int64_t>();
  }
  std::int64_t sum = 0;

 private:
  bool myReadsObjects;
};

// Makes all changes through `change`, which the compiler must not see as one assignment.
template <class Change>
void changeAll(Change change) {
  for (int i = 0; i < changes; ++i) {
    change(std::int64_t{i});
    benchmark::ClobberMemory();
  }
}

template <class Observer, class... Arguments>
std::vector<std::unique_ptr<Observer>> observersOf(Item& item, int count, NSKeyValueObservingOptions options,
                                                   Arguments... arguments) {
  std::vector<std::unique_ptr<Observer>> observers;
  for (int i = 0; i < count; ++i) {
    observers.push_back(std::make_unique<Observer>(arguments...));
    item.addObserver(*observers.back(), u"value", options, nullptr);
  }
  return observers;
}

std::int64_t countedByUs(int observerCount) {
  Item item;
  const auto observers = observersOf<Counter>(item, observerCount, 0);
  changeAll([&](std::int64_t value) { item.setValue(value); });
  std::int64_t count = item.value();
  for (const auto& observer : observers) count += observer->count;
  return count;
}

std::int64_t addedByUs(bool readsObjects) {
  Item item;
  const auto observers =
      observersOf<Adder>(item, 1, NSKeyValueObservingOptionNew | NSKeyValueObservingOptionOld, readsObjects);
  changeAll([&](std::int64_t value) { item.setValue(value); });
  return observers[0]->sum;
}

#ifdef BENCH_QT
// QIODevice brings public signals with an integer, and with two.
std::int64_t countedByQt(int receiverCount) {
  QBuffer sender;
  std::vector<std::int64_t> counts(static_cast<std::size_t>(receiverCount));
  for (std::int64_t& count : counts)
    QObject::connect(
        &sender, &QIODevice::bytesWritten, &sender, [&count](qint64) { ++count; }, Qt::DirectConnection);
  std::int64_t field = 0;
  changeAll([&](std::int64_t value) {
    field = value;
    emit sender.bytesWritten(value);
  });
  for (const std::int64_t count : counts) field += count;
  return field;
}

std::int64_t addedByQt(bool makesVariants) {
  QBuffer sender;
  std::int64_t sum = 0;
  QObject::connect(
      &sender, &QIODevice::channelBytesWritten, &sender,
      [&](int before, qint64 after) {
        if (makesVariants)
          sum += QVariant(before).toLongLong() + QVariant(after).toLongLong();
        else
          sum += before + after;
      },
      Qt::DirectConnection);
  std::int64_t field = 0;
  changeAll([&](std::int64_t value) {
    const auto before = static_cast<int>(field);
    field = value;
    emit sender.channelBytesWritten(before, value);
  });
  return sum;
}
#endif

#ifdef BENCH_BOOST
std::int64_t countedByBoost(int slotCount) {
  boost::signals2::signal<void(std::int64_t)> sender;
  std::vector<std::int64_t> counts(static_cast<std::size_t>(slotCount));
  for (std::int64_t& count : counts) sender.connect([&count](std::int64_t) { ++count; });
  std::int64_t field = 0;
  changeAll([&](std::int64_t value) {
    field = value;
    sender(value);
  });
  for (const std::int64_t count : counts) field += count;
  return field;
}

std::int64_t addedByBoost() {
  boost::signals2::signal<void(std::int64_t, std::int64_t)> sender;
  std::int64_t sum = 0;
  sender.connect([&](std::int64_t before, std::int64_t after) { sum += before + after; });
  std::int64_t field = 0;
  changeAll([&](std::int64_t value) {
    const std::int64_t before = field;
    field = value;
    sender(before, value);
  });
  return sum;
}
#endif

void counting(const std::string& name, int count) {
  Row row(name);
  row.ours([count] { return countedByUs(count); });
#ifdef BENCH_QT
  row.peer("Qt", [count] { return countedByQt(count); });
#endif
#ifdef BENCH_BOOST
  row.peer("signals2", [count] { return countedByBoost(count); });
#endif
  row.per("change", changes);
  if (count == 1) row.reach(2);
}

const Subject changing([] {
  Row("change what nobody observes")
      .ours([] { return countedByUs(0); })
      .limit("plain field",
             [] {
               Item item;
               changeAll([&](std::int64_t value) { item.setUnobserved(value); });
               return item.value();
             })
      .per("change", changes)
      .under(3);
  counting("change with one observer", 1);
  counting("change with ten observers", 10);

  Row("change, old and new read as numbers")
      .ours([] { return addedByUs(false); })
#ifdef BENCH_QT
      .peer("Qt", [] { return addedByQt(false); })
#endif
#ifdef BENCH_BOOST
      .peer("signals2", [] { return addedByBoost(); })
#endif
      .per("change", changes)
      .reach(1);

  Row("change, old and new read as objects")
      .ours([] { return addedByUs(true); })
#ifdef BENCH_QT
      .peer("Qt, QVariant", [] { return addedByQt(true); })
#endif
      .per("change", changes);
});

const Ref<NSMutableArray>& manyItems() {
  static const auto items = [] {
    const auto array = std::make_shared<NSMutableArray>();
    for (std::size_t i = 0; i < elements; ++i) array->addObject(std::make_shared<Item>());
    return array;
  }();
  return items;
}

class Document : public NSObject {
 public:
  const PropertyTable& propertyTable() const override {
    static const PropertyTable table(NSObject::propertyTable(), {property(u"items", &Document::myItems)});
    return table;
  }

 private:
  Ref<NSMutableArray> myItems = manyItems();
};

const Subject attaching([] {
  Row("attach to elements at indexes and detach")
      .ours([] {
        Counter counter;
        const NSIndexSet all(NSRange{0, elements});
        addObserver(*manyItems(), counter, all, u"value", 0, nullptr);
        removeObserver(*manyItems(), counter, all, u"value", nullptr);
      })
      .per("element", elements)
      .under(400);

  Row("attach an observation handler and detach")
      .ours([] {
        Document document;
        QNObservationHandler handler;
        handler.setSubject(&document, u"items");
        handler.setPropertyKeyPath(u"value", 0, nullptr);
      })
      .per("element", elements)
      .under(400);

  // What is held is the result itself, and what hangs off it.
  Row("register with each element")
      .ours(
          [] {
            auto counter = std::make_unique<Counter>();
            addObserver(*manyItems(), *counter, NSIndexSet(NSRange{0, elements}), u"value", 0, nullptr);
            return counter;
          },
          [](const auto& counter) { return counter->count; })
      .per("element", elements)
      .memory(320 * elements);
});

}  // namespace
}  // namespace kelvane::bench
