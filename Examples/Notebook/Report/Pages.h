#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Platform/Foundation/Text.h"

// Notes in HTML.
namespace notebook {

// Whether a file of that name holds HTML.
bool isPage(kelvane::TextView name);

// The first lines of a page's text, at most `most`, harmless and short enough for a terminal; "…" as one more where
// there are others.
std::vector<kelvane::Text> firstLines(kelvane::TextView text, std::size_t most);

enum class NoteFormat { HTML, RTF };

// Prints the note at `path` in another format. A page is read as styled text, which knows bold, italic, underline,
// sizes and line breaks; any other text has no styles. The answer tells whether that went well; if not, standard error
// tells why.
bool printNote(const std::string& path, NoteFormat format);

}  // namespace notebook
