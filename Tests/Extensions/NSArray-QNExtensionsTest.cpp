#include <limits>

#include "Extensions/NSArray-QNExtensions.h"
#include "Platform/Foundation/Boxing.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

constexpr std::size_t largest = std::numeric_limits<std::size_t>::max();

std::vector<Ref<NSObject>> boxed(TextView letters) {
  std::vector<Ref<NSObject>> elements;
  for (const char16_t letter : letters) elements.push_back(box(Text(1, letter)));
  return elements;
}

Text text(const auto& array) {
  Text text;
  for (const Ref<NSObject>& element : array) text += description(element);
  return text;
}

// What holds for the object and for the vector alike.
template <class Array>
void expectChanges() {
  const struct {
    TextView before;
    std::size_t index;
    TextView up;
    TextView down;
    TextView pulled;
  } rows[] = {
      {u"abc", 0, u"bac", u"abc", u"bc"},        {u"abc", 1, u"acb", u"bac", u"ac"}, {u"abc", 2, u"abc", u"acb", u"ab"},
      {u"abc", 3, u"abc", u"abc", u"abc"},       {u"a", 0, u"a", u"a", u""},         {u"", largest, u"", u"", u""},
      {u"abc", largest, u"abc", u"abc", u"abc"},
  };
  for (const auto& row : rows) {
    Array up(boxed(row.before));
    Array down(boxed(row.before));
    Array rest(boxed(row.before));
    moveUpObjectAtIndex(up, row.index);
    moveDownObjectAtIndex(down, row.index);
    const Ref<NSObject> pulled = pullObjectAtIndex(rest, row.index);
    EXPECT_EQ(text(up), row.up);
    EXPECT_EQ(text(down), row.down);
    EXPECT_EQ(text(rest), row.pulled);
    EXPECT_EQ(description(pulled), row.index < row.before.size() ? row.before.substr(row.index, 1) : u"(null)");
  }
  Array empty;
  for (const std::size_t index : {std::size_t{0}, largest - 1})
    EXPECT_THAT([&] { moveUpObjectAtIndex(empty, index); },
                ThrowsMessage<std::out_of_range>(HasSubstr("moveUpObjectAtIndex: index")));
  EXPECT_EQ(firstObject(empty), nullptr);
  EXPECT_EQ(fetchAndRemoveFirstObject(empty), nullptr);
  Array queue(boxed(u"ab"));
  EXPECT_EQ(description(fetchAndRemoveFirstObject(queue)), u"a");
  EXPECT_EQ(text(queue), u"b");
}

TEST(NSArrayExtensions, ObjectsAndVectorsChangeAlike) {
  expectChanges<NSMutableArray>();
  expectChanges<std::vector<Ref<NSObject>>>();
}

TEST(NSArrayExtensions, ReversingFewGivesTheReceiver) {
  for (const TextView few : {TextView(u""), TextView(u"a")}) {
    const auto array = std::make_shared<NSMutableArray>(boxed(few));
    EXPECT_EQ(reverseArray(array), array);
  }
  EXPECT_EQ(reverseArray(Ref<NSArray>()), nullptr);
  const Ref<NSArray> array = std::make_shared<NSArray>(boxed(u"abc"));
  const Ref<NSArray> reversed = reverseArray(array);
  EXPECT_EQ(text(*reversed), u"cba");
  EXPECT_NE(as<NSMutableArray>(reversed), nullptr);
  EXPECT_EQ(text(*array), u"abc");
  EXPECT_EQ(text(reverseArray(boxed(u"ab"))), u"ba");
}

}  // namespace
}  // namespace kelvane
