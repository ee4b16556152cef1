#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <stdexcept>
#include <thread>

#include "Collections/QNIndexedObjectPool.h"
#include "Platform/Foundation/Boxing.h"
#include "Support/CapturedSystemLog.h"
#include "Support/TextPrinting.h"

namespace kelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;

// Equal to a track of the same title.
class Track : public NSObject {
 public:
  Track(int number, Text title) : myNumber(number), myTitle(std::move(title)) {}
  bool isEqual(const NSObject& other) const override { return static_cast<const Track&>(other).myTitle == myTitle; }
  std::int64_t number() const { return myNumber; }

  std::atomic<int> myNumber;
  Text myTitle;
  Ref<Track> next;
};

using Pool = QNIndexedObjectPool<Ref<Track>>;

Ref<Track> track(int number, const char16_t* title) { return std::make_shared<Track>(number, title); }

// Keeps what it hears, "+" for added and "-" for removed, and then does what it was told to.
class Listener : public Pool::Delegate {
 public:
  void didAddObject(const Ref<Track>& object, Pool& pool) override {
    EXPECT_TRUE(pool.containsObject(object));
    heard += u"+" + object->myTitle;
  }
  void willRemoveObject(const Ref<Track>& object, Pool& pool) override {
    EXPECT_TRUE(pool.containsObject(object));
    heard += u"-" + object->myTitle;
    if (reaction) reaction(object->myTitle, pool);
  }
  Text takeHeard() { return std::exchange(heard, {}); }

  Text heard;
  std::function<void(TextView title, Pool& pool)> reaction;
};

class QNIndexedObjectPoolTest : public testing::Test {
 protected:
  // The pool's own references are the only ones.
  void add(std::initializer_list<const char16_t*> titles) {
    for (const char16_t* title : titles) pool.addObject(track(0, title));
    listener.takeHeard();
  }
  Text titles() const {
    Text titles;
    for (const auto& object : pool.objects()) titles += object->myTitle;
    return titles;
  }

  QNIndexedObjectPoolTest() { pool.setDelegate(&listener); }
  ~QNIndexedObjectPoolTest() override { pool.setDelegate(nullptr); }

  Listener listener;
  Pool pool{&Track::number};
};

TEST_F(QNIndexedObjectPoolTest, EqualObjectsAreKeptOnce) {
  const auto a = track(1, u"a");
  const auto likeA = track(2, u"a");
  pool.addObject(a);
  pool.addObject(likeA);
  pool.addObject(nullptr);
  EXPECT_EQ(listener.takeHeard(), u"+a");
  EXPECT_EQ(pool.count(), 1U);
  EXPECT_TRUE(pool.containsObject(likeA));
  EXPECT_FALSE(pool.containsObject(track(1, u"b")));
  EXPECT_FALSE(pool.containsObject(nullptr));
  listener.reaction = [&](TextView, Pool&) { EXPECT_EQ(pool.objects().front(), a); };
  pool.removeObject(nullptr);
  pool.removeObject(likeA);
  pool.removeObject(likeA);
  EXPECT_EQ(listener.takeHeard(), u"-a");
  EXPECT_EQ(pool.count(), 0U);
  EXPECT_EQ(a.use_count(), 1);
}

TEST_F(QNIndexedObjectPoolTest, IdentifiersAreAskedAnew) {
  EXPECT_EQ(pool.objectById(7), nullptr);
  const auto a = track(7, u"a");
  const auto b = track(7, u"b");
  pool.addObject(a);
  pool.addObject(b);
  EXPECT_EQ(pool.objectById(7), a);
  a->myNumber = -1;
  EXPECT_EQ(pool.objectById(7), b);
  EXPECT_EQ(pool.objectById(0xFFFFFFFFFFFFFFFF), a);
  EXPECT_EQ(pool.objectById(0xFFFFFFFF), nullptr);

  for (const auto& without :
       {std::make_unique<QNIndexedObjectPool<>>(),
        std::make_unique<QNIndexedObjectPool<>>(static_cast<std::uint64_t (*)(const Ref<NSObject>&)>(nullptr))}) {
    EXPECT_EQ(without->objectById(0), nullptr);
    without->addObject(box(1));
    EXPECT_THAT([&] { without->objectById(0); }, ThrowsMessage<std::invalid_argument>(HasSubstr("objectById:")));
    EXPECT_TRUE(without->containsObject(box(1)));
  }
}

TEST_F(QNIndexedObjectPoolTest, ClearAndDestructionTellOldestFirst) {
  add({u"a", u"b", u"c"});
  pool.clear();
  EXPECT_EQ(listener.takeHeard(), u"-a-b-c");
  EXPECT_EQ(pool.count(), 0U);
  add({u"a"});
  pool.setDelegate(nullptr);
  pool.clear();
  EXPECT_EQ(pool.count(), 0U);

  CapturedSystemLog log;
  {
    Pool dying(&Track::number);
    for (const char16_t* title : {u"x", u"y", u"z"}) dying.addObject(track(0, title));
    dying.setDelegate(&listener);
    listener.reaction = [](TextView title, Pool&) {
      if (title == u"y") throw std::runtime_error("no more");
    };
  }
  EXPECT_EQ(listener.takeHeard(), u"-x-y");
  EXPECT_THAT(log.take(), ElementsAre(u"-[QNIndexedObjectPool dealloc]: an exception has been swallowed: no more"));
}

