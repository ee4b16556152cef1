#include <regex>

#include "Support/Testing.h"
#include "Utilities/QNValidationHelper.h"

namespace {

TEST(QNValidationHelper, ChecksTheFormOfEMailAddresses) {
  const std::pair<TextView, bool> rows[] = {
      {u"a.b+c%d_e-f@g-h.i.jk", true},
      {u"..@-.co", true},
      {u"a@b.museum", false},
      {u"a.b.cd", false},
      {u"a@b@c.de", false},
      {u"a b@c.de", false},
      {u"", false},
      {u"a@b.c1", false},
      {u"\xE9@b.cd", false},
      {u"a@b.cd\n", false},
  };
  for (const auto& [address, valid] : rows)
    EXPECT_EQ(QNValidationHelper::validateEmail(address), valid) << testing::PrintToString(address);
  EXPECT_FALSE(QNValidationHelper::validateEmail(std::nullopt));
}

TEST(QNValidationHelper, AgreesWithTheExpression) {
  const std::regex expression(R"([A-Z0-9a-z._%+-]+@[A-Za-z0-9.-]+\.[A-Za-z]{2,4})");
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    std::string address;
    const std::size_t length = random() % 10;
    for (std::size_t k = 0; k < length; ++k) address += "aZ9@.-+ "[random() % 8];
    if (i % 2) address += "@a.bc";
    EXPECT_EQ(QNValidationHelper::validateEmail(textFromUTF8(address)), std::regex_match(address, expression))
        << address;
  }
}

}  // namespace
