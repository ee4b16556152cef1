#include <numeric>
#include <random>

#include "Collections/QNRandomArray.h"
#include "Extensions/NSArray-QNExtensions.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

// Gives the words one after another; reading beyond them is a failure.
class Words {
 public:
  Words(std::initializer_list<std::uint32_t> words) : myWords(words) {}
  std::uint32_t operator()() { return myWords.at(myNext++); }

 private:
  std::vector<std::uint32_t> myWords;
  std::size_t myNext = 0;
};

TEST(QNRandomArray, DrawsFollowTheWords) {
  QNRandomArray<Text> array({u"a", u"b", u"c", u"d"});
  // 6 % 4, 4 % 3, 0 % 2, and the last one without a draw.
  EXPECT_THAT(array.randomObjects(9, Words{6, 4, 0}), testing::ElementsAre(u"c", u"b", u"a", u"d"));
  EXPECT_EQ(array.pullRandomObject(Words{5}), u"b");
  EXPECT_THAT(array.randomObjects(5, Words{2, 0}), testing::ElementsAre(u"d", u"a", u"c"));
  EXPECT_EQ(array.pullRandomObject(Words{1}), u"c");
  EXPECT_EQ(array.pullRandomObject(Words{1}), u"d");
  EXPECT_EQ(array.pullRandomObject(Words{}), u"a");
  EXPECT_THAT(array.randomObjects(5), testing::IsEmpty());
  EXPECT_DEATH(array.pullRandomObject(), "no number between 0 and -1");
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
  }
}

TEST(QNRandomArray, RefusesNil) {
  EXPECT_THROW(QNRandomArray<>({nullptr}), std::invalid_argument);
  const auto object = box(u"x");
  EXPECT_EQ(QNRandomArray<>({object, object}).randomObjects(2).size(), 2U) << "none twice means by place";
}

}  // namespace
}  // namespace kelvane
