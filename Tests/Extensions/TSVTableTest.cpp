#include "Extensions/NSString-QNExtensions.h"
#include "Extensions/TSVTable.h"
#include "Support/Testing.h"

namespace {

using namespace std::string_view_literals;
using Entries = std::vector<std::pair<TextView, TextView>>;

Entries entriesOf(const TSVRow& row) {
  Entries entries;
  for (const auto entry : row) entries.push_back(entry);
  return entries;
}

std::vector<Entries> rowsOf(const TSVTable& table) {
  std::vector<Entries> rows;
  for (const TSVRow row : table) rows.push_back(entriesOf(row));
  return rows;
}

template <class T>
constexpr bool givesRows = requires(T table) {
  std::forward<T>(table)[0];
};
static_assert(givesRows<TSVTable&> && givesRows<const TSVTable&> && !givesRows<TSVTable> && !givesRows<const TSVTable>);

TEST(TSVTable, ReadsLinesAsRows) {
  const std::tuple<const char*, TextView, std::vector<Entries>> tables[] = {
      {"comment, empty cell, cell too many",
       u"# people\nname\tage\n\nBob\t\nAnn\t30\textra"sv,
       {{{u"name"sv, u"Bob"sv}}, {{u"name"sv, u"Ann"sv}, {u"age"sv, u"30"sv}}}},
      {"blanks and quotes stay", u"a\tb\n \"x\" \t'\n"sv, {{{u"a"sv, u" \"x\" "sv}, {u"b"sv, u"'"sv}}}},
      {"empty names are names", u"\tb\nx\ty\n"sv, {{{u""sv, u"x"sv}, {u"b"sv, u"y"sv}}}},
      {"a later column of the same name counts", u"a\ta\n1\t2\n"sv, {{{u"a"sv, u"2"sv}}}},
      {"unless its cell is empty", u"a\tb\ta\n1\t2\t\n"sv, {{{u"a"sv, u"1"sv}, {u"b"sv, u"2"sv}}}},
  };
  for (const auto& [what, text, rows] : tables) {
    SCOPED_TRACE(what);
    const TSVTable table = arrayFromTSV(text);
    ASSERT_EQ(rowsOf(table), rows);
    EXPECT_EQ(table.size(), rows.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
      EXPECT_EQ(table[i].size(), rows[i].size());
      for (const auto& [name, cell] : rows[i]) EXPECT_EQ(table[i][name], cell);
      EXPECT_EQ(table[i][u"no such column"], std::nullopt);
    }
  }
}

TEST(TSVTable, AbsentCellsAndColumnNames) {
  const TSVTable table = arrayFromTSV(u"name\tage\t\tage\nBob\t1\t\t\n");
  EXPECT_EQ(table.columnNames(), (std::vector<TextView>{u"name", u"age", u"", u"age"}));
  EXPECT_TRUE(table[0].contains(u"age") && !table[0].contains(u""));
  EXPECT_EQ(table[0].cell(1), u"1"sv);
  EXPECT_EQ(table[0].cell(99), u""sv);
}

TEST(TSVTable, OwnsItsText) {
  // Short enough to live within the string object, so that moving it moves the characters.
  TSVTable table = arrayFromTSV(Text(u"a\n1\n"));
  const TSVTable moved = std::move(table);
  EXPECT_EQ(rowsOf(moved), (std::vector<Entries>{{{u"a"sv, u"1"sv}}}));
  const TSVTable copied = moved;
  EXPECT_EQ(rowsOf(copied), rowsOf(moved));
  EXPECT_NE(copied[0].cell(0).data(), moved[0].cell(0).data());
}

}  // namespace
