#include <gtest/gtest.h>

#include <algorithm>

#include "Platform/Foundation/TextScan.h"
#include "Support/TextPrinting.h"

namespace kelvane {
namespace {

// Every place in texts of every length up to a few machine words; the neighbours of a unit differ from it in one byte.
TEST(TextScan, FindsAUnitAtEveryPlaceOfEveryLength) {
  static constexpr UnitSet full{u'\n', u'\r', u'\x85', u'\x2028', u'\x2029', u'"', u'\xD800', u'\0'};
  static constexpr UnitSet single{u'\x2028'};
  for (std::size_t length = 0; length <= 70; ++length) {
    Text text(length, u'\x2128');
    for (std::size_t i = 0; i < length; ++i)
      if (i % 3 == 0) text[i] = u'\x2027';
    ASSERT_EQ(findAnyOf(text, full), length);
    ASSERT_EQ(findAnyOf(text, full, length + 5), length);
    ASSERT_EQ(findUnit(text, u'\x2028', length + 5), length);
    for (std::size_t place = 0; place < length; ++place) {
      const char16_t kept = text[place];
      text[place] = full.units()[place % 8];
      const Text before = text;
      ASSERT_EQ(findAnyOf(text, full), place);
      ASSERT_EQ(findAnyOf(text, full, place), place);
      ASSERT_EQ(findAnyOf(text, full, place + 1), length);
      text[place] = u'\x2028';
      ASSERT_EQ(findAnyOf(text, single), place);
      ASSERT_EQ(findUnit(text, u'\x2028'), place);
      ASSERT_EQ(findUnit(text, u'\x2028', place + 1), length);
      text[place] = kept;
    }
  }
}

TEST(TextScan, CountsAndReplacesEveryUnit) {
  for (std::size_t length = 0; length <= 70; ++length) {
    Text text;
    for (std::size_t i = 0; i < length; ++i) text += i % 3 == 0 ? u'\x161' : u'a';
    Text expected = text;
    std::replace(expected.begin(), expected.end(), u'a', u'\x161');
    ASSERT_EQ(countUnit(text, u'a'), length - (length + 2) / 3);
    ASSERT_EQ(replacingUnit(text, u'a', u'\x161'), expected);
    ASSERT_EQ(replacingUnit(text, u'b', u'c'), text);
  }
  EXPECT_EQ(countUnit(Text(70000, u'x'), u'x'), 70000U);
}

}  // namespace
}  // namespace kelvane
