#include <cmath>

#include "Extensions/NSColor-QNExtensions.h"
#include "Fuzz.h"
#include "Graphics/QNColorPalette.h"
#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/TextEncoding.h"

namespace {

using namespace kelvane;
using kelvane::fuzz::expect;

// A definition read the plain way: its digits as text, of which the last three groups count.
NSColor plainColor(TextView text) {
  const NSCharacterSet& blanks = NSCharacterSet::whitespaceAndNewlineCharacterSet();
  const TextView hexadecimal = u"0123456789abcdefABCDEF";
  text = text.substr(0, 40);
  while (!text.empty() && (text[0] == u'#' || blanks.characterIsMember(text[0]))) text.remove_prefix(1);
  std::string digits;
  bool isCut = false;
  for (const char16_t unit : text) {
    if (blanks.characterIsMember(unit)) continue;
    if (unit == u'o' || unit == u'O') {
      digits += '0';
    } else if (hexadecimal.find(unit) != TextView::npos) {
      digits += static_cast<char>(unit);
    } else {
      isCut = true;
      break;
    }
  }
  const std::size_t width = isCut || digits.size() <= 5 ? 1 : digits.size() <= 8 ? 2 : 3;
  digits.insert(0, 3 * width, '0');
  const auto component = [&](std::size_t fromEnd) {
    const std::string group = digits.substr(digits.size() - fromEnd * width, width);
    return std::stoi(group, nullptr, 16) / (std::pow(16.0, static_cast<double>(width)) - 1);
  };
  return NSColor::colorWithCalibratedRed(component(3), component(2), component(1), 1);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Text text = textFromUTF8(fuzz::bytesOf(data, size));
  expect(colorForHexString(text).isEqual(plainColor(text)), "a definition reads as the plain way has it");
  const auto color = QNColorPalette::colorForString(text);
  expect(color.has_value() == !text.empty(), "any text but the empty one is a colour");
  if (!color) return 0;
  if (text[0] == u'#') expect(color->isEqual(plainColor(text)), "\"#\" begins no name");
  const Text definition = htmlDefinition(*color);
  expect(htmlDefinition(colorForHexString(definition)) == definition, "what was written reads back");
  return 0;
}
