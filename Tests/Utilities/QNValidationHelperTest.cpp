#include <regex>

#include "Support/Testing.h"
#include "Utilities/QNValidationHelper.h"

namespace {

TEST(QNValidationHelper, AgreesWithTheExpression) {
  const std::regex expression(R"([A-Z0-9a-z._%+-]+@[A-Za-z0-9.-]+\.[A-Za-z]{2,4})");
  std::mt19937 random(7);
  int valid = 0;
  for (int i = 0; i < 40000; ++i) {
    std::string address;
    const auto add = [&](std::string_view units, std::size_t most) {
      for (std::size_t length = random() % (most + 1); length > 0; --length) address += units[random() % units.size()];
    };
    add("aZ9._%+-", 6), add("@", 1), add("aZ9.-", 6), add(".", 1), add("abcYZ", 6);
    // One that may be no part of any.
    if (i % 4 == 0 && !address.empty()) address[random() % address.size()] = "@ _\n/:[`{\x7F"[random() % 10];
    const bool isValid = std::regex_match(address, expression);
    EXPECT_EQ(QNValidationHelper::validateEmail(textFromUTF8(address)), isValid) << address;
    valid += isValid;
  }
  EXPECT_GT(valid, 1000);
  EXPECT_FALSE(QNValidationHelper::validateEmail(u"\xE9@b.cd") || QNValidationHelper::validateEmail(u"a@\x212A.cd"));
  EXPECT_FALSE(QNValidationHelper::validateEmail(std::nullopt));
}

}  // namespace
