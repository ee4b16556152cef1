#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Foundation/Text.h"
#include "Report/DocumentReader.h"
#include "Report/Figures.h"
#include "Report/FolderWalk.h"
#include "Report/Notes.h"
#include "Report/Output.h"
#include "Report/ProgressLine.h"

namespace notebook {

// What all documents of a folder come to.
struct Totals {
  std::uint64_t folders = 0;
  std::uint64_t texts = 0;
  std::uint64_t lines = 0;
  std::uint64_t bytes = 0;
  std::uint64_t notUTF8 = 0;
  std::uint64_t tables = 0;
  std::uint64_t rows = 0;
  std::uint64_t binaries = 0;
  std::uint64_t binaryBytes = 0;
  std::uint64_t folderLinks = 0;
  std::uint64_t specialFiles = 0;
  // The longest line of all, and its file; number 0 when there is no line.
  std::size_t longestLength = 0;
  std::uint64_t longestNumber = 0;
  kelvane::Text longestPlace;
  // What could not be read, as it is shown, and why.
  std::vector<std::pair<kelvane::Text, kelvane::Text>> unreadable;
};

// Reports on the documents of one folder, on standard output, one after another and with the totals at the end. What
// cannot be read is named on standard error at once, and again in the totals.
class Report : private FolderVisitor {
 public:
  // `summary` are lines that stand before everything else.
  Report(std::string folder, kelvane::Text summary);

  // Walks the folder and prints. The answer tells whether everything was read and printed.
  bool print();

 private:
  void visitFolder(const std::string& place) override;
  void visitFile(const std::string& place) override;
  void skipFolderLink(const std::string& place) override;
  void skipSpecialFile(const std::string& place) override;
  void failFolder(const std::string& place, const std::string& reason) override;
  bool goesOn() const override { return !myOutput.hasFailed(); }

  void addText(kelvane::TextView name, kelvane::TextView place, Document&& document);
  void addBinary(kelvane::TextView place, const Document& document);
  void addUnreadable(const std::string& place, const std::string& reason);
  void writeAttachment(const Document& document);
  void writeDate(const Document& document);
  void addColours(const std::vector<kelvane::Text>& colours);
  void printNotices();
  void printTotals();
  void writeLine(kelvane::TextView line);

  std::string myFolder;
  kelvane::Text mySummary;
  bool myShowsColours;
  Totals myTotals;
  kelvane::Ref<NoteList> myNotes = std::make_shared<NoteList>();
  Notices myNotices{myNotes};
  Output myOutput;
  ProgressLine myProgress;
};

}  // namespace notebook
