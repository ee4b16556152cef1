#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Platform/Foundation/Text.h"

// What is worked on: the same in every run, made on first use, and about as varied as what users have.
namespace kelvane::bench {

// 1 MiB in UTF-16.
inline constexpr std::size_t inputUnits = std::size_t{1} << 19U;

// Prose in lines of some 60 units, some of them indented or with blanks at the end: mostly Latin with accents, words in
// Greek, Cyrillic and Chinese, emoji, quotes.
const Text& mixedText();
// The same in ASCII alone, and in Chinese alone.
const Text& asciiText();
const Text& chineseText();
// The lines of `mixedText`, without their ends.
const std::vector<TextView>& mixedLines();

// A table of eight columns whose cells are words and numbers, about one in ten of them empty.
const Text& tableText();

}  // namespace kelvane::bench
