#pragma once

#include <cstddef>
#include <vector>

#include "Platform/Foundation/Text.h"

namespace notebook {

// The colours written as "#" and three or six hexadecimal digits in `text`, such as "#336699": each once, in the order
// in which they stand, and at most `most`. Views into `text`. A "#" within a word or an address is none.
std::vector<kelvane::TextView> coloursIn(kelvane::TextView text, std::size_t most);

// Whether standard output is a terminal that shows colours, and its user wants them (https://no-color.org).
bool outputHasColour();

// `definition` on a background of that colour, in black or white, whichever can be read on it: the escapes that
// terminals understand.
kelvane::Text onItsColour(kelvane::TextView definition);

}  // namespace notebook
