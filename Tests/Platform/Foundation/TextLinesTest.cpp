#include <concepts>
#include <iterator>
#include <string>
#include <vector>

#include "Platform/Foundation/TextLines.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

static_assert(std::constructible_from<Lines, Text&> && std::constructible_from<Lines, const Text&> &&
              std::constructible_from<Lines, TextView> && std::constructible_from<Lines, const char16_t*>);
static_assert(!std::constructible_from<Lines, Text> && !std::constructible_from<Lines, const Text>,
              "the text would be gone before the first line");
static_assert(std::forward_iterator<Lines::Iterator> && std::sentinel_for<std::default_sentinel_t, Lines::Iterator>);

TEST(TextLines, SplitsAtEveryTerminator) {
  using namespace std::string_view_literals;
  const struct {
    const char* name;
    TextView text;
    std::vector<TextView> lines;
  } rows[] = {
      {"empty", u"", {}},
      {"only terminators", u"\n\n", {u"", u"", u""}},
      {"CR LF", u"a\r\nb", {u"a", u"b"}},
      {"LF CR is two", u"a\n\rb", {u"a", u"", u"b"}},
      {"CR CR LF is two", u"\r\r\n", {u"", u"", u""}},
      {"each of the others", u"-\x85-\x2028-\x2029-", {u"-", u"-", u"-", u"-"}},
      {"what ends no line", u"a\v\f\0\x1C\x2027\x0A0A"sv, {u"a\v\f\0\x1C\x2027\x0A0A"sv}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    std::vector<TextView> lines;
    for (const TextView line : Lines(row.text)) lines.push_back(line);
    EXPECT_EQ(lines, row.lines);
    std::vector<TextView> visited;
    visitLines(row.text, [&visited](TextView line) { visited.push_back(line); });
    EXPECT_EQ(visited, row.lines);
  }
}

TEST(TextLines, IteratorsTellPlacesAndCompare) {
  const TextView text = u"ab\r\n\rc";
  const Lines lines(text);
  auto line = lines.begin();
  const auto first = line++;
  EXPECT_EQ(first, lines.begin());
  EXPECT_NE(first, line);
  EXPECT_EQ(NSRange(first.start(), first.contentsEnd()), NSRange(0, 2));
  EXPECT_EQ(NSRange(line.start(), line.contentsEnd()), NSRange(4, 4));
  EXPECT_EQ((*line).data(), text.data() + 4) << "lines are slices of the text, even empty ones";
  ++line;
  EXPECT_EQ(*line, u"c");
  EXPECT_EQ(++line, lines.end());
  EXPECT_NE(first, line) << "the end is no line";
}

}  // namespace
}  // namespace kelvane
