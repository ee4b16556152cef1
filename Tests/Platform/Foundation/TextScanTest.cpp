#include <bit>

#include "Platform/Foundation/TextPlaces.h"
#include "Platform/Foundation/TextRewrite.h"
#include "Platform/Foundation/TextScan.h"
#include "Platform/Foundation/TextSearch.h"
#include "Platform/Foundation/VectorTargets.h"
#include "Support/Testing.h"
#include "Support/TextBeforeAGap.h"

namespace {

constexpr UnitSet sets[] = {{u'\x2028'},
                            {u'"', u'\''},
                            {u'\n', u'\r', u'\x85', u'\x2028'},
                            {u'\n', u'\r', u'\x85', u'\x2028', u'\x2029', u'\t'},
                            {u'\n', u'\r', u'\x85', u'\x2028', u'\x2029', u'"', u'\xD800', u'\0'}};

// Runs each test on every instruction set that the machine has.
struct TextScan : testing::TestWithParam<std::int64_t> {
  void SetUp() override { useVectorTargets(GetParam()); }
  void TearDown() override { useVectorTargets(supportedVectorTargets()); }
};

std::vector<std::int64_t> supportedTargets() {
  std::vector<std::int64_t> targets;
  for (std::int64_t left = supportedVectorTargets(); left != 0; left &= left - 1) targets.push_back(left & -left);
  return targets;
}

INSTANTIATE_TEST_SUITE_P(Targets, TextScan, testing::ValuesIn(supportedTargets()), [](const auto& row) {
  return "bit" + std::to_string(std::countr_zero(static_cast<std::uint64_t>(row.param)));
});

// Everything that the loops tell of one text, against loops of one line each.
void expectAsPlainLoops(TextView text, const UnitSet& set) {
  const auto isMember = [&](char16_t unit) { return set.contains(unit); };
  std::vector<std::size_t> expected;
  Text without, prefixed, replaced;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isMember(text[i])) expected.push_back(i);
    if (isMember(text[i])) prefixed += u'\\';
    if (!isMember(text[i])) without += text[i];
    prefixed += text[i];
    replaced += text[i] == u'"' ? u'\'' : text[i];
  }
  std::vector<std::size_t> found;
  UnitPlaces places(text, set);
  for (std::size_t place = places.next(); place != text.size(); place = places.next()) found.push_back(place);
  ASSERT_EQ(found, expected);
  ASSERT_EQ(places.next(), text.size());
  ASSERT_EQ(findAnyOf(text, set), expected.empty() ? text.size() : expected.front());
  ASSERT_EQ(findAnyOf(text, set, expected.empty() ? 1 : expected.front() + 1),
            expected.size() > 1 ? expected[1] : text.size());
  ASSERT_EQ(findUnit(text, u'"'), std::min(text.find(u'"'), text.size()));
  ASSERT_EQ(countAnyOf(text, set), expected.size());
  ASSERT_EQ(countUnit(text, u'"'), static_cast<std::size_t>(std::count(text.begin(), text.end(), u'"')));
  ASSERT_EQ(replacingUnit(text, u'"', u'\''), replaced);
  ASSERT_EQ(removingAnyOf(text, set), without);
  ASSERT_EQ(prefixingAnyOf(text, set, u'\\'), prefixed);
}

// Texts of the members of all sets and of units that differ from one of them in a bit or a byte.
Text randomText(std::mt19937& random, std::size_t length, std::uint32_t membersOfAHundred) {
  constexpr TextView others = u"ab\x220A\x0A0A\x2027\x202A\x8500\x0085\x2228\xD801\xFFFF";
  Text text;
  for (std::size_t i = 0; i < length; ++i)
    text += random() % 100 < membersOfAHundred ? u"\n\r\x85\x2028\x2029\t\"'\xD800"[random() % 9]
                                               : others[random() % others.size()];
  return text;
}

TEST_P(TextScan, TellsWhatPlainLoopsTell) {
  std::mt19937 random(4711);
  for (std::size_t length = 0; length <= 150; ++length)
    for (const std::uint32_t membersOfAHundred : {0U, 3U, 30U, 100U}) {
      const TextBeforeAGap text(randomText(random, length, membersOfAHundred));
      for (const UnitSet& set : sets) expectAsPlainLoops(text.text(), set);
    }
  // Beyond what is marked, rewritten and copied at a time.
  for (const std::size_t length : {255U, 256U, 257U, 511U, 513U, 5000U})
    for (const std::uint32_t membersOfAHundred : {0U, 1U, 50U}) {
      const Text text = randomText(random, length, membersOfAHundred);
      for (const UnitSet& set : sets) expectAsPlainLoops(text, set);
    }
}

// What is written is read back, whatever runs of one, two, three and four bytes follow each other.
TEST_P(TextScan, TranscodesRunsOfEveryLength) {
  constexpr TextView kinds[] = {u"a", u"é", u"中", u"\xFFFD", u"\xD83D\xDE00", u"ࠀ"};
  constexpr std::string_view bytes[] = {"a", "é", "中", "\xEF\xBF\xBD", "\xF0\x9F\x98\x80", "ࠀ"};
  std::mt19937 random(7);
  for (int round = 0; round < 400; ++round) {
    Text text;
    std::string expected;
    while (text.size() < 200) {
      const std::size_t kind = random() % std::size(kinds);
      for (std::size_t run = 1 + random() % (round % 2 ? 60 : 5); run > 0; --run) {
        text += kinds[kind];
        expected += bytes[kind];
      }
    }
    ASSERT_EQ(utf8(text), expected);
    ASSERT_EQ(textFromUTF8(expected), text);
  }
}

}  // namespace
