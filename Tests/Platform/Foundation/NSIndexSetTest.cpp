#include <random>
#include <set>

#include "Platform/Foundation/NSIndexSet.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

constexpr std::size_t none = NSIndexSet::NSNotFound;

// A set of plain indexes is the judge.
TEST(NSIndexSet, RangesHoldWhatPlainIndexesWould) {
  std::mt19937 random(6);
  for (int round = 0; round < 200; ++round) {
    NSMutableIndexSet set;
    std::set<std::size_t> plain;
    for (int step = 0; step < 40; ++step) {
      const NSRange range{random() % 40, random() % 8};
      const bool adds = random() % 2 == 0;
      adds ? set.addIndexesInRange(range) : set.removeIndexesInRange(range);
      for (std::size_t i = range.location; i < range.end(); ++i) adds ? void(plain.insert(i)) : void(plain.erase(i));
      ASSERT_EQ(set.count(), plain.size());
      ASSERT_EQ(set.firstIndex(), plain.empty() ? none : *plain.begin());
      ASSERT_EQ(set.lastIndex(), plain.empty() ? none : *plain.rbegin());
      for (std::size_t i = 0; i < 50; ++i) ASSERT_EQ(set.containsIndex(i), plain.contains(i));
      for (std::size_t i = 1; i < set.ranges().size(); ++i)
        ASSERT_LT(set.ranges()[i - 1].end(), set.ranges()[i].location);
    }
  }
}

TEST(NSIndexSet, EdgesAndCopies) {
  NSMutableIndexSet set(none - 1);
  EXPECT_TRUE(set.containsIndex(none - 1));
  EXPECT_FALSE(set.containsIndex(none) || set.containsIndex(static_cast<std::size_t>(-1)));
  EXPECT_THROW(set.addIndex(none), std::out_of_range);
  EXPECT_THROW(NSIndexSet{none}, std::out_of_range);
  set.removeIndexesInRange({none, static_cast<std::size_t>(-1)});
  EXPECT_EQ(set.count(), 1U);
  set.removeIndexesInRange({0, static_cast<std::size_t>(-1)});
  EXPECT_EQ(set.count(), 0U);

  set.addIndexesInRange({1, 3});
  set.addIndex(7);
  EXPECT_EQ(set.description(), u"(1-3, 7)");
  const auto snapshot = set.copy();
  const auto copied = set.mutableCopy();
  EXPECT_TRUE(snapshot->isEqual(set) && copied->isEqual(*snapshot) && copied->hash() == snapshot->hash());
  set.addIndexes(NSIndexSet(NSRange{4, 3}));
  EXPECT_EQ(set.description(), u"(1-7)");
  EXPECT_FALSE(snapshot->isEqual(set));
  EXPECT_EQ(snapshot->description(), u"(1-3, 7)");
}

}  // namespace
}  // namespace kelvane
