#include "Support/Testing.h"
#include "Utilities/QNTagStack.h"

namespace {

QNTagStack stackOf(std::initializer_list<TextView> tags) {
  QNTagStack stack;
  for (const TextView tag : tags) stack.push(tag);
  return stack;
}

TEST(QNTagStack, ClosesAndOpensAgainWhatLiesAbove) {
  QNTagStack stack = stackOf({u"<a>", u"<b>", u"<i>"});
  EXPECT_EQ(stack.closeTag(u"<a>"), u"</i></b></a><b><i>");
  EXPECT_THAT(stack.stack(), ElementsAre(u"<b>", u"<i>"));
  EXPECT_EQ(stack.closeTag(u"<i>"), u"</i>");
  EXPECT_EQ(stack.openTag(u"<font>"), u"<font>");
  EXPECT_EQ(stack.openTag(u"<b>"), u"");
  EXPECT_EQ(stack.flushTags(), u"</font></b>");
  EXPECT_EQ(stack.flushTags(), u"");
  EXPECT_EQ(stack.closeTag(u"<b>"), u"");
}

TEST(QNTagStack, IsAStack) {
  QNTagStack stack = stackOf({u"<b>", u"<i>", u"<b>", u"<u>"});
  stack.pushUnique(u"<i>");
  EXPECT_THAT(stack.popUntil(u"<b>"), ElementsAre(u"<u>", u"<b>")) << "down to the nearest of two equal entries";
  EXPECT_TRUE(stack.pop() == u"<i>" && stack.count() == 1 && stack.pop() == u"<b>" && !stack.peek() && !stack.pop());
  EXPECT_THAT(stack.popUntil(u"<b>"), IsEmpty());
}

TEST(QNTagStack, RefusesWhatCallersGetWrong) {
  using Use = std::function<void(QNTagStack&)>;
  const std::tuple<const char*, Use, std::size_t> rows[] = {
      {"push: the tag is nil", [](QNTagStack& s) { s.push(std::nullopt); }, 2},
      {"pushUnique: the tag is nil", [](QNTagStack& s) { s.pushUnique(std::nullopt); }, 2},
      {"popUntil: the tag is nil", [](QNTagStack& s) { s.popUntil(std::nullopt); }, 2},
      {"openTag: the tag is nil", [](QNTagStack& s) { s.openTag(std::nullopt); }, 2},
      {"closeTag: the tag is nil", [](QNTagStack& s) { s.closeTag(std::nullopt); }, 2},
      {"popUntil: no such tag is open '<u>'", [](QNTagStack& s) { s.closeTag(u"<u>"); }, 0},
      {"flushTags: an empty tag has no closing form", [](QNTagStack& s) { s.push(u""), s.flushTags(); }, 3},
      {"closeTag: an empty tag has no closing form", [](QNTagStack& s) { s.push(u""), s.closeTag(u"<b>"); }, 0},
  };
  for (const auto& [message, use, left] : rows) {
    QNTagStack stack = stackOf({u"<b>", u"<i>"});
    EXPECT_THAT([&] { use(stack); }, ThrowsMessage<std::invalid_argument>(std::string(message)));
    EXPECT_EQ(stack.stack().size(), left) << message;
  }
}

}  // namespace
