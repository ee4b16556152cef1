#include "Report/Colours.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "Extensions/NSColor-QNExtensions.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/TextScan.h"

namespace notebook {
namespace {

using kelvane::Text;
using kelvane::TextView;

bool isHexadecimal(char16_t unit) {
  return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F') || (unit >= u'a' && unit <= u'f');
}

// What makes a "#" part of something larger: a word, an address, another "#".
bool belongsToWord(char16_t unit) {
  return isHexadecimal(unit) || (unit >= u'G' && unit <= u'Z') || (unit >= u'g' && unit <= u'z') || unit >= 0x80 ||
         TextView(u"_#&/=.-?").find(unit) != TextView::npos;
}

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

unsigned steps(double component) { return static_cast<unsigned>(std::lrint(component * 255)); }

}  // namespace

std::vector<TextView> coloursIn(TextView text, std::size_t most) {
  std::vector<TextView> colours;
  for (std::size_t place = kelvane::findUnit(text, u'#'); place < text.size() && colours.size() < most;
       place = kelvane::findUnit(text, u'#', place + 1)) {
    if (place > 0 && belongsToWord(text[place - 1])) continue;
    std::size_t end = place + 1;
    while (end < text.size() && end - place <= 7 && isHexadecimal(text[end])) ++end;
    const TextView colour = text.substr(place, end - place);
    if (colour.size() != 4 && colour.size() != 7) continue;
    // At the end of a sentence there may be a point.
    if (end < text.size() && text[end] != u'.' && belongsToWord(text[end])) continue;
    if (std::ranges::find(colours, colour) == colours.end()) colours.push_back(colour);
  }
  return colours;
}

bool outputHasColour() {
  const std::string_view terminal = environment("TERM");
  return ::isatty(STDOUT_FILENO) == 1 && !terminal.empty() && terminal != "dumb" && environment("NO_COLOR").empty();
}

Text onItsColour(TextView definition) {
  const auto colour = kelvane::NSColorExtensions::colorWithHtmlDefinition(definition);
  if (!colour) return Text(definition);
  const unsigned letters = kelvane::contrastingColor(*colour).redComponent() > 0 ? 97 : 30;
  return kelvane::format(u"\x1B[%u;48;2;%u;%u;%um%@\x1B[0m", letters, steps(colour->redComponent()),
                         steps(colour->greenComponent()), steps(colour->blueComponent()), definition);
}

}  // namespace notebook
