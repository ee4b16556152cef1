#include "Report/Pages.h"

#include <cstdint>

#include "Extensions/NSAttributedString-QNExtensions.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/TextCase.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextLines.h"
#include "Report/DocumentReader.h"
#include "Report/Output.h"
#include "Report/Printable.h"

namespace notebook {
namespace {

using kelvane::Text;
using kelvane::TextView;

kelvane::NSMutableAttributedString styled(const std::string& path, Text&& text) {
  return isPage(kelvane::textFromFileSystem(path)) ? kelvane::attributedStringWithHTML(text)
                                                   : kelvane::NSMutableAttributedString(std::move(text));
}

Text written(const kelvane::NSAttributedString& note, NoteFormat format) {
  if (format == NoteFormat::HTML) return kelvane::htmlString(note);
  // It is in ASCII.
  const std::vector<std::uint8_t> bytes = kelvane::rtf(note);
  return Text(bytes.begin(), bytes.end());
}

}  // namespace

bool isPage(TextView name) {
  const Text lower = kelvane::lowercaseString(name);
  return lower.ends_with(u".html") || lower.ends_with(u".htm");
}

std::vector<Text> firstLines(TextView text, std::size_t most) {
  std::vector<Text> lines;
  for (const TextView line : kelvane::Lines(text)) {
    if (lines.size() == most) {
      lines.emplace_back(u"…");
      break;
    }
    lines.push_back(printable(line, lineWidth));
  }
  return lines;
}

bool printNote(const std::string& path, NoteFormat format) {
  Document document = readDocument(path);
  if (document.kind == Document::Kind::Unreadable || document.kind == Document::Kind::Binary) {
    const Text reason = document.kind == Document::Kind::Binary ? u"No text" : kelvane::textFromUTF8(document.reason);
    complain(kelvane::format(u"%@: %@", printable(kelvane::textFromFileSystem(path)), reason));
    return false;
  }
  Output output;
  output.writeLine(written(styled(path, std::move(document.text)), format));
  return output.finish();
}

}  // namespace notebook
