#include <atomic>
#include <thread>

#include "Collections/QNIndexedObjectPool.h"
#include "Support/Testing.h"

namespace {

struct Track : NSObject {
  Track(std::int64_t theNumber, Text theTitle) : number(theNumber), title(std::move(theTitle)) {}
  bool isEqual(const NSObject& other) const override { return static_cast<const Track&>(other).title == title; }
  std::int64_t identifier() const { return number; }

  std::atomic<std::int64_t> number;
  Text title;
  Ref<Track> next;
};

using Pool = QNIndexedObjectPool<Ref<Track>>;

Ref<Track> track(int number, Text title) { return std::make_shared<Track>(number, std::move(title)); }

// Keeps what it hears, "+" for added and "-" for removed, and then does what it was told to.
struct Listener : Pool::Delegate {
  void didAddObject(const Ref<Track>& object, Pool& pool) override {
    heard += (pool.containsObject(object) ? u"+" : u"?") + object->title;
  }
  void willRemoveObject(const Ref<Track>& object, Pool& pool) override {
    heard += (pool.containsObject(object) ? u"-" : u"?") + object->title;
    if (reaction) reaction(object->title);
  }
  Text takeHeard() { return std::exchange(heard, {}); }

  Text heard;
  std::function<void(TextView title)> reaction;
};

struct QNIndexedObjectPoolTest : testing::Test {
  QNIndexedObjectPoolTest() { pool.setDelegate(&listener); }

  // The pool's own references are the only ones.
  void add(TextView titles) {
    for (const char16_t title : titles) pool.addObject(track(0, Text(1, title)));
    listener.takeHeard();
  }
  Text titles() const {
    Text titles;
    for (const auto& object : pool.objects()) titles += object->title;
    return titles;
  }

  Listener listener;
  Pool pool{&Track::identifier};
};

TEST_F(QNIndexedObjectPoolTest, EqualObjectsAreKeptOnce) {
  const auto a = track(1, u"a");
  const auto likeA = track(2, u"a");
  for (const auto& object : {a, likeA, Ref<Track>()}) pool.addObject(object);
  EXPECT_EQ(listener.takeHeard(), u"+a");
  EXPECT_EQ(pool.count(), 1U);
  EXPECT_TRUE(pool.containsObject(likeA) && !pool.containsObject(track(1, u"b")) && !pool.containsObject(nullptr));
  EXPECT_EQ(pool.objects().front(), a);
  for (const auto& object : {Ref<Track>(), likeA, likeA}) pool.removeObject(object);
  EXPECT_EQ(listener.takeHeard(), u"-a");
  EXPECT_EQ(pool.count(), 0U);
}

TEST_F(QNIndexedObjectPoolTest, IdentifiersAreAskedAnew) {
  const auto a = track(7, u"a");
  const auto b = track(7, u"b");
  pool.addObject(a);
  pool.addObject(b);
  EXPECT_EQ(pool.objectById(7), a);
  a->number = -1;
  EXPECT_EQ(pool.objectById(7), b);
  EXPECT_EQ(pool.objectById(0xFFFFFFFFFFFFFFFF), a);
  Pool without{std::function<int(const Ref<Track>&)>()};
  EXPECT_EQ(without.objectById(0), nullptr);
  without.addObject(a);
  EXPECT_THROW(without.objectById(0), std::invalid_argument);
}

TEST_F(QNIndexedObjectPoolTest, ClearAndDestructionTellOldestFirst) {
  add(u"abc");
  pool.clear();
  EXPECT_EQ(listener.takeHeard(), u"-a-b-c");
  EXPECT_EQ(pool.count(), 0U);
  CapturedSystemLog log;
  {
    Pool dying;
    for (const char16_t* title : {u"x", u"y", u"z"}) dying.addObject(track(0, title));
    dying.setDelegate(&listener);
    listener.reaction = [](TextView title) {
      if (title == u"y") throw std::runtime_error("no more");
    };
  }
  EXPECT_EQ(listener.takeHeard(), u"-x-y");
  EXPECT_THAT(log.take(), ElementsAre(u"-[QNIndexedObjectPool dealloc]: an exception has been swallowed: no more"));
  listener.reaction = nullptr;
}

TEST_F(QNIndexedObjectPoolTest, PurgeDropsWhatOnlyThePoolHolds) {
  const auto kept = track(1, u"k");
  pool.addObject(kept);
  add(u"ab");
  // What is let go with a newer object goes in the same walk.
  auto older = track(0, u"o");
  auto newer = track(0, u"n");
  newer->next = older;
  pool.addObject(std::move(older));
  pool.addObject(std::move(newer));
  listener.takeHeard();
  pool.purge();
  EXPECT_EQ(listener.takeHeard(), u"-n-o-b-a");
  EXPECT_EQ(titles(), u"k");
}

TEST_F(QNIndexedObjectPoolTest, DelegatesMayChangeThePoolDuringPurge) {
  const std::tuple<TextView, TextView, TextView, TextView, TextView> rows[] = {
      {u"de", u"c", u"a", u"-c-a-b", u"de"},  // older ones: those that are still to come move
      {u"", u"e", u"a", u"-e-a-d-c-b", u""},
      {u"", u"d", u"abc", u"-e-d-a-b-c", u""},
      {u"", u"b", u"*", u"-e-d-c-b-a", u""},
  };
  for (const auto& [keptTitles, trigger, removedTitles, heard, left] : rows) {
    add(u"abcde");
    std::vector<Ref<Track>> kept;
    for (const auto& object : pool.objects())
      if (keptTitles.find(object->title) != TextView::npos) kept.push_back(object);
    listener.reaction = [&](TextView title) {
      if (title != trigger) return;
      if (removedTitles == u"*") return pool.purge();
      for (const char16_t removed : removedTitles) pool.removeObject(track(0, Text(1, removed)));
    };
    pool.purge();
    EXPECT_EQ(listener.takeHeard(), heard);
    EXPECT_EQ(titles(), left);
    listener.reaction = nullptr;
    pool.clear();
    listener.takeHeard();
  }
  // An exception leaves what is there, and frees the lock.
  add(u"ab");
  listener.reaction = [](TextView) { throw std::runtime_error("busy"); };
  EXPECT_THROW(pool.purge(), std::runtime_error);
  std::thread([&] { EXPECT_EQ(titles(), u"ab"); }).join();
  listener.reaction = nullptr;
}

// Everything at once; thread checking sees to the rest. The delegate calls back into the pool.
TEST_F(QNIndexedObjectPoolTest, ThreadsMayDoAnything) {
  std::vector<std::thread> threads;
  for (int seed = 0; seed < 6; ++seed) {
    threads.emplace_back([this, seed] {
      for (int round = 0; round < 400; ++round) {
        const int number = (round * 7 + seed) % 20;
        const auto object = track(number, Text(1, static_cast<char16_t>(u'a' + number)));
        pool.addObject(object);
        const auto found = pool.objectById(static_cast<std::uint64_t>(number));
        EXPECT_TRUE(!found || found->identifier() == number);
        if (round % 3 == seed % 3) pool.removeObject(object);
        if (round % 50 == seed) pool.purge();
        if (round % 90 == seed) pool.clear();
        EXPECT_LE(pool.count(), 20U);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  pool.purge();
  EXPECT_EQ(pool.count(), 0U);
  EXPECT_EQ(std::ranges::count(listener.heard, u'+'), std::ranges::count(listener.heard, u'-'));
  EXPECT_EQ(std::ranges::count(listener.heard, u'?'), 0);
}

}  // namespace
