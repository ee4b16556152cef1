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

// Which rows and cells there are is judged by the plain way of TSVFuzz; here, how they are reached.
TEST(TSVTable, RowsAndCells) {
  const TSVTable table = arrayFromTSV(u"# people\nname\tage\t\tage\n\nBob\t1\t\t2\nAnn\t\t \t30\textra");
  EXPECT_EQ(table.columnNames(), (std::vector<TextView>{u"name", u"age", u"", u"age"}));
  EXPECT_EQ(rowsOf(table), (std::vector<Entries>{{{u"name"sv, u"Bob"sv}, {u"age"sv, u"2"sv}},
                                                 {{u"name"sv, u"Ann"sv}, {u""sv, u" "sv}, {u"age"sv, u"30"sv}}}));
  EXPECT_TRUE(table[0].contains(u"age") && !table[0].contains(u""));
  EXPECT_TRUE(table[0][u"age"] == u"2" && table[1][u"age"] == u"30" && !table[1][u"no such column"]);
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