TEST_F(QNIndexedObjectPoolTest, PurgeDropsWhatOnlyThePoolHolds) {
  const auto kept = track(1, u"k");
  add({u"a"});
  pool.addObject(kept);
  add({u"b"});
  pool.purge();
  EXPECT_EQ(listener.takeHeard(), u"-b-a");
  EXPECT_EQ(titles(), u"k");
  // What is let go with a newer object goes in the same walk.
  {
    const auto older = track(0, u"o");
    const auto newer = track(0, u"n");
    newer->next = older;
    pool.addObject(older);
    pool.addObject(newer);
  }
  pool.purge();
  EXPECT_EQ(titles(), u"k");

  QNIndexedObjectPool<int> plain;
  plain.addObject(5);
  plain.purge();
  EXPECT_EQ(plain.count(), 1U);
}

TEST_F(QNIndexedObjectPoolTest, DelegatesMayChangeThePoolDuringPurge) {
  const struct {
    const char16_t* kept;
    std::function<void(TextView, Pool&)> reaction;
    const char16_t* heard;
    const char16_t* left;
  } rows[] = {
      // Removing older ones moves those that are still to come.
      {u"de",
       [](TextView title, Pool& from) {
         if (title == u"c") from.removeObject(track(0, u"a"));
       },
       u"-c-a-b", u"de"},
      {u"",
       [](TextView title, Pool& from) {
         if (title == u"e") from.removeObject(track(0, u"a"));
       },
       u"-e-a-d-c-b", u""},
      // Newer ones, and all at once.
      {u"e",
       [](TextView title, Pool& from) {
         if (title == u"d") from.removeObject(track(0, u"e"));
       },
       u"-d-e-c-b-a", u""},
      {u"",
       [](TextView title, Pool& from) {
         if (title == u"d")
           for (const char16_t* t : {u"a", u"b", u"c"}) from.removeObject(track(0, t));
       },
       u"-e-d-a-b-c", u""},
      // A walk within the walk, and newcomers, which have their turn next time.
      {u"",
       [](TextView title, Pool& from) {
         if (title == u"d") from.purge();
       },
       u"-e-d-c-b-a", u""},
      {u"a",
       [](TextView title, Pool& from) {
         if (title == u"d") from.addObject(track(0, u"f"));
       },
       u"-e-d+f-c-b", u"af"},
  };
  for (const auto& row : rows) {
    pool.setDelegate(nullptr);
    pool.clear();
    pool.setDelegate(&listener);
    add({u"a", u"b", u"c", u"d", u"e"});
    std::vector<Ref<Track>> kept;
    for (const auto& object : pool.objects())
      if (TextView(row.kept).find(object->myTitle) != TextView::npos) kept.push_back(object);
    listener.reaction = row.reaction;
    pool.purge();
    listener.reaction = nullptr;
    EXPECT_EQ(listener.takeHeard(), row.heard);
    EXPECT_EQ(titles(), row.left);
  }
}

TEST_F(QNIndexedObjectPoolTest, ExceptionsLeaveThePoolUsable) {
  add({u"a", u"b"});
  listener.reaction = [](TextView, Pool&) { throw std::runtime_error("busy"); };
  EXPECT_THROW(pool.removeObject(track(0, u"a")), std::runtime_error);
  EXPECT_THROW(pool.purge(), std::runtime_error);
  listener.reaction = nullptr;
  std::thread([&] { EXPECT_EQ(titles(), u"ab"); }).join();
  listener.takeHeard();
  pool.purge();
  EXPECT_EQ(listener.takeHeard(), u"-b-a");
}

// Everything at once; thread checking sees to the rest. The delegate calls back into the pool.
TEST(QNIndexedObjectPool, ThreadsMayDoAnything) {
  class CountingListener : public Pool::Delegate {
   public:
    void didAddObject(const Ref<Track>& object, Pool& pool) override { balance += pool.containsObject(object); }
    void willRemoveObject(const Ref<Track>& object, Pool& pool) override { balance -= pool.containsObject(object); }
    int balance = 0;  // guarded by the pool's lock
  };
  CountingListener listener;
  Pool pool(&Track::number);
  pool.setDelegate(&listener);
  std::vector<std::thread> threads;
  for (int seed = 0; seed < 6; ++seed) {
    threads.emplace_back([&pool, seed] {
      for (int round = 0; round < 400; ++round) {
        const int number = (round * 7 + seed) % 20;
        const auto object = track(number, std::u16string(1, static_cast<char16_t>(u'a' + number)).c_str());
        pool.addObject(object);
        if (const auto found = pool.objectById(static_cast<std::uint64_t>(number))) {
          EXPECT_EQ(found->number(), number);
        }
        if (round % 3 == seed % 3) pool.removeObject(object);
        if (round % 50 == seed) pool.purge();
        if (round % 90 == seed) pool.clear();
        EXPECT_LE(pool.count(), 20U);
        EXPECT_LE(pool.objects().size(), 20U);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(static_cast<std::size_t>(listener.balance), pool.count());
  pool.purge();
  EXPECT_THAT(pool.objects(), IsEmpty());
  EXPECT_EQ(listener.balance, 0);
}

}  // namespace
}  // namespace kelvane
