#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <random>

#include "Collections/QNRandomArray.h"
#include "Extensions/NSArray-QNExtensions.h"
#include "Support/TextPrinting.h"

namespace kelvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Gives the words one after another; reading beyond them is a failure.
class Words {
 public:
  Words(std::initializer_list<std::uint32_t> words) : myWords(words) {}
  std::uint32_t operator()() { return myWords.at(myNext++); }
  std::size_t used() const { return myNext; }

 private:
  std::vector<std::uint32_t> myWords;
  std::size_t myNext = 0;
};

TEST(QNRandomArray, DrawsFollowTheWords) {
  const QNRandomArray<Text> array({u"a", u"b", u"c", u"d"});
  Words words{6, 4, 0};  // 6 % 4, 4 % 3, 0 % 2, and the last one without a draw
  EXPECT_THAT(array.randomObjects(9, words), ElementsAre(u"c", u"b", u"a", u"d"));
  EXPECT_EQ(words.used(), 3U);
  EXPECT_THAT(array.randomObjects(1, Words{3}), ElementsAre(u"d"));
  EXPECT_THAT(array.randomObjects(0, Words{}), IsEmpty());
  EXPECT_THAT(QNRandomArray<Text>({}).randomObjects(3, Words{}), IsEmpty());
  EXPECT_THAT(QNRandomArray<Text>({u"only"}).randomObjects(3, Words{}), ElementsAre(u"only"));

  QNRandomArray<Text> drained = array;
  EXPECT_EQ(drained.pullRandomObject(Words{5}), u"b");
  EXPECT_THAT(drained.randomObjects(5, Words{2, 0}), ElementsAre(u"d", u"a", u"c"));
  EXPECT_EQ(drained.pullRandomObject(Words{1}), u"c");
  EXPECT_EQ(drained.pullRandomObject(Words{1}), u"d");
  EXPECT_EQ(drained.pullRandomObject(Words{}), u"a");
  EXPECT_THAT(drained.randomObjects(5), IsEmpty());
  EXPECT_DEATH(drained.pullRandomObject(), "no number between 0 and -1");
}

// The plain way is the judge: erase what is drawn from a list.
TEST(QNRandomArray, DrawsAsFromAListThatGetsShorter) {
  std::mt19937 random(9);
  for (const std::size_t n : {1, 2, 3, 50, 127, 128, 255, 256, 257, 511, 512, 513, 1000}) {
    QNRandomArray<int> pulled = QNRandomArray<int>::withNumberObjects(n);
    std::mt19937 same = random;
    const std::vector<int> drawn = pulled.randomObjects(n, random);
    std::vector<int> list(n);
    std::iota(list.begin(), list.end(), 0);
    std::mt19937 again = same;
    for (const int number : drawn) {
      const std::size_t index = list.size() == 1 ? 0 : same() % list.size();
      ASSERT_EQ(pullObjectAtIndex(list, index), number);
      ASSERT_EQ(pulled.pullRandomObject(again), number);
    }
  }
}

TEST(QNRandomArray, ObjectsAndNumbers) {
  QNRandomArray<> numbers = QNRandomArray<>::withNumberObjects(5);
  std::vector<int> values;
  for (int i = 0; i < 5; ++i) values.push_back(unbox<int>(numbers.pullRandomObject()));
  EXPECT_THAT(values, testing::UnorderedElementsAre(0, 1, 2, 3, 4));
  EXPECT_THROW(QNRandomArray<>({nullptr}), std::invalid_argument);
  const auto object = box(u"x");
  QNRandomArray<> array({object, object});
  EXPECT_EQ(array.randomObjects(2).size(), 2U) << "none twice means by place";
  EXPECT_EQ(object.use_count(), 3);
  array.pullRandomObject();
  EXPECT_EQ(object.use_count(), 2) << "what was pulled is let go";
}

}  // namespace
}  // namespace kelvane
