#include "Report/Figures.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <utility>
#include <vector>

#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/TextLines.h"
#include "Platform/Foundation/TextScan.h"
#include "Report/Colours.h"
#include "Report/Printable.h"

namespace notebook {
namespace {

using kelvane::Text;
using kelvane::TextView;

// As many as fit on a line of their own.
constexpr std::size_t shownColours = 8;

// The name's extension with its point, in lower case; empty when there is none.
Text extensionOf(TextView name) {
  const std::size_t point = name.rfind(u'.');
  if (point == TextView::npos) return {};
  Text extension(name.substr(point));
  for (char16_t& unit : extension)
    if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit - u'A' + u'a');
  return extension;
}

bool isOneOf(TextView extension, std::initializer_list<TextView> list) {
  return std::ranges::find(list, extension) != list.end();
}

// Gathered while the lines go by: where the table's and the configuration file's decisions are made.
struct Beginnings {
  TextView firstLine;
  // The first line that is neither empty nor a comment, and the first that is not blank.
  TextView firstCounting;
  TextView firstWritten;
};

Beginnings readLines(TextView text, Figures& figures) {
  Beginnings beginnings;
  for (const TextView line : kelvane::Lines(text)) {
    if (++figures.lines == 1) beginnings.firstLine = line;
    if (line.size() > figures.longestLength || figures.lines == 1) {
      figures.longestLength = line.size();
      figures.longestNumber = figures.lines;
    }
    if (beginnings.firstCounting.empty() && !line.starts_with(u'#')) beginnings.firstCounting = line;
    if (beginnings.firstWritten.empty()) beginnings.firstWritten = kelvane::trim(line);
  }
  return beginnings;
}

// Names of two columns or more. A heading that tabs push to the right has a tab too, but a column without a name.
bool namesColumns(TextView line) {
  if (kelvane::findUnit(line, u'\t') == line.size()) return false;
  return !line.starts_with(u'\t') && !line.ends_with(u'\t') && !kelvane::containsString(line, u"\t\t");
}

bool isConfiguration(TextView extension, const Beginnings& beginnings) {
  if (isOneOf(extension, {u".conf", u".cfg", u".cnf", u".ini", u".properties", u".rc"})) return true;
  // Where "#" begins a heading or a directive, it is no comment.
  if (isOneOf(extension, {u".md", u".markdown", u".c", u".h", u".cpp", u".hpp", u".cc"})) return false;
  return beginnings.firstWritten.starts_with(u'#');
}

// Program text may begin like a table, but does not go on like one: in a table, most rows have a second cell.
bool looksLikeTable(const kelvane::TSVTable& table) {
  const auto hasSecondCell = [](const kelvane::TSVRow& row) { return !row.cell(1).empty(); };
  return !table.empty() && 2 * std::ranges::count_if(table, hasSecondCell) >= std::ssize(table);
}

}  // namespace

Figures figuresOf(TextView name, Text&& text) {
  Figures figures;
  const Beginnings beginnings = readLines(text, figures);
  const TextView firstLine = kelvane::trim(beginnings.firstLine);
  figures.firstLine = printable(kelvane::replacingUnit(firstLine.substr(0, lineWidth + 1), u'\t', u' '), lineWidth);

  for (const TextView colour : coloursIn(text, shownColours)) figures.colours.emplace_back(colour);

  const Text extension = extensionOf(name);
  const bool isNamedTable = isOneOf(extension, {u".tsv", u".tab"});
  const bool seemsConfiguration = isConfiguration(extension, beginnings);
  if (!isNamedTable && seemsConfiguration)
    figures.linesWithoutComments = kelvane::numberOfLines(kelvane::removeCommentedLines(text));
  if (!isNamedTable && !namesColumns(beginnings.firstCounting)) return figures;

  const kelvane::TSVTable table = kelvane::arrayFromTSV(std::move(text));
  if (!isNamedTable && !looksLikeTable(table)) return figures;
  figures.table = TableSize{table.size(), table.numberOfColumns()};
  figures.linesWithoutComments.reset();
  return figures;
}

}  // namespace notebook
