#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "Platform/Foundation/Text.h"

namespace notebook {

struct TableSize {
  std::size_t rows = 0;
  std::size_t columns = 0;
};

// What there is to say about one text. Lengths are in UTF-16 code units, line numbers begin at 1.
struct Figures {
  std::uint64_t lines = 0;
  std::size_t longestLength = 0;
  // The first of the longest lines; 0 when there is no line.
  std::uint64_t longestNumber = 0;
  // Trimmed, harmless and short enough for a terminal.
  kelvane::Text firstLine;
  // The first colours that it names ("#336699"), each once.
  std::vector<kelvane::Text> colours;
  // For tables only: files named like one, and texts whose first line that counts names two columns or more and most of
  // whose rows fill the second.
  std::optional<TableSize> table;
  // For configuration files only: files named like one, and texts that begin with a "#" comment.
  std::optional<std::int64_t> linesWithoutComments;
};

// The figures of a document with the file name `name`. Reads the lines once; tables and configuration files are read
// once more by the library. Takes the text over, so that a table need not copy it.
Figures figuresOf(kelvane::TextView name, kelvane::Text&& text);

}  // namespace notebook
