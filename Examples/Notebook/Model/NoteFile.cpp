#include "Model/NoteFile.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Extensions/NSAttributedString-QNExtensions.h"
#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSArchiver.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/TextCase.h"
#include "Platform/Foundation/TextEncoding.h"

namespace notebook {
namespace {

using kelvane::format;
using kelvane::NSAttributedString;
using kelvane::NSTextStorage;
using kelvane::Ref;
using kelvane::Text;
using kelvane::TextView;

constexpr std::size_t largestNote = std::size_t{64} << 20U;

struct Extension {
  TextView extension;
  EntryKind kind;
  NoteFormat format;
};

constexpr std::array extensions{
    Extension{u"note", EntryKind::Note, NoteFormat::Archive}, Extension{u"txt", EntryKind::Note, NoteFormat::PlainText},
    Extension{u"html", EntryKind::Note, NoteFormat::HTML}, Extension{u"htm", EntryKind::Note, NoteFormat::HTML},
    Extension{u"tsv", EntryKind::Table, NoteFormat::PlainText}};

const Extension* extensionOf(TextView path) {
  for (const Extension& known : extensions)
    if (kelvane::isEqualIgnoringCase(kelvane::pathExtension(path), known.extension)) return &known;
  return nullptr;
}

Text textFromUTF16(std::string_view bytes, bool bigEndian) {
  Text text;
  text.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    text += static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
  }
  return text;
}

ReadNote readArchive(std::string_view bytes) {
  const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
  const kelvane::UnarchivedObject read = kelvane::NSUnarchiver::unarchiveObjectWithData(std::span(data, bytes.size()));
  if (!read.object) return {nullptr, read.error};
  const auto text = kelvane::as<NSAttributedString>(read.object);
  if (!text) return {nullptr, u"The archive holds no styled text."};
  return {std::make_shared<NSTextStorage>(*text), {}};
}

ReadNote readPage(std::string_view bytes) {
  const auto text = std::make_shared<NSTextStorage>(kelvane::attributedStringWithHTML(decodedText(bytes)));
  return {text, {}, u"\n", kelvane::utf8(kelvane::htmlString(*text)) == bytes};
}

kelvane::Ref<kelvane::NSDictionary> plainAttributes() {
  static const auto attributes = kelvane::NSDictionary::dictionaryWithEntries(
      {{kelvane::NSFontAttributeName, std::make_shared<kelvane::NSFont>(plainFont())}});
  return attributes;
}

ReadNote plainNote(Text text) {
  const bool isCRLF = text.find(u"\r\n") != Text::npos;
  if (isCRLF) text = kelvane::replaceAllOccurencesOfString(text, u"\r\n", u"\n");
  std::ranges::replace(text, u'\r', u'\n');
  return {std::make_shared<NSTextStorage>(std::move(text), plainAttributes()), {}, isCRLF ? u"\r\n" : u"\n"};
}

// What the file of a note in the format holds; nothing, and a sentence in `error`, when there is no such file.
std::optional<std::string> bytesOf(const NSAttributedString& note, NoteFormat format, TextView lineEnd, Text& error) {
  switch (format) {
    case NoteFormat::HTML:
      return kelvane::utf8(kelvane::htmlString(note));
    case NoteFormat::PlainText:
      return kelvane::utf8(lineEnd == u"\n" ? note.string()
                                            : kelvane::replaceAllOccurencesOfString(note.string(), u"\n", lineEnd));
    case NoteFormat::RTF: {
      const std::vector<std::uint8_t> rtf = kelvane::rtf(note);
      return std::string(rtf.begin(), rtf.end());
    }
    case NoteFormat::Archive:
      break;
  }
  kelvane::ArchivedData archived =
      kelvane::NSArchiver::archivedDataWithRootObject(std::make_shared<NSAttributedString>(note));
  error = std::move(archived.error);
  if (!archived.data) return std::nullopt;
  const auto bytes = archived.data->bytes();
  return std::string(bytes.begin(), bytes.end());
}

}  // namespace

const kelvane::NSFont& plainFont() {
  static const kelvane::NSFont font = kelvane::NSFont::fontWithFamily(u"Helvetica", 0, 5, 12);
  return font;
}

std::optional<EntryKind> kindOfFile(TextView path) {
  const Extension* known = extensionOf(path);
  return known ? std::optional(known->kind) : std::nullopt;
}

NoteFormat formatOfFile(TextView path) {
  if (kelvane::isEqualIgnoringCase(kelvane::pathExtension(path), u"rtf")) return NoteFormat::RTF;
  const Extension* known = extensionOf(path);
  return known ? known->format : NoteFormat::PlainText;
}

bool keepsStyles(NoteFormat format) { return format != NoteFormat::PlainText; }

Text decodedText(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return textFromUTF16(bytes.substr(2), false);
  if (bytes.starts_with("\xFE\xFF")) return textFromUTF16(bytes.substr(2), true);
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  Text text = kelvane::textFromUTF8(bytes);
  // What is no UTF-8 does not come out as it was.
  return text.find(u'\xFFFD') != Text::npos && kelvane::utf8(text) != bytes ? kelvane::textFromISOLatin1(bytes) : text;
}

ReadNote readNote(TextView path) {
  const kelvane::FileContents file = kelvane::readFile(kelvane::fileSystemRepresentation(path), largestNote);
  if (file.error) return {nullptr, kelvane::textFromUTF8(file.error.message())};
  switch (formatOfFile(path)) {
    case NoteFormat::Archive:
      return readArchive(file.bytes);
    case NoteFormat::HTML:
      return readPage(file.bytes);
    default:
      return plainNote(decodedText(file.bytes));
  }
}

std::optional<Text> writeNote(const NSAttributedString& note, TextView path, TextView lineEnd) {
  Text error;
  const std::optional<std::string> bytes = bytesOf(note, formatOfFile(path), lineEnd, error);
  if (!bytes) return error;
  const std::error_code failure =
      kelvane::writeFileAtomically(kelvane::fileSystemRepresentation(path), *bytes, kelvane::NewFileAccess::Customary);
  return failure ? std::optional(kelvane::textFromUTF8(failure.message())) : std::nullopt;
}

}  // namespace notebook
