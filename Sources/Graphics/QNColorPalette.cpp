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
  std::array<std::uint16_t, 3> steps{};
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
  return {{group(2), group(1), group(0)}, static_cast<std::uint16_t>(mask)};
}

// Nearly every definition is "#" and six digits.
HexColor readDefinition(TextView text) {
  if (text.size() != 7 || text[0] != u'#') return readAnyDefinition(text);
  std::array<std::uint8_t, 6> digits;
  unsigned all = 0;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    const char16_t unit = text[i + 1];
    digits[i] = unit < unitKinds.size() ? unitKinds[unit] : std::uint8_t{Other};
    all |= digits[i];
  }
  if (all > 15) return readAnyDefinition(text);
  const auto pair = [&](std::size_t i) { return static_cast<std::uint16_t>(digits[i] * 16 + digits[i + 1]); };
  return {{pair(0), pair(2), pair(4)}, 255};
}

double usableGamma(double gamma) { return gamma > 0 ? gamma : 1.0; }

constexpr auto fractionsOf255 = [] {
  std::array<double, 256> fractions{};
  for (std::size_t i = 0; i < fractions.size(); ++i) fractions[i] = static_cast<double>(i) / 255;
  return fractions;
}();

NSColor colorFrom(const HexColor& read, double gamma) {
  gamma = usableGamma(gamma);
  const auto component = [&](std::size_t i) {
    const std::uint16_t steps = read.steps[i];
    const double plain = read.most == 255 ? fractionsOf255[steps] : static_cast<double>(steps) / read.most;
    return gamma == 1.0 ? plain : std::pow(plain, gamma);
  };
  return NSColor::colorWithCalibratedRed(component(0), component(1), component(2), 1.0);
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

  static std::size_t hash(TextView name) {
    std::size_t hash = name.size();
    for (const char16_t unit : name) hash = hash * 31 + unit;
    return hash ^ (hash >> 7U);
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

NSColor colorForHexString(TextView string, double gamma) { return colorFrom(readDefinition(string), gamma); }

std::optional<NSColor> QNColorPalette::colorForString(std::optional<TextView> string, double gamma) {
  if (!string || string->empty()) return std::nullopt;
  if (string->front() != u'#')
    if (const HexColor* named = names().find(*string)) return colorFrom(*named, gamma);
  return colorFrom(readDefinition(*string), gamma);
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
