#include <cstdint>
#include <string_view>

#include "Platform/Foundation/NSCharacterSet.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

Text membersOf(const NSCharacterSet& set) {
  Text members;
  for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit)
    if (set.characterIsMember(static_cast<char16_t>(unit))) members += static_cast<char16_t>(unit);
  return members;
}

TEST(NSCharacterSet, PredefinedSets) {
  EXPECT_EQ(
      membersOf(NSCharacterSet::whitespaceAndNewlineCharacterSet()),
      u"\t\n\v\f\r \x85\xA0\x1680\x2000\x2001\x2002\x2003\x2004\x2005\x2006\x2007\x2008\x2009\x200A\x2028\x2029\x202F"
      u"\x205F\x3000");
  const NSCharacterSet& digits = NSCharacterSet::decimalDigitCharacterSet();
  for (const char16_t unit : std::u16string_view(u"09\x0660\x0966\xFF19")) EXPECT_TRUE(digits.characterIsMember(unit));
  for (const char16_t unit : std::u16string_view(u"/:a\xB2\xBD\x2160\x2460\xD835\xDFCE"))
    EXPECT_FALSE(digits.characterIsMember(unit)) << int{unit};
  EXPECT_EQ(membersOf(digits).size() % 10, 0U) << "digits come in tens";
}

TEST(NSCharacterSet, MadeSetsHoldWhatTheyAreMadeFrom) {
  using Set = NSCharacterSet;
  const Set units = Set::characterSetWithCharactersInString(u"\xFFFF?@a?");
  EXPECT_EQ(membersOf(units), u"?@a\xFFFF");
  EXPECT_EQ(membersOf(units.invertedSet()).size(), 0x10000U - 4);
  EXPECT_EQ(membersOf(Set::characterSetWithRange({0x3E, 4})), u">?@A");
  EXPECT_EQ(membersOf(Set::characterSetWithRange({0xFFFE, NSNotFound})), u"\xFFFE\xFFFF");
  EXPECT_EQ(membersOf(Set::characterSetWithRange({0x10041, 1})), u"");
}

}  // namespace
}  // namespace kelvane
