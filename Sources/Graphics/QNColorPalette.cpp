#include "Graphics/QNColorPalette.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/PropertyList.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

constexpr std::size_t unitsRead = 40;

// A definition as it was read: each component is a count of steps, `most` of which are 1.0.
struct HexColor {
  std::uint16_t red = 0;
  std::uint16_t green = 0;
  std::uint16_t blue = 0;
  std::uint16_t most = 15;
};

enum : std::uint8_t { Blank = 16, Other = 17 };

constexpr auto unitKinds = [] {
  std::array<std::uint8_t, 128> kinds{};
  kinds.fill(Other);
  for (std::uint8_t i = 0; i < 10; ++i) kinds[u'0' + i] = i;
  for (std::uint8_t i = 0; i < 6; ++i) kinds[u'A' + i] = kinds[u'a' + i] = static_cast<std::uint8_t>(10 + i);
  kinds[u'o'] = kinds[u'O'] = 0;
  for (const char16_t blank : {u'\t', u'\n', u'\v', u'\f', u'\r', u' '}) kinds[blank] = Blank;
  return kinds;
}();

std::uint8_t kindOf(char16_t unit) {
  if (unit < unitKinds.size()) return unitKinds[unit];
  return NSCharacterSet::whitespaceAndNewlineCharacterSet().characterIsMember(unit) ? Blank : Other;
}

HexColor readAnyDefinition(TextView text) {
  text = text.substr(0, unitsRead);
  while (!text.empty() && (text[0] == u'#' || kindOf(text[0]) == Blank)) text.remove_prefix(1);
  std::uint64_t digits = 0;
  unsigned count = 0;
  bool isCut = false;
  for (const char16_t unit : text) {
    const std::uint8_t kind = kindOf(unit);
    if (kind == Blank) continue;
    if (kind == Other) {
      isCut = true;
      break;
    }
    digits = digits * 16 + kind;
    ++count;
  }
  const unsigned width = isCut || count <= 5 ? 4 : count <= 8 ? 8 : 12;
  const std::uint64_t mask = (1U << width) - 1;
  const auto group = [&](unsigned place) { return static_cast<std::uint16_t>((digits >> (place * width)) & mask); };
  return {group(2), group(1), group(0), static_cast<std::uint16_t>(mask)};
}

unsigned digitAt(TextView text, std::size_t place) { return unitKinds[text[place]]; }

// Nearly every definition is "#" and six digits. No arrays here: writing bytes and reading them back as words would
// take longer than all the rest.
HexColor readDefinition(TextView text) {
  if (text.size() != 7 || text[0] != u'#') return readAnyDefinition(text);
  if ((text[1] | text[2] | text[3] | text[4] | text[5] | text[6]) >= 128) return readAnyDefinition(text);
  const unsigned high = digitAt(text, 1) | digitAt(text, 3) | digitAt(text, 5);
  const unsigned low = digitAt(text, 2) | digitAt(text, 4) | digitAt(text, 6);
  if ((high | low) > 15) return readAnyDefinition(text);
  const auto pair = [text](std::size_t i) {
    return static_cast<std::uint16_t>(digitAt(text, i) * 16 + digitAt(text, i + 1));
  };
  return {pair(1), pair(3), pair(5), 255};
}

double usableGamma(double gamma) { return gamma > 0 ? gamma : 1.0; }

constexpr auto fractionsOf255 = [] {
  std::array<double, 256> fractions{};
  for (std::size_t i = 0; i < fractions.size(); ++i) fractions[i] = static_cast<double>(i) / 255;
  return fractions;
}();

double componentOf(std::uint16_t steps, const HexColor& read, double gamma) {
  const double plain = read.most == 255 ? fractionsOf255[steps] : static_cast<double>(steps) / read.most;
  return gamma == 1.0 ? plain : std::pow(plain, gamma);
}

// The names of the palette in a hash table, each with what its definition says.
class Names {
 public:
  explicit Names(const NSDictionary& palette) : mySlots(std::bit_ceil(4 * palette.count() + 1)) {
    for (const auto& [name, definition] : palette) {
      const NSString* text = as<NSString>(definition.get());
      if (!text || name.empty() || name.size() > longestName) continue;
      std::size_t place = hash(name);
      while (!mySlots[place & (mySlots.size() - 1)].name.empty()) ++place;
      mySlots[place & (mySlots.size() - 1)] = {name, readDefinition(text->text())};
    }
  }

