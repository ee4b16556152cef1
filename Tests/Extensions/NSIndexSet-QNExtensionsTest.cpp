#include "Extensions/NSIndexSet-QNExtensions.h"
#include "Platform/Foundation/Boxing.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

using NSMutableIndexSetExtensions::mutableIndexSetWithIndexesInArray;
using NSMutableIndexSetExtensions::mutableIndexSetWithIndexSet;

TEST(NSIndexSetExtensions, NumbersBecomeIndexes) {
  const auto array = NSArray::arrayWithObjects(
      {box(3), box(u"x"), box(1), box(3), box(7.9), box(true), box((1LL << 32) + 5), box(u"9")});
  const auto set = mutableIndexSetWithIndexesInArray(*array);
  EXPECT_EQ(set->description(), u"(1, 3, 5, 7)");
  EXPECT_TRUE(arrayOfIndexes(*set)->isEqual(*NSArray::arrayWithObjects({box(1), box(3), box(5), box(7)})));
  EXPECT_EQ(mutableIndexSetWithIndexesInArray(NSArray())->count(), 0U);
  EXPECT_EQ(arrayOfIndexes(NSIndexSet())->count(), 0U);
  for (const auto& negative : {box(-1), box(0xFFFFFFFFU), box(0x80000000U)})
    EXPECT_THROW(mutableIndexSetWithIndexesInArray(*NSArray::arrayWithObjects({negative})), std::out_of_range);

  const auto copied = mutableIndexSetWithIndexSet(*set);
  copied->removeAllIndexes();
  EXPECT_EQ(set->count(), 4U);
}

}  // namespace
}  // namespace kelvane
