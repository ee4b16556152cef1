#include "Collections/QNStack.h"
#include "Platform/Foundation/Boxing.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

QNStack<Text> abc() {
  QNStack<Text> stack(1);
  for (const char16_t* element : {u"a", u"b", u"c"}) stack.push(element);
  return stack;
}

TEST(QNStack, ReadsFromTheTop) {
  QNStack<Text> stack = abc();
  EXPECT_EQ(stack.peek(), u"c");
  EXPECT_EQ(stack.peekAt(2), u"a");
  EXPECT_EQ(stack.peekAt(3), u"");
  EXPECT_THAT(stack.stack(), ElementsAre(u"a", u"b", u"c"));
  EXPECT_EQ(stack.pop(), u"c");
  EXPECT_EQ(stack.count(), 2U);
  stack.clear();
  EXPECT_EQ(stack.pop(), u"");
  QNStack<> objects;
  EXPECT_EQ(objects.peek(), nullptr);
  EXPECT_EQ(objects.pop(), nullptr);
  EXPECT_THAT([&] { objects.push(nullptr); }, ThrowsMessage<std::invalid_argument>(HasSubstr("push:")));
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

  const auto raises = [](auto& from, std::optional<TextView> marker, const char* message) {
    EXPECT_THAT([&] { from.popUntil(marker); }, ThrowsMessage<std::invalid_argument>(HasSubstr(message)));
    EXPECT_EQ(from.count(), 0U);
  };
  stack = abc();
  raises(stack, u"x", "popUntil: not on the stack: 'x'");
  stack = abc();
  raises(stack, std::nullopt, "'(null)'");
  QNStack<> numbers;
  numbers.push(box(1));
  raises(numbers, u"1", "'1'");
}

}  // namespace
}  // namespace kelvane
