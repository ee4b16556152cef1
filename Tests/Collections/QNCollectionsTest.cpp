#include <numeric>

#include "Collections/QNBucketDictionary.h"
#include "Collections/QNRandomArray.h"
#include "Collections/QNStack.h"
#include "Extensions/NSArray-QNExtensions.h"
#include "Support/Testing.h"

namespace {

QNStack<Text> abc() {
  QNStack<Text> stack(1);
  for (const char16_t* element : {u"a", u"b", u"c"}) stack.push(element);
  return stack;
}

TEST(QNStack, ReadsFromTheTop) {
  QNStack<Text> stack = abc();
  EXPECT_TRUE(stack.peekAt(2) == u"a" && stack.peekAt(3).empty() && stack.peek() == u"c");
  EXPECT_EQ(stack.pop(), u"c");
  stack.clear();
  EXPECT_EQ(stack.pop(), u"");
  QNStack<> objects;
  EXPECT_TRUE(!objects.peek() && !objects.pop());
  EXPECT_THAT([&] { objects.push(nullptr); }, refuses("push:"));
}

TEST(QNStack, UniqueMeansEqualAnywhere) {
  QNStack<> stack;
  for (const Ref<NSObject>& object : {Ref<NSObject>(box(1)), Ref<NSObject>(box(u"a")), Ref<NSObject>(box(1.0))})
    stack.pushUnique(object);
  EXPECT_EQ(stack.count(), 2U);
}

TEST(QNStack, PopsUntilTheMarker) {
  QNStack<Text> stack = abc();
  EXPECT_THAT(stack.popUntil(u"b"), ElementsAre(u"c", u"b"));
  EXPECT_THAT(stack.stack(), ElementsAre(u"a"));
  EXPECT_THAT(QNStack<Text>().popUntil(u"c"), IsEmpty());
  for (const std::optional<TextView> marker : {std::optional<TextView>(u"x"), {}}) {
    stack = abc();
    EXPECT_THAT(
        [&] { stack.popUntil(marker); },
        ThrowsMessage<std::invalid_argument>("popUntil: not on the stack: '" + utf8(marker.value_or(u"(null)")) + "'"));
    EXPECT_EQ(stack.count(), 0U);
  }
  QNStack<> numbers;
  numbers.push(box(1));
  EXPECT_THROW(numbers.popUntil(u"1"), std::invalid_argument);
}

TEST(QNBucketDictionary, GroupsByKey) {
  QNBucketDictionary<Text, int> byTown;
  EXPECT_THAT(byTown.objectsFromsBucketWithKey(u"Ulm"), IsEmpty());
  EXPECT_EQ(byTown.count(), 0) << "asking makes no bucket";
  byTown.putObject(3, u"Ulm");
  const std::vector<int>& ulm = byTown.objectsFromsBucketWithKey(u"Ulm");
  byTown.putObject(3, u"Ulm");
  byTown.putObject(1, u"Ulm");
  EXPECT_THAT(ulm, ElementsAre(3, 3, 1)) << "the bucket itself";
  EXPECT_EQ(byTown.keys().size(), 1U);
}

TEST(QNBucketDictionary, NilAndObjectsAsKeys) {
  QNBucketDictionary<> dictionary;
  dictionary.putObject(box(1), nullptr);
  EXPECT_THAT(dictionary.keys(), IsEmpty());
  EXPECT_EQ(dictionary.countOfObjectsInBucketWithKey(nullptr), 0);
  EXPECT_THROW(dictionary.putObject(nullptr, box(7)), std::invalid_argument);
  EXPECT_EQ(dictionary.count(), 1) << "the empty bucket stays";
  QNBucketDictionary<std::optional<Text>, int> byTown;
  byTown.putObject(1, std::nullopt);
  byTown.putObject(2, u"Ulm");
  EXPECT_THAT(byTown.keys(), ElementsAre(Text(u"Ulm")));

  const auto key = std::make_shared<NSMutableString>(u"key");
  dictionary.putObject(box(1), key);
  key->mutableText() = u"changed";
  EXPECT_EQ(dictionary.countOfObjectsInBucketWithKey(box(u"key")), 1) << "the key was copied";
  EXPECT_EQ(dictionary.countOfObjectsInBucketWithKey(key), 0);
  EXPECT_THROW(dictionary.putObject(box(1), std::make_shared<NSObject>()), std::invalid_argument);
}

// The plain way is the judge: erase what is drawn from a list.
TEST(QNRandomArray, DrawsAsFromAListThatGetsShorter) {
  std::mt19937 random(9);
  for (const std::size_t n : {1, 2, 255, 256, 257, 1000}) {
    QNRandomArray<int> pulled = QNRandomArray<int>::withNumberObjects(n);
    std::mt19937 again = random;
    std::mt19937 same = random;
    std::vector<int> list(n);
    std::iota(list.begin(), list.end(), 0);
    for (const int number : pulled.randomObjects(n, random)) {
      const std::size_t index = list.size() == 1 ? 0 : same() % list.size();
      ASSERT_EQ(pullObjectAtIndex(list, index), number);
      ASSERT_EQ(pulled.pullRandomObject(again), number);
    }
    EXPECT_THAT(pulled.randomObjects(5), IsEmpty());
    EXPECT_DEATH(pulled.pullRandomObject(), "no number between 0 and -1");
  }
}

TEST(QNRandomArray, RefusesNil) {
  EXPECT_THROW(QNRandomArray<>({nullptr}), std::invalid_argument);
  const auto object = box(u"x");
  EXPECT_EQ(QNRandomArray<>({object, object}).randomObjects(2).size(), 2U) << "none twice means by place";
}

}  // namespace
