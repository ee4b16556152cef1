#include "Platform/Foundation/HTMLBytes.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Platform/Foundation/HTMLReferences.h"
#include "Platform/Foundation/HTMLTags.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

constexpr std::size_t declarationLimit = 1024;

Text textOfWindows1252(std::string_view bytes) {
  Text text(bytes.size(), u'\0');
  std::ranges::transform(bytes, text.begin(), [](char byte) {
    const auto number = static_cast<unsigned char>(byte);
    return number >= 0x80 && number <= 0x9F ? windows1252Specials[number - 0x80U] : static_cast<char16_t>(number);
  });
  return text;
}

Text textOfUTF16(std::string_view bytes, bool isBigEndian) {
  Text text(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto first = static_cast<unsigned char>(bytes[2 * i]);
    const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
    text[i] = static_cast<char16_t>(isBigEndian ? first << 8U | second : second << 8U | first);
  }
  if (bytes.size() % 2 != 0) text += u'\xFFFD';
  return text;
}

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};

// Nothing when ICU does not know the encoding.
std::optional<Text> textByICU(std::string_view bytes, const std::string& encoding) {
  // The standard bars these, since the same bytes look harmless in ASCII; commas are ICU's options.
  for (const std::string_view barred : {"utf-7", "utf-32", "scsu", "bocu", "imap", ","})
    if (encoding.find(barred) != std::string::npos) return std::nullopt;
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<UConverter, CloseConverter> converter(ucnv_open(encoding.c_str(), &error));
  if (U_FAILURE(error)) return std::nullopt;
  Text text;
  std::array<char16_t, 4096> piece;
  const char* source = bytes.data();
  const char* const end = source + bytes.size();
  do {
    error = U_ZERO_ERROR;
    char16_t* target = piece.data();
    ucnv_toUnicode(converter.get(), &target, piece.data() + piece.size(), &source, end, nullptr, true, &error);
    text.append(piece.data(), target);
  } while (error == U_BUFFER_OVERFLOW_ERROR);
  return text;
}

// What stands behind "charset=" in the content of a `meta` tag; empty when there is nothing.
TextView charsetWithin(TextView content) {
  const Text lower = htmlLowered(content);
  for (std::size_t at = lower.find(u"charset"); at != Text::npos; at = lower.find(u"charset", at + 1)) {
    std::size_t place = at + 7;
    while (place < content.size() && isHTMLSpace(content[place])) ++place;
    if (place == content.size() || content[place] != u'=') continue;
    ++place;
    while (place < content.size() && isHTMLSpace(content[place])) ++place;
    if (place == content.size()) return {};
    const char16_t first = content[place];
    if (first == u'"' || first == u'\'') {
      const std::size_t end = content.find(first, place + 1);
      return end == TextView::npos ? TextView() : content.substr(place + 1, end - place - 1);
    }
    const std::size_t end = std::min(content.find_first_of(u" \t\n\r\f;", place), content.size());
    return content.substr(place, end - place);
  }
  return {};
}

// The encoding that the bytes declare, in small letters; empty when they declare none.
std::string declaredEncoding(std::string_view bytes) {
  const Text start = textFromISOLatin1(bytes.substr(0, declarationLimit));
  for (std::size_t place = start.find(u'<'); place != Text::npos; place = start.find(u'<', place)) {
    const TextView rest = TextView(start).substr(place);
    if (rest.starts_with(u"<!") || rest.starts_with(u"<?")) {
      place = endOfHTMLDeclaration(start, place);
      continue;
    }
    const std::size_t name = place + (rest.starts_with(u"</") ? 2 : 1);
    place = name;
    if (name >= start.size() || !isHTMLNameStart(start[name])) continue;
    const HTMLTag tag = htmlTagAt(start, name);
    place = tag.end;
    if (rest.starts_with(u"</") || htmlLowered(tag.name) != u"meta") continue;
    const auto charset = htmlAttribute(start, tag, u"charset");
    const auto content = htmlAttribute(start, tag, u"content");
    const std::string encoding = utf8(htmlLowered(charset ? *charset : content ? charsetWithin(*content) : TextView()));
    if (!encoding.empty()) return encoding;
  }
  return {};
}

}  // namespace

Text textOfHTMLBytes(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) return textFromUTF8(bytes.substr(3));
  if (bytes.starts_with("\xFE\xFF")) return textOfUTF16(bytes.substr(2), true);
  if (bytes.starts_with("\xFF\xFE")) return textOfUTF16(bytes.substr(2), false);
  const std::string encoding = declaredEncoding(bytes);
  // What was read as bytes cannot be in two of them, whatever it says.
  if (encoding == "utf-8" || encoding == "utf8" || encoding.starts_with("utf-16")) return textFromUTF8(bytes);
  for (const std::string_view ours : {"", "windows-1252", "iso-8859-1", "latin1", "us-ascii", "ascii"})
    if (encoding == ours) return textOfWindows1252(bytes);
  std::optional<Text> text = textByICU(bytes, encoding);
  return text ? std::move(*text) : textOfWindows1252(bytes);
}

}  // namespace kelvane
