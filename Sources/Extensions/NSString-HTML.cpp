#include "Extensions/NSString-HTML.h"

#include <array>
#include <string>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/HTMLEscape.h"
#include "Platform/Foundation/HTMLPlainText.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/Overwrite.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// From this length on the text goes to the reader in UTF-16, and as Mac OS Roman below it.
constexpr std::size_t unicodeLength = 4;

// What Mac OS Roman has from 128 on.
constexpr TextView macRoman =
    u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü"
    u"†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
    u"¿¡¬√ƒ≈∆«»…\x00A0"
    u"ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ"
    u"‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\xF8FF"
    u"ÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
static_assert(macRoman.size() == 128);

// Nothing when it has no such character.
std::optional<std::string> macRomanBytes(TextView text) {
  std::string bytes;
  for (const char16_t unit : text) {
    const std::size_t place = unit < 0x80 ? unit : macRoman.find(unit);
    if (place == TextView::npos) return std::nullopt;
    bytes += static_cast<char>(unit < 0x80 ? place : 0x80 + place);
  }
  return bytes;
}

constexpr auto isLegal = [] {
  std::array<bool, 256> table{};
  for (const char legal : std::string_view("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                           "-_.!~*'();/?:@&=+$,%#"))
    table[static_cast<unsigned char>(legal)] = true;
  return table;
}();

}  // namespace

Text htmlString(TextView text) { return escapedForHTML(text); }

std::optional<Text> NSStringExtensions::stringWithHTMLString(std::optional<TextView> html) {
  return html ? std::optional<Text>(plainTextOfHTML(*html)) : std::nullopt;
}

Text flattenHTML(TextView text) {
  // A mark in front of UTF-16 says just that, so the detour through bytes may be left out.
  if (text.empty() || text.size() >= unicodeLength) return plainTextOfHTML(text);
  const std::optional<std::string> bytes = macRomanBytes(text);
  return bytes ? plainTextOfHTML(std::string_view(*bytes)) : Text(text);
}

Text encodeLegally(TextView text) {
  constexpr TextView digits = u"0123456789ABCDEF";
  const std::string bytes = utf8(text);
  std::size_t escaped = 0;
  for (const char byte : bytes) escaped += isLegal[static_cast<unsigned char>(byte)] ? 0 : 1;
  return overwritten<Text>(bytes.size() + 2 * escaped, [&](char16_t* begin) {
    char16_t* out = begin;
    for (const char byte : bytes) {
      const auto number = static_cast<unsigned char>(byte);
      if (isLegal[number]) {
        *out++ = number;
      } else {
        *out++ = u'%';
        *out++ = digits[number >> 4U];
        *out++ = digits[number & 0xFU];
      }
    }
    return out - begin;
  });
}

NSAttributedString hyperlink(TextView text) {
  NSDictionary::Entries attributes;
  attributes[Text(NSLinkAttributeName)] = box(text);
  attributes[Text(NSUnderlineStyleAttributeName)] = box(1);
  attributes[Text(NSForegroundColorAttributeName)] = box(NSColor::colorWithCalibratedRed(0.1, 0.1, 1, 1));
  if (const auto font = NSFont::systemFontOfSize(NSFont::smallSystemFontSize()))
    attributes[Text(NSFontAttributeName)] = box(*font);
  return NSAttributedString(Text(text), std::make_shared<NSDictionary>(std::move(attributes)));
}

}  // namespace kelvane
