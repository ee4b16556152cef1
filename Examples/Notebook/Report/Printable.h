#pragma once

#include <cstddef>
#include <cstdint>

#include "Platform/Foundation/Text.h"

// Text on its way to a terminal or a pipe.
namespace notebook {

// How many code units fit behind the indentation on a terminal of 80 columns.
inline constexpr std::size_t lineWidth = 74;

// `text` so that it cannot move the cursor, colour the terminal, turn the writing direction or start a new line: what
// does so becomes "\x1B" or "\u202E", a stray byte of a file name "\xFC". With a `limit`, what goes beyond that many
// code units is cut off and "…" stands for it.
kelvane::Text printable(kelvane::TextView text, std::size_t limit = static_cast<std::size_t>(-1));

// A number and what it counts: "1 line", "2 lines".
kelvane::Text counted(std::uint64_t number, kelvane::TextView noun);

}  // namespace notebook
