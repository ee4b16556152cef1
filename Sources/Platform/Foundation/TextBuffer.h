#pragma once

#include <cstddef>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// Text that is edited in many places. It stands in one piece, as readers want it, until a second edit follows another
// without `text` being asked for in between; then it is cut into pieces of a few thousand code units, of which an edit
// moves one. `text` joins them again. So whoever edits and reads by turns pays for moving the text behind the edit, as
// with any string, and whoever makes many edits in a row pays for two copies altogether.
//
// One thread at a time; while nobody edits, any number may read a text that was last edited before the last `text`.
class KELVANE_EXPORT TextBuffer {
 public:
  TextBuffer() = default;
  explicit TextBuffer(Text text) : myText(std::move(text)), myLength(myText.size()) {}

  std::size_t length() const { return myLength; }
  // The whole. Linear after edits in pieces, free otherwise. Valid until the next edit.
  const Text& text() const {
    if (myEdits != 0) join();
    return myText;
  }
  // Copies what `range` covers, which must lie within the text; does not join.
  Text substring(NSRange range) const;

  // Puts `replacement` in the place of what `range` covers, which must lie within the text. `replacement` may be
  // a view of `text`. Proportional to the replacement and, in pieces, the number of pieces; appending is proportional
  // to what is appended.
  void replace(NSRange range, TextView replacement);

 private:
  struct Piece {
    std::size_t start = 0;
    Text text;
  };

  void join() const;
  void cut(TextView whole);
  std::size_t pieceAt(std::size_t index) const;
  void replaceInPieces(NSRange range, TextView replacement);

  // The text, unless there are pieces; both change in `text`, which changes nothing that can be seen.
  mutable Text myText;
  mutable std::vector<Piece> myPieces;
  std::size_t myLength = 0;
  // How many edits there were since the text was last read.
  mutable std::size_t myEdits = 0;
};

}  // namespace kelvane
