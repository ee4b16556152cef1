// Reading a table of tab-separated values: 1 MiB in UTF-16, eight columns.

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "Extensions/NSString-QNExtensions.h"
#include "Support/Inputs.h"
#include "Support/Limits.h"
#include "Support/Row.h"

#ifdef BENCH_QT
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#endif

namespace kelvane::bench {
namespace {

using StandardRow = std::map<Text, Text>;

std::vector<TextView> standardSplit(TextView text, char16_t separator) {
  std::vector<TextView> parts;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(separator, start), text.size());
    parts.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

std::vector<StandardRow> standardTable(TextView text) {
  std::vector<StandardRow> rows;
  std::vector<TextView> names;
  for (const TextView line : standardSplit(text, u'\n')) {
    if (line.empty() || line.front() == u'#') continue;
    const std::vector<TextView> cells = standardSplit(line, u'\t');
    if (names.empty()) {
      names = cells;
      continue;
    }
    StandardRow& row = rows.emplace_back();
    for (std::size_t i = 0; i < std::min(cells.size(), names.size()); ++i)
      if (!cells[i].empty()) row.insert_or_assign(Text(names[i]), Text(cells[i]));
  }
  return rows;
}

#ifdef BENCH_QT
using QtRow = QHash<QString, QString>;

QList<QtRow> qtTable(const QString& text) {
  QList<QtRow> rows;
  QStringList names;
  const QStringList lines = text.split(u'\n');
  for (const QString& line : lines) {
    if (line.isEmpty() || line.startsWith(u'#')) continue;
    const QStringList cells = line.split(u'\t');
    if (names.isEmpty()) {
      names = cells;
      continue;
    }
    QtRow row;
    for (qsizetype i = 0; i < std::min(cells.size(), names.size()); ++i)
      if (!cells[i].isEmpty()) row.insert(names[i], cells[i]);
    rows.append(row);
  }
  return rows;
}
#endif

// Twice the text, and 8 bytes for each cell and row.
std::size_t memoryReach() {
  const Text& text = tableText();
  const auto count = [&](char16_t unit) { return static_cast<std::size_t>(std::ranges::count(text, unit)); };
  return 2 * text.size() * sizeof(char16_t) + 8 * (count(u'\t') + 2 * count(u'\n'));
}

const Subject table([] {
  Row("arrayFromTSV")
      .ours([] { return arrayFromTSV(TextView(tableText())); })
#ifdef BENCH_QT
      .peer("Qt", [text = QString::fromStdU16String(tableText())] { return qtTable(text); })
#endif
      .peer("std", [] { return standardTable(tableText()); })
      .limit("memcpy", [] { return copied(tableText()); })
      .reach(20)
      .memory(memoryReach());
});

}  // namespace
}  // namespace kelvane::bench