  // Null when `string` in lower case is no name.
  const HexColor* find(TextView string) const {
    if (string.size() > longestName) return nullptr;
    std::array<char16_t, longestName> buffer;
    std::transform(string.begin(), string.end(), buffer.begin(), lowerCase);
    const TextView name(buffer.data(), string.size());
    for (std::size_t place = hash(name);; ++place) {
      const Slot& slot = mySlots[place & (mySlots.size() - 1)];
      if (slot.name == name) return &slot.color;
      if (slot.name.empty()) return nullptr;
    }
  }

 private:
  struct Slot {
    Text name;
    HexColor color;
  };
  static constexpr std::size_t longestName = 64;

  // The palette's names are ASCII, and the Kelvin sign is the one character beyond whose lower case is, too.
  static char16_t lowerCase(char16_t unit) {
    if (unit >= u'A' && unit <= u'Z') return static_cast<char16_t>(unit + (u'a' - u'A'));
    return unit == u'\x212A' ? u'k' : unit;
  }

  // Four units and the length tell nearly all names apart, and do not wait for one another as a whole text's would.
  static std::size_t hash(TextView name) {
    const std::size_t size = name.size();
    return size * 37 + name[0] * 5U + name[size / 4] * 59U + name[size / 2] * 131U + name[size - 1] * 17U;
  }

  std::vector<Slot> mySlots;
};

Ref<NSDictionary> readPalette() {
  const auto path = NSBundle::libraryBundle().pathForResource(u"QNColorPalette", u"plist");
  if (!path) return nullptr;
  const FileContents contents = readFile(fileSystemRepresentation(*path), maximumPropertyListSize);
  auto palette = contents.error ? nullptr : as<NSDictionary>(readPropertyList(contents.bytes).root);
  if (!palette) NSLog(u"Can't read the colour palette at '%@'.", *path);
  return palette;
}

const Names& names() {
  static const auto& theNames = *[] {
    const auto palette = readPalette();
    return new Names(palette ? *palette : NSDictionary());
  }();
  return theNames;
}

unsigned stepsOf255(double component, double gamma) {
  // Also true of what is not a number.
  if (!(component > 0)) return 0;
  component = std::min(component, 1.0);
  if (gamma != 1.0) component = std::pow(component, 1 / gamma);
  return static_cast<unsigned>(std::lrint(component * 255.0));
}

}  // namespace

NSColor colorForHexString(TextView string, double gamma) {
  const HexColor read = readDefinition(string);
  gamma = usableGamma(gamma);
  return NSColor(NSColor::Space::CalibratedRGB, componentOf(read.red, read, gamma),
                 componentOf(read.green, read, gamma), componentOf(read.blue, read, gamma), 1.0);
}

std::optional<NSColor> QNColorPalette::colorForString(std::optional<TextView> string, double gamma) {
  if (!string || string->empty()) return std::nullopt;
  const HexColor* named = string->front() == u'#' ? nullptr : names().find(*string);
  const HexColor read = named ? *named : readDefinition(*string);
  gamma = usableGamma(gamma);
  return std::optional<NSColor>(std::in_place, NSColor::Space::CalibratedRGB, componentOf(read.red, read, gamma),
                                componentOf(read.green, read, gamma), componentOf(read.blue, read, gamma), 1.0);
}

Text QNColorPalette::stringForColor(const NSColor& color, double gamma) {
  constexpr TextView digits = u"0123456789abcdef";
  gamma = usableGamma(gamma);
  Text text = u"#";
  for (const double component : {color.redComponent(), color.greenComponent(), color.blueComponent()}) {
    const unsigned steps = stepsOf255(component, gamma);
    text += digits[steps / 16];
    text += digits[steps % 16];
  }
  return text;
}

std::optional<Text> QNColorPalette::stringForColor(const NSColor* color, double gamma) {
  if (!color) return std::nullopt;
  return stringForColor(*color, gamma);
}

}  // namespace kelvane
