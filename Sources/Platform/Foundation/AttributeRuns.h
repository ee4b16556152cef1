#pragma once

#include <compare>
#include <cstddef>
#include <iterator>
#include <vector>

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// A stretch of text with one dictionary of attributes.
struct AttributeRun {
  NSRange range;
  const Ref<NSDictionary>& attributes;
};

// The attributes of styled text: a sequence of runs, each with a length above 0 and a dictionary that it shares with
// whoever else uses it. Two neighbouring runs never have equal dictionaries; where an edit makes them equal they become
// one, with the dictionary of the one that stands before.
//
// Runs stand in chunks of up to 256. With n runs, finding the one at an index takes O(log n), appending O(1), going on
// to the next O(1), and changing k of them O(k + 256) and the shifting of n/128 numbers. A dictionary that is the
// neighbour's very own is recognised at no cost; others are compared.
class KELVANE_EXPORT AttributeRuns {
 public:
  // A run by itself, on its way into a sequence.
  struct Piece {
    std::size_t length = 0;
    Ref<NSDictionary> attributes;
  };

  class Iterator;

  // The length of the text that the runs cover.
  std::size_t length() const { return myLength; }
  // The number of runs. Proportional to the number of chunks.
  std::size_t count() const;

  Iterator begin() const;
  Iterator end() const;
  // The run that covers `index`, which must be less than the length.
  Iterator find(std::size_t index) const;

  // Makes the run that covers `index` longer by `added` and shorter by `removed`, which must leave something of it.
  void resize(std::size_t index, std::size_t removed, std::size_t added);
  // Adds a run at the end; none when `length` is 0.
  void append(std::size_t length, Ref<NSDictionary> attributes);
  // Puts `pieces` in the place of what covers `range`, which must lie within the length; pieces of length 0 are left
  // out.
  void replace(NSRange range, std::vector<Piece> pieces);

  // Whether the runs have equal lengths and dictionaries.
  friend KELVANE_EXPORT bool operator==(const AttributeRuns& a, const AttributeRuns& b);

 private:
  struct Entry {
    // Counted from the start of the chunk.
    std::size_t end = 0;
    Ref<NSDictionary> attributes;
  };
  struct Chunk {
    std::size_t start = 0;
    std::vector<Entry> entries;

    std::size_t length() const { return entries.back().end; }
  };

  std::size_t chunkAt(std::size_t index) const;
  void shiftBehind(std::size_t chunk, std::size_t distance);
  std::vector<Piece> takeChanged(std::size_t first, std::size_t last, NSRange range, std::vector<Piece>& pieces);
  static void add(std::vector<Piece>& pieces, std::size_t length, Ref<NSDictionary>&& attributes);
  std::vector<Chunk> chunked(std::size_t start, std::vector<Piece>&& pieces) const;

  std::vector<Chunk> myChunks;
  std::size_t myLength = 0;
};

// The runs in order. Valid until the next change.
class KELVANE_EXPORT AttributeRuns::Iterator {
 public:
  using value_type = AttributeRun;
  using difference_type = std::ptrdiff_t;
  using iterator_category = std::input_iterator_tag;

  Iterator() = default;

  AttributeRun operator*() const {
    const Chunk& chunk = myRuns->myChunks[myChunk];
    const Entry& entry = chunk.entries[myEntry];
    const std::size_t start = myEntry == 0 ? 0 : chunk.entries[myEntry - 1].end;
    return {{chunk.start + start, entry.end - start}, entry.attributes};
  }
  Iterator& operator++() {
    if (++myEntry == myRuns->myChunks[myChunk].entries.size()) {
      myEntry = 0;
      ++myChunk;
    }
    return *this;
  }
  Iterator operator++(int) {
    Iterator before = *this;
    ++*this;
    return before;
  }
  friend bool operator==(const Iterator&, const Iterator&) = default;

 private:
  friend AttributeRuns;
  Iterator(const AttributeRuns* runs, std::size_t chunk, std::size_t entry)
      : myRuns(runs), myChunk(chunk), myEntry(entry) {}

  const AttributeRuns* myRuns = nullptr;
  std::size_t myChunk = 0;
  std::size_t myEntry = 0;
};

inline AttributeRuns::Iterator AttributeRuns::begin() const { return {this, 0, 0}; }
inline AttributeRuns::Iterator AttributeRuns::end() const { return {this, myChunks.size(), 0}; }

}  // namespace kelvane
