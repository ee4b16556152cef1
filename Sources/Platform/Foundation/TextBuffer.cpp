#include "Platform/Foundation/TextBuffer.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelvane {
namespace {

// A piece is made with the first of these lengths and cut again when it outgrows the second.
constexpr std::size_t pieceLength = 2048;
constexpr std::size_t longestPiece = 2 * pieceLength;
// A shorter text is moved faster than it is cut.
constexpr std::size_t shortestToCut = 4 * longestPiece;

std::ptrdiff_t offset(std::size_t index) { return static_cast<std::ptrdiff_t>(index); }

}  // namespace

void TextBuffer::join() const {
  myEdits = 0;
  if (myPieces.empty()) return;
  myText.clear();
  myText.reserve(myLength);
  for (const Piece& piece : myPieces) myText += piece.text;
  myPieces.clear();
}

void TextBuffer::cut(TextView whole) {
  myPieces.reserve(whole.size() / pieceLength + 1);
  for (std::size_t start = 0; start < whole.size(); start += pieceLength)
    myPieces.push_back({start, Text(whole.substr(start, pieceLength))});
}

// The piece that holds the unit at `index`; the last one for the end of the text.
std::size_t TextBuffer::pieceAt(std::size_t index) const {
  const auto behind = std::upper_bound(myPieces.begin() + 1, myPieces.end(), index,
                                       [](std::size_t place, const Piece& piece) { return place < piece.start; });
  return static_cast<std::size_t>(behind - myPieces.begin()) - 1;
}

Text TextBuffer::substring(NSRange range) const {
  if (myPieces.empty()) return myText.substr(range.location, range.length);
  Text part;
  part.reserve(range.length);
  for (std::size_t i = pieceAt(range.location); part.size() < range.length; ++i)
    part +=
        TextView(myPieces[i].text).substr(range.location + part.size() - myPieces[i].start, range.length - part.size());
  return part;
}

void TextBuffer::replace(NSRange range, TextView replacement) {
  const bool appends = range.location == myLength && myPieces.empty();
  // Lives until the end, since the replacement may be a view of it.
  Text whole;
  if (!appends && ++myEdits == 2 && myPieces.empty() && myLength >= shortestToCut) {
    whole = std::exchange(myText, Text());
    cut(whole);
  }
  if (myPieces.empty()) {
    myText.replace(range.location, range.length, replacement);
    // Only an edit that the next one may go on from in pieces has to be remembered.
    if (myLength < shortestToCut) myEdits = 0;
  } else {
    replaceInPieces(range, replacement);
  }
  myLength += replacement.size() - range.length;
}

void TextBuffer::replaceInPieces(NSRange range, TextView replacement) {
  const std::size_t first = pieceAt(range.location);
  const std::size_t last = range.length == 0 ? first : pieceAt(range.end() - 1);
  Text& text = myPieces[first].text;
  const std::size_t place = range.location - myPieces[first].start;
  if (first == last) {
    text.replace(place, range.length, replacement);
  } else {
    const Piece& end = myPieces[last];
    text.resize(place);
    text += replacement;
    text += TextView(end.text).substr(range.end() - end.start);
  }
  auto behind = myPieces.erase(myPieces.begin() + offset(first + 1), myPieces.begin() + offset(last + 1));
  for (auto piece = behind; piece != myPieces.end(); ++piece) piece->start += replacement.size() - range.length;
  if (text.empty() && myPieces.size() > 1) {
    myPieces.erase(behind - 1);
  } else if (text.size() > longestPiece) {
    std::vector<Piece> pieces;
    for (std::size_t start = pieceLength; start < text.size(); start += pieceLength)
      pieces.push_back({myPieces[first].start + start, text.substr(start, pieceLength)});
    text.resize(pieceLength);
    myPieces.insert(behind, std::make_move_iterator(pieces.begin()), std::make_move_iterator(pieces.end()));
  }
}

}  // namespace kelvane
