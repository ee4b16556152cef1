#include "Platform/Foundation/TextJoin.h"
#include "Support/Testing.h"

namespace {

TEST(TextJoin, PutsSeparatorsOnlyBetween) {
  const Text built = u"built";
  EXPECT_EQ(concatenate({u"a", u"", built, u"z"}), u"abuiltz");
  EXPECT_EQ(concatenate({}), u"");
  const std::pair<std::vector<TextView>, TextView> rows[] = {
      {{}, u""}, {{u"a"}, u"a"}, {{u"", u""}, u", "}, {{u"a", u"b", u""}, u"a, b, "}};
  for (const auto& [components, joined] : rows) {
    EXPECT_EQ(componentsJoinedByString(components, u", "), joined);
    const std::vector<Text> copies(components.begin(), components.end());
    EXPECT_EQ(componentsJoinedByString(copies, u", "), joined);
  }
}

}  // namespace
