#pragma once

#include <cstddef>
#include <memory>

#include "Platform/Foundation/Text.h"

namespace kelvane {

// Puts the text of a page into lines as it comes, with the line breaks, blanks and tabs that stand between its pieces.
// Those are only owed until more text comes, so that none is written in vain at the start or the end. Every step is
// O(1) besides the copy. One thread at a time.
class HTMLTextLayout {
 public:
  // About how long the result will be.
  explicit HTMLTextLayout(std::size_t expected);

  // Text whose only white space are single blanks. `readable` units may be read from its start on.
  void run(TextView text, std::size_t readable);
  // Text whose white space counts.
  void preformatted(TextView text, std::size_t readable);
  // White space that counts as one blank between words, and as none elsewhere.
  void blank() { myOwesBlank = true; }

  // A line break that counts by itself.
  void lineBreak();
  // The start or end of a block.
  void block();
  // The same, which breaks the line even behind a mere marker.
  void endOfItems();
  // An item's marker, such as "•" or "12.", `level` levels deep.
  void item(TextView marker, std::size_t level);
  // The start or end of a table's row, and the start of a cell.
  void row();
  void cell();

  Text text() const { return Text(myUnits.get(), mySize); }

 private:
  void settle();
  void put(char16_t unit);
  void put(TextView text, std::size_t readable);
  void grow(std::size_t length);

  enum class Line { Empty, OnlyMarker, Filled };

  std::unique_ptr<char16_t[]> myUnits;
  std::size_t mySize = 0;
  std::size_t myCapacity;
  Line myLine = Line::Empty;
  // What is owed.
  bool myOwesBlank = false;
  bool myOwesBreak = false;
  std::size_t myOwesTabs = 0;
  // Whether the break that is owed parts rows, so that a cell does not take it back.
  bool myBreakIsRows = false;
  bool myIsFirstCell = true;
};

}  // namespace kelvane
