#include "Platform/Foundation/RTFWriter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSString.h"

namespace kelvane {
namespace {

constexpr TextView defaultFamily = u"Helvetica";
constexpr double defaultPointSize = 12;
// In points; beyond, readers go wrong.
constexpr double largestPointSize = 1638;

using Components = std::array<std::uint8_t, 3>;

// Nothing for what is no colour.
std::optional<Components> componentsOf(const NSObject* value) {
  const NSColor* color = as<NSColor>(value);
  const auto rgb = color ? color->colorUsingColorSpace(NSColor::Space::CalibratedRGB) : std::nullopt;
  if (!rgb) return std::nullopt;
  const auto byte = [](double component) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(component, 0.0, 1.0) * 255));
  };
  return Components{byte(rgb->redComponent()), byte(rgb->greenComponent()), byte(rgb->blueComponent())};
}

class RTFWriter {
 public:
  explicit RTFWriter(const NSAttributedString& text) : myText(text) {}

  std::vector<std::uint8_t> write();

 private:
  void collect();
  void writeTables();
  void writeRun(const NSDictionary& attributes, TextView text);
  void openLink(TextView address);
  void writeText(TextView text);
  void writeUnit(char16_t unit);

  void put(std::string_view ascii) { myOut.insert(myOut.end(), ascii.begin(), ascii.end()); }
  void put(std::string_view word, long number) {
    put(word);
    put(std::to_string(number));
  }

  const NSAttributedString& myText;
  std::vector<std::uint8_t> myOut;
  // Their places in the tables; colours count from 1, as 0 is the reader's own.
  std::map<Text, long, std::less<>> myFonts;
  std::map<Components, long> myColors;
};

std::vector<std::uint8_t> RTFWriter::write() {
  const TextView text = myText.string();
  myOut.reserve(text.size() + 256);
  collect();
  writeTables();
  Ref<NSObject> link;
  for (const AttributeRun run : myText.runs()) {
    const Ref<NSObject> next = run.attributes->objectForKey(NSLinkAttributeName);
    if (!isEqual(link, next)) {
      if (link) put("}}");
      if (next) openLink(next->description());
    }
    link = next;
    writeRun(*run.attributes, text.substr(run.range.location, run.range.length));
  }
  if (link) put("}}");
  put("\n}\n");
  return std::move(myOut);
}

void RTFWriter::collect() {
  myFonts.emplace(defaultFamily, 0);
  const NSDictionary* last = nullptr;
  for (const AttributeRun run : myText.runs()) {
    if (run.attributes.get() == last) continue;
    last = run.attributes.get();
    if (const auto font = as<NSFont>(last->objectForKey(NSFontAttributeName)))
      myFonts.emplace(font->familyName(), static_cast<long>(myFonts.size()));
    if (const auto color = componentsOf(last->objectForKey(NSForegroundColorAttributeName).get()))
      myColors.emplace(*color, static_cast<long>(myColors.size()) + 1);
  }
}

void RTFWriter::writeTables() {
  put("{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n{\\fonttbl");
  for (const auto& [family, number] : myFonts) {
    put("{\\f", number);
    put("\\fnil\\fcharset0 ");
    // A semicolon would end the name.
    for (const char16_t unit : family)
      if (unit != u';' && unit >= u' ') writeUnit(unit);
    put(";}");
  }
  put("}\n{\\colortbl;");
  std::vector<Components> colors(myColors.size());
  for (const auto& [color, number] : myColors) colors[static_cast<std::size_t>(number) - 1] = color;
  for (const Components& color : colors) {
    put("\\red", color[0]);
    put("\\green", color[1]);
    put("\\blue", color[2]);
    put(";");
  }
  put("}\n\\pard ");
}

void RTFWriter::writeRun(const NSDictionary& attributes, TextView text) {
  const auto font = as<NSFont>(attributes.objectForKey(NSFontAttributeName));
  const double size = font && !std::isnan(font->pointSize()) ? font->pointSize() : defaultPointSize;
  put("{\\f", font ? myFonts.find(font->familyName())->second : 0);
  put("\\fs", std::lround(2 * std::clamp(size, 0.5, largestPointSize)));
  if (font && font->isBold()) put("\\b");
  if (font && font->isItalic()) put("\\i");
  const auto underline = attributes.objectForKey(NSUnderlineStyleAttributeName);
  if (const auto number = as<NSNumber>(underline); number && number->boolValue()) put("\\ul");
  if (const auto color = componentsOf(attributes.objectForKey(NSForegroundColorAttributeName).get()))
    put("\\cf", myColors.find(*color)->second);
  put(" ");
  writeText(text);
  put("}");
}

// The address stands in quotes, where a backslash is written as two.
void RTFWriter::openLink(TextView address) {
  put("{\\field{\\*\\fldinst{HYPERLINK \"");
  for (const char16_t unit : address) {
    if (unit == u'"')
      put("%22");
    else if (unit >= u' ')
      for (int i = unit == u'\\' ? 2 : 1; i > 0; --i) writeUnit(unit);
  }
  put("\"}}{\\fldrslt ");
}

void RTFWriter::writeText(TextView text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    switch (text[i]) {
      case u'\r':
        if (i + 1 < text.size() && text[i + 1] == u'\n') ++i;
        [[fallthrough]];
      case u'\n':
      case u'\x85':
      case u'\x2029':
        put("\\par\n");
        break;
      case u'\v':
      case u'\x2028':
        put("\\line\n");
        break;
      case u'\f':
        put("\\page\n");
        break;
      case u'\t':
        put("\\tab ");
        break;
      default:
        if (text[i] >= u' ') writeUnit(text[i]);
    }
  }
}

void RTFWriter::writeUnit(char16_t unit) {
  if (unit < 0x7F) {
    if (unit == u'\\' || unit == u'{' || unit == u'}') myOut.push_back('\\');
    return myOut.push_back(static_cast<std::uint8_t>(unit));
  }
  // Numbers are signed and have 16 bits.
  put("\\u", static_cast<std::int16_t>(unit));
  put("?");
}

}  // namespace

std::vector<std::uint8_t> rtfOfStyledText(const NSAttributedString& text) { return RTFWriter(text).write(); }

}  // namespace kelvane
