#include "Report/Report.h"

#include <algorithm>
#include <utility>

#include "Extensions/NSData-QNExtensions.h"
#include "Extensions/NSDate-QNExtensions.h"
#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/Base64.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextLines.h"
#include "Platform/Foundation/TextScan.h"
#include "Report/Colours.h"
#include "Report/Pages.h"
#include "Report/Printable.h"

namespace notebook {
namespace {

using kelvane::format;
using kelvane::Text;
using kelvane::TextView;

// Of a page, the text is of more interest than that of other documents, which anybody can read.
constexpr std::size_t mostPageLines = 8;

// A place as it is printed.
Text shown(const std::string& place) { return printable(kelvane::textFromFileSystem(place)); }

// One line about a text, such as "12 lines, longest 80 in line 3, table of 9 rows in 4 columns".
Text describe(const Figures& figures, Document::Kind kind) {
  if (figures.lines == 0) return u"empty";
  Text line = counted(figures.lines, u"line");
  line += format(u", longest %lu in line %lu", figures.longestLength, figures.longestNumber);
  if (figures.table)
    line += format(u", table of %@ in %@", counted(figures.table->rows, u"row"),
                   counted(figures.table->columns, u"column"));
  if (figures.linesWithoutComments) line += format(u", %ld without comments", *figures.linesWithoutComments);
  if (kind == Document::Kind::ISOLatin1) line += u", not UTF-8, read as ISO Latin-1";
  return line;
}

}  // namespace

Report::Report(std::string folder, kelvane::Text summary)
    : myFolder(std::move(folder)), mySummary(std::move(summary)), myShowsColours(outputHasColour()) {}

bool Report::print() {
  for (const TextView line : kelvane::componentsSeparatedByLineSeparators(mySummary)) writeLine(printable(line));
  writeLine(format(u"Report on %@", shown(myFolder)));
  writeLine({});
  walkFolder(myFolder, *this);
  printNotices();
  printTotals();
  myProgress.erase();
  return myOutput.finish() && myTotals.unreadable.empty();
}

void Report::visitFolder(const std::string& place) {
  ++myTotals.folders;
  myProgress.show(myTotals.texts + myTotals.binaries, kelvane::textFromFileSystem(place));
}

void Report::visitFile(const std::string& place) {
  const Text text = kelvane::textFromFileSystem(place);
  myProgress.show(myTotals.texts + myTotals.binaries, text);
  Document document = readDocument(myFolder + '/' + place);
  switch (document.kind) {
    case Document::Kind::Unreadable:
      return addUnreadable(place, document.reason);
    case Document::Kind::Binary:
      return addBinary(text, document);
    case Document::Kind::UTF8:
    case Document::Kind::ISOLatin1:
      return addText(TextView(text).substr(text.rfind(u'/') + 1), text, std::move(document));
  }
}

void Report::skipFolderLink(const std::string&) { ++myTotals.folderLinks; }

void Report::skipSpecialFile(const std::string&) { ++myTotals.specialFiles; }

void Report::failFolder(const std::string& place, const std::string& reason) { addUnreadable(place, reason); }

void Report::addText(TextView name, TextView place, Document&& document) {
  std::vector<Text> pageLines;
  if (isPage(name)) {
    document.text = kelvane::flattenHTML(document.text);
    pageLines = firstLines(document.text, mostPageLines);
  }
  const Figures figures = figuresOf(name, std::move(document.text));
  ++myTotals.texts;
  myTotals.lines += figures.lines;
  myTotals.bytes += document.bytes;
  if (document.kind == Document::Kind::ISOLatin1) ++myTotals.notUTF8;
  if (figures.table) {
    ++myTotals.tables;
    myTotals.rows += figures.table->rows;
  }
  const Text shownPlace = printable(place);
  if (figures.longestLength > myTotals.longestLength || (myTotals.longestNumber == 0 && figures.lines > 0)) {
    myTotals.longestLength = figures.longestLength;
    myTotals.longestNumber = figures.longestNumber;
    myTotals.longestPlace = shownPlace;
  }
  writeLine(shownPlace);
  writeLine(u"    " + describe(figures, document.kind));
  for (const Text& line : pageLines) writeLine(u"    | " + line);
  if (pageLines.empty() && !figures.firstLine.empty()) writeLine(u"    | " + figures.firstLine);
  writeDate(document);
  if (!figures.colours.empty()) addColours(figures.colours);
  myNotes->add(shownPlace, figures.firstLine);
}

// Without a terminal that shows them, colours are just named.
void Report::addColours(const std::vector<Text>& colours) {
  Text line = colours.size() == 1 ? u"    colour" : u"    colours";
  for (const Text& colour : colours) {
    line += u' ';
    line += myShowsColours ? onItsColour(colour) : colour;
  }
  writeLine(line);
}

void Report::addBinary(TextView place, const Document& document) {
  ++myTotals.binaries;
  myTotals.binaryBytes += document.bytes;
  writeLine(printable(place));
  writeLine(u"    binary, " + counted(document.bytes, u"byte"));
  writeAttachment(document);
  writeDate(document);
}

// As it would stand in a mail; of a larger one the first lines.
void Report::writeAttachment(const Document& document) {
  constexpr std::size_t bytesInLine = 54;
  constexpr std::size_t mostLines = 4;
  const std::size_t shownBytes = std::min(document.beginning.size(), mostLines * bytesInLine);
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(document.beginning.data());
  const Text text =
      kelvane::NSDataExtensions::encodeDataToBase64({bytes, shownBytes}, kelvane::base64Length(bytesInLine))
          .value_or(Text());
  for (const TextView line : kelvane::Lines(text))
    if (!line.empty()) writeLine(u"    = " + Text(line));
  if (shownBytes < document.bytes)
    writeLine(format(u"    = ... %@ more", counted(document.bytes - shownBytes, u"byte")));
}

// In the user's language.
void Report::writeDate(const Document& document) {
  const kelvane::NSDate date = kelvane::NSDate::dateWithTimeIntervalSince1970(document.changed);
  writeLine(u"    changed " + kelvane::localeDateAndTimeString(date));
}

void Report::addUnreadable(const std::string& place, const std::string& reason) {
  myTotals.unreadable.emplace_back(shown(place), kelvane::textFromUTF8(reason));
  myProgress.erase();
  const std::string path = place == "." ? myFolder : myFolder + '/' + place;
  complain(format(u"%@: %@", shown(path), myTotals.unreadable.back().second));
}

void Report::printNotices() {
  myNotes->removeEmpty();
  if (myNotices.count() == 0) return;
  writeLine({});
  writeLine(u"Notes");
  for (const Text& line : myNotices.lines()) writeLine(u"    " + line);
  if (myNotices.count() > myNotices.lines().size())
    writeLine(format(u"    and %lu more", myNotices.count() - myNotices.lines().size()));
  writeLine(u"    " + counted(myNotices.changes(), u"change"));
}

void Report::printTotals() {
  writeLine({});
  writeLine(u"Totals");
  writeLine(format(u"    %@ in %@: %@, %@", counted(myTotals.texts, u"text"), counted(myTotals.folders, u"folder"),
                   counted(myTotals.lines, u"line"), counted(myTotals.bytes, u"byte")));
  if (myTotals.notUTF8 > 0) writeLine(format(u"    %@ not in UTF-8", counted(myTotals.notUTF8, u"text")));
  if (myTotals.tables > 0)
    writeLine(format(u"    %@ with %@", counted(myTotals.tables, u"table"), counted(myTotals.rows, u"row")));
  if (myTotals.longestNumber > 0)
    writeLine(format(u"    longest line: %lu, line %lu of %@", myTotals.longestLength, myTotals.longestNumber,
                     myTotals.longestPlace));
  if (myTotals.binaries > 0)
    writeLine(
        format(u"    %@ with %@", counted(myTotals.binaries, u"binary file"), counted(myTotals.binaryBytes, u"byte")));
  if (myTotals.folderLinks > 0)
    writeLine(format(u"    skipped: %@ to a folder", counted(myTotals.folderLinks, u"link")));
  if (myTotals.specialFiles > 0)
    writeLine(format(u"    skipped: %@ (pipe, socket or device)", counted(myTotals.specialFiles, u"special file")));
  for (const auto& [place, reason] : myTotals.unreadable) writeLine(format(u"    unreadable: %@: %@", place, reason));
}

void Report::writeLine(TextView line) {
  if (!myOutput.writeLine(line)) return;
  // Both may go to the same terminal.
  myProgress.erase();
  myOutput.flush();
}

}  // namespace notebook
