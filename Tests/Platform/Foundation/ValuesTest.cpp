#include <ctime>

#include "Extensions/NSIndexSet-QNExtensions.h"
#include "Extensions/NSValue-OSExtensions.h"
#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSIndexSet.h"
#include "Platform/Foundation/NSValue.h"
#include "Support/Testing.h"

namespace {

TEST(NSDate, DescriptionIsUTCCutTowardThePast) {
  const std::tuple<double, TextView> rows[] = {
      {0, u"2001-01-01 00:00:00 +0000"},
      {-0.25, u"2000-12-31 23:59:59 +0000"},
      {-1e-12, u"2000-12-31 23:59:59 +0000"},
      {-26438401, u"2000-02-29 23:59:59 +0000"},
      {-63113904000, u"0001-01-01 00:00:00 +0000"},
      {-63113904001, u"-63113904001"},
      {252423993599.5, u"9999-12-31 23:59:59 +0000"},
      {252423993600, u"252423993600"},
      {NaN, u"nan"},
  };
  for (const auto& [seconds, text] : rows)
    EXPECT_EQ(NSDate::dateWithTimeIntervalSinceReferenceDate(seconds).description(), text) << seconds;
}

TEST(NSData, BytesAsAnObject) {
  using Bytes = std::vector<std::uint8_t>;
  EXPECT_EQ(NSData().description(), u"<>");
  EXPECT_EQ(NSData(Bytes{0, 1, 2, 3, 0x4F, 5}).description(), u"<00010203 4f05>");
  const Text most = NSData(Bytes(1024)).description();
  EXPECT_EQ(most.size(), 2048U + 255 + 2);
  EXPECT_EQ(NSData(Bytes(1025)).description(), most.substr(0, most.size() - 1) + u"...>");
}

TEST(NSValue, GivesGeometryBack) {
  const auto rect = NSValueExtensions::valueWithCGRect({1, 2, 3, 4});
  const auto point = NSValueExtensions::valueWithCGPoint({5, 6});
  const auto size = NSValueExtensions::valueWithCGSize({7, 8});
  EXPECT_EQ(CGRectValue(rect), CGRect(1, 2, 3, 4));
  EXPECT_EQ(CGPointValue(point), (CGPoint{5, 6}));
  EXPECT_EQ(CGSizeValue(size), (CGSize{7, 8}));
  EXPECT_EQ(CGRectValue(point), CGRectZero);
  EXPECT_EQ(CGPointValue(size), CGPoint());
  EXPECT_EQ(CGSizeValue(Ref<NSValue>()), CGSize());
}

TEST(NSValue, KindAndValueMakeEquality) {
  int place = 0;
  const NSValue values[] = {
      NSValue(CGPoint{1, 2}),         NSValue(CGSize{1, 2}),
      NSValue(NSRange{1, 2}),         NSValue(CGPoint{2, 1}),
      NSValue(CGRect{0.5, -2, 3, 4}), NSValue::valueWithPointer(&place),
      NSValue(CGPoint{0, 0}),         NSValue::valueWithPointer(nullptr),
  };
  const Text texts[] = {u"{1, 2}", u"{1, 2}", u"{1, 2}", u"{2, 1}", u"{{0.5, -2}, {3, 4}}", u"0x", u"{0, 0}", u"0x0"};
  for (std::size_t i = 0; i < std::size(values); ++i) {
    EXPECT_TRUE(values[i].description().starts_with(texts[i])) << testing::PrintToString(values[i].description());
    EXPECT_EQ(values[i].copy()->hash(), values[i].hash());
    for (std::size_t k = 0; k < std::size(values); ++k)
      EXPECT_EQ(values[i].isEqual(*values[k].copy()), i == k) << i << k;
  }
  const NSValue minusZero(CGPoint{-0.0, 0});
  EXPECT_TRUE(minusZero.isEqual(values[6]) && minusZero.hash() == values[6].hash());
  EXPECT_EQ(values[0].get<CGSize>(), nullptr);
  EXPECT_EQ(*values[1].get<CGSize>(), (CGSize{1, 2}));
  EXPECT_EQ(values[5].pointerValue(), &place);
}

Text membersOf(const NSCharacterSet& set) {
  Text members;
  for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit)
    if (set.characterIsMember(static_cast<char16_t>(unit))) members += static_cast<char16_t>(unit);
  return members;
}

