#pragma once

#include <optional>
#include <string_view>

#include "Model/Entry.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/Text.h"

// The files that notes are kept in. A note is styled text; how much of the styles a file keeps is up to its format:
//
//   .note          the library's archive: all of it
//   .html, .htm    the subset of HTML that the library reads and writes: bold, italic, underline, size, colour, links.
//                  Most pages have more than that, and do not come out as they went in
//   .txt           the text alone, as UTF-8
//   .rtf           all of it; is written, but not read
//
// Main thread only.
namespace notebook {

enum class NoteFormat { Archive, HTML, PlainText, RTF };

// What the name says that a file is; nothing for what the notebook does not show.
std::optional<EntryKind> kindOfFile(kelvane::TextView path);
// The format of a note by the name of its file: plain text, unless the extension says otherwise.
NoteFormat formatOfFile(kelvane::TextView path);
// Whether text that is kept in the format comes back with its fonts, colours and links.
bool keepsStyles(NoteFormat format);

// The note in the file, or nil and one sentence about what is wrong. Lines end with LF; `lineEnd` is how they ended in
// the file.
struct ReadNote {
  kelvane::Ref<kelvane::NSTextStorage> text;
  kelvane::Text error;
  kelvane::Text lineEnd = u"\n";
  // Whether writing the note gives what was in the file. A web page that was made elsewhere has more than a note keeps.
  bool isWhole = true;
};
ReadNote readNote(kelvane::TextView path);

// Text in the bytes of a file: as UTF-16 where a byte-order mark says so, else as UTF-8, else as ISO Latin-1.
kelvane::Text decodedText(std::string_view bytes);

// Writes the note in the format of the name, lines of plain text ended by `lineEnd`: all of the new file or, after an
// error, all of the old one. The answer is one sentence about what is wrong; nothing when all is well.
std::optional<kelvane::Text> writeNote(const kelvane::NSAttributedString& note, kelvane::TextView path,
                                       kelvane::TextView lineEnd = u"\n");

// A font for text that has none.
const kelvane::NSFont& plainFont();

}  // namespace notebook
