#include "Platform/Foundation/HTMLEscape.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string_view>
#include <utility>

#include "Platform/Foundation/Overwrite.h"

namespace kelvane {
namespace {

// Characters are put together in numbers.
static_assert(std::endian::native == std::endian::little);

// Each escape is a head of up to four characters and a tail of four. Of a reference to a number, the head is "&#" and
// the thousands, and the tail the three digits left and ";"; behind them stand the heads and tails of the ASCII units.
constexpr std::uint32_t thousands = 66;
constexpr std::uint32_t tailNumbers = 1000;
constexpr std::uint32_t asciiUnits = escaping::lastASCII + 1;
constexpr std::uint32_t tailLength = 4;

// The characters of a half, lowest byte first.
using Half = std::uint32_t;
constexpr Half half(std::string_view characters) {
  Half made = 0;
  for (std::size_t i = 0; i < characters.size(); ++i)
    made |= static_cast<Half>(static_cast<unsigned char>(characters[i])) << (8 * i);
  return made;
}

struct Head {
  Half characters = 0;
  std::uint32_t length = 0;
};

constexpr Head head(std::string_view characters) {
  return {half(characters), static_cast<std::uint32_t>(characters.size())};
}

constexpr std::pair<char, std::string_view> asciiEscapes[] = {
    {'\n', "<br/>"}, {'"', "&quot;"}, {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}};

constexpr char digit(std::size_t number) { return static_cast<char>('0' + number % 10); }

constexpr auto heads = [] {
  std::array<Head, thousands + asciiUnits> table{};
  for (std::size_t i = 0; i < thousands; ++i) {
    const char characters[] = {'&', '#', i < 10 ? digit(i) : digit(i / 10), digit(i)};
    table[i] = head(std::string_view(characters, i == 0 ? 2 : i < 10 ? 3 : 4));
  }
  for (const auto& [character, escape] : asciiEscapes)
    table[thousands + static_cast<std::size_t>(character)] = head(escape.substr(0, escape.size() - tailLength));
  return table;
}();

constexpr auto tails = [] {
  std::array<Half, tailNumbers + asciiUnits> table{};
  for (std::size_t i = 0; i < tailNumbers; ++i) {
    const char characters[] = {digit(i / 100), digit(i / 10), digit(i), ';'};
    table[i] = half(std::string_view(characters, tailLength));
  }
  for (const auto& [character, escape] : asciiEscapes)
    table[tailNumbers + static_cast<std::size_t>(character)] = half(escape.substr(escape.size() - tailLength));
  return table;
}();

// May write a step behind the run; what comes next overwrites it.
inline std::uint8_t* copyRun(const std::uint8_t* run, std::size_t length, std::uint8_t* out) {
  // Most runs between escapes are shorter than that.
  constexpr std::size_t step = 32;
  static_assert(step <= escaping::slack);
  std::memcpy(out, run, step);
  for (std::size_t i = step; i < length; i += step) std::memcpy(out + i, run + i, step);
  return out + length;
}

inline std::uint8_t* putEscape(std::uint32_t unit, std::uint8_t* out) {
  // Which kind it is cannot be guessed, so there is no branch: all bits are set for ASCII.
  const std::uint32_t isASCII = (unit - asciiUnits) >> 16U;
  const Head& front = heads[unit / tailNumbers + (isASCII & (thousands + unit))];
  const Half& back = tails[unit % tailNumbers + (isASCII & tailNumbers)];
  std::memcpy(out, &front.characters, sizeof front.characters);
  std::memcpy(out + front.length, &back, sizeof back);
  return out + front.length + tailLength;
}

// About how many units of the text are escaped: of a long one, only some blocks are looked at.
std::size_t aboutEscaped(TextView text) {
  constexpr std::size_t every = 16;
  if (text.size() < 4 * every * escaping::blockUnits) return escaping::countEscaped(text);
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size(); i += every * escaping::blockUnits)
    count += escaping::countEscaped(text.substr(i, escaping::blockUnits));
  return count * every;
}

}  // namespace

Text escapedForHTML(TextView text) {
  HTMLEscaper escaper(text);
  escaper.escapeTo(text.size());
  return escaper.finish();
}

HTMLMarkup::HTMLMarkup(Text text) : myText(std::move(text)) {
  const bool isASCII = std::ranges::all_of(myText, [](char16_t unit) { return unit <= escaping::lastASCII; });
  if (!isASCII || myText.size() > myCharacters.size()) return;
  for (const char16_t unit : myText) myCharacters[myLength++] = static_cast<std::uint8_t>(unit);
  myText.clear();
}

HTMLEscaper::HTMLEscaper(TextView text, std::size_t markup) : myText(text) {
  myOut.reserve(text.size() + (longest - 1) * aboutEscaped(text) + markup);
}

void HTMLEscaper::escapeTo(std::size_t end) {
  while (myPlace < end) {
    if (myPlace == myBlockEnd) readBlock();
    escapeInBlock(std::min(end, myBlockEnd));
  }
}

void HTMLEscaper::append(const HTMLMarkup& markup) {
  if (!markup.myText.empty()) return append(markup.myText);
  makeRoom(markup.myLength);
  std::memcpy(myCharacters.data() + myCount, markup.myCharacters.data(), markup.myCharacters.size());
  myCount += markup.myLength;
}

void HTMLEscaper::append(TextView markup) {
  flush();
  myOut += markup;
}

Text HTMLEscaper::finish() {
  flush();
  return std::move(myOut);
}

void HTMLEscaper::readBlock() {
  const TextView units = myText.substr(myPlace, escaping::blockUnits);
  escaping::readBlock(units, myBlock);
  myBlockStart = myPlace;
  myBlockEnd = myPlace + units.size();
  myNext = 0;
}

void HTMLEscaper::escapeInBlock(std::size_t end) {
  makeRoom((end - myPlace) * longest);
  const char16_t* const units = myText.data() + myBlockStart;
  const std::uint8_t* const characters = myBlock.characters.data();
  const std::uint16_t* next = myBlock.places.data() + myNext;
  std::uint8_t* out = myCharacters.data() + myCount;
  std::size_t place = myPlace - myBlockStart;
  const std::size_t limit = end - myBlockStart;
  for (std::size_t escape = *next; escape < limit; escape = *++next) {
    out = copyRun(characters + place, escape - place, out);
    out = putEscape(units[escape], out);
    place = escape + 1;
  }
  out = copyRun(characters + place, limit - place, out);
  myCount = static_cast<std::size_t>(out - myCharacters.data());
  myNext = static_cast<std::size_t>(next - myBlock.places.data());
  myPlace = end;
}

void HTMLEscaper::makeRoom(std::size_t characters) {
  if (myCount + characters > capacity) flush();
}

void HTMLEscaper::flush() {
  appendOverwritten(myOut, myCount, [this](char16_t* out) {
    escaping::widen(myCharacters.data(), myCount, out);
    return myCount;
  });
  myCount = 0;
}

}  // namespace kelvane