TEST(NSCharacterSet, PredefinedSets) {
  EXPECT_EQ(
      membersOf(NSCharacterSet::whitespaceAndNewlineCharacterSet()),
      u"\t\n\v\f\r \x85\xA0\x1680\x2000\x2001\x2002\x2003\x2004\x2005\x2006\x2007\x2008\x2009\x200A\x2028\x2029\x202F"
      u"\x205F\x3000");
  const NSCharacterSet& digits = NSCharacterSet::decimalDigitCharacterSet();
  for (const char16_t unit : std::u16string_view(u"09\x0660\x0966\xFF19")) EXPECT_TRUE(digits.characterIsMember(unit));
  for (const char16_t unit : std::u16string_view(u"/:a\xB2\xBD\x2160\x2460\xD835\xDFCE"))
    EXPECT_FALSE(digits.characterIsMember(unit)) << int{unit};
  EXPECT_EQ(membersOf(digits).size() % 10, 0U) << "digits come in tens";
}

TEST(NSCharacterSet, MadeSetsHoldWhatTheyAreMadeFrom) {
  using Set = NSCharacterSet;
  const Set units = Set::characterSetWithCharactersInString(u"\xFFFF?@a?");
  EXPECT_EQ(membersOf(units), u"?@a\xFFFF");
  EXPECT_EQ(membersOf(units.invertedSet()).size(), 0x10000U - 4);
  EXPECT_EQ(membersOf(Set::characterSetWithRange({0x3E, 4})), u">?@A");
  EXPECT_EQ(membersOf(Set::characterSetWithRange({0xFFFE, NSNotFound})), u"\xFFFE\xFFFF");
  EXPECT_EQ(membersOf(Set::characterSetWithRange({0x10041, 1})), u"");
}

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
  EXPECT_TRUE(set.containsIndex(none - 1) && !set.containsIndex(none) && !set.containsIndex(~std::size_t{0}));
  EXPECT_THROW(set.addIndex(none), std::out_of_range);
  EXPECT_THROW(NSIndexSet{none}, std::out_of_range);
  set.removeIndexesInRange({none, ~std::size_t{0}});
  EXPECT_EQ(set.count(), 1U);
  set.removeIndexesInRange({0, ~std::size_t{0}});
  set.addIndexesInRange({1, 3});
  set.addIndex(7);
  const auto snapshot = set.copy();
  EXPECT_TRUE(snapshot->isEqual(set) && set.mutableCopy()->hash() == snapshot->hash());
  set.addIndexes(NSIndexSet(NSRange{4, 3}));
  EXPECT_EQ(set.description(), u"(1-7)");
  EXPECT_EQ(snapshot->description(), u"(1-3, 7)");
}

using NSMutableIndexSetExtensions::mutableIndexSetWithIndexesInArray;
using NSMutableIndexSetExtensions::mutableIndexSetWithIndexSet;

TEST(NSIndexSetExtensions, NumbersBecomeIndexes) {
  const auto array = arrayOf({box(3), box(u"x"), box(1), box(3), box(7.9), box(true), box((1LL << 32) + 5), box(u"9")});
  const auto set = mutableIndexSetWithIndexesInArray(*array);
  EXPECT_EQ(set->description(), u"(1, 3, 5, 7)");
  EXPECT_TRUE(arrayOfIndexes(*set)->isEqual(*arrayOf({box(1), box(3), box(5), box(7)})));
  EXPECT_EQ(mutableIndexSetWithIndexesInArray(NSArray())->count(), 0U);
  EXPECT_EQ(arrayOfIndexes(NSIndexSet())->count(), 0U);
  for (const auto& negative : {box(-1), box(0xFFFFFFFFU), box(0x80000000U)})
    EXPECT_THROW(mutableIndexSetWithIndexesInArray(*arrayOf({negative})), std::out_of_range);

  const auto copied = mutableIndexSetWithIndexSet(*set);
  copied->removeAllIndexes();
  EXPECT_EQ(set->count(), 4U);
}

}  // namespace
