#include "Extensions/NSData-QNExtensions.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

#include "Platform/Foundation/Base64.h"
#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/Overwrite.h"

namespace kelvane::NSDataExtensions {
namespace {

// What `make` gives, or nothing when there is no memory for it.
template <class Make>
std::optional<Text> unlessMemoryEnds(Make make) {
  try {
    return make();
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  } catch (const std::length_error&) {
    return std::nullopt;
  }
}

// Copies `text` into lines; `column` is where the current one stands.
char16_t* appendInLines(TextView text, std::size_t blockLength, std::size_t& column, char16_t* out) {
  while (!text.empty()) {
    const TextView piece = text.substr(0, blockLength - column);
    out = std::copy(piece.begin(), piece.end(), out);
    text.remove_prefix(piece.size());
    column += piece.size();
    if (column < blockLength) continue;
    *out++ = u'\n';
    column = 0;
  }
  return out;
}

constexpr bool isHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool isLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

bool isSpace(char16_t unit) {
  static const NSCharacterSet& spaces = NSCharacterSet::whitespaceAndNewlineCharacterSet();
  return spaces.characterIsMember(unit);
}

// Reads a text from its beginning up to the first "=": clean stretches many digits at a time, the rest unit by unit.
class Decoder {
 public:
  explicit Decoder(TextView text) : myText(text) { myBytes.reserve(text.size() / 4 * 3 + 3); }

  std::vector<std::uint8_t> decode() {
    do {
      if (myPlaces == 0) decodeCleanStretch();
    } while (decodeUnit());
    return finish();
  }

 private:
  // By way of a buffer that stays in the cache: a vector of bytes cannot grow without being cleared first.
  void decodeCleanStretch() {
    constexpr std::size_t stretch = 8192;
    std::array<std::uint8_t, stretch / 4 * 3 + base64Slack> buffer;
    for (bool goesOn = true; goesOn;) {
      const TextView rest = myText.substr(myNext);
      const TextView piece = rest.substr(0, stretch);
      const Base64Run run = decodeBase64Run(piece, buffer.data());
      myBytes.insert(myBytes.end(), buffer.data(), buffer.data() + run.written);
      myNext += run.read;
      // Less than a group is left over at the end of a piece; more, where a run was stopped.
      goesOn = piece.size() < rest.size() && piece.size() - run.read < 4;
    }
  }

  // Takes the next unit; false at the end and before a "=".
  bool decodeUnit() {
    skipSpace();
    if (myNext == myText.size() || myText[myNext] == u'=') return false;
    const char16_t unit = myText[myNext++];
    if (const std::uint8_t digit = base64Digit(unit); digit != noBase64Digit) {
      myGroup = myGroup << 6U | digit;
      addPlaces(1);
    } else {
      addPlaces(unit < 0x80 ? 1 : unit < 0x800 ? 2 : isPair(unit) ? 4 : 3);
    }
    return true;
  }

  // Whether a surrogate makes a pair with the next unit, which is taken then. White space between them is gone already.
  bool isPair(char16_t unit) {
    if (!isHighSurrogate(unit)) return false;
    skipSpace();
    if (myNext == myText.size() || !isLowSurrogate(myText[myNext])) return false;
    ++myNext;
    return true;
  }

  void skipSpace() {
    while (myNext < myText.size() && isSpace(myText[myNext])) ++myNext;
  }

  // Counts bytes of the UTF-8 form, and writes out the groups that they fill.
  void addPlaces(unsigned count) {
    for (; count > 0; --count) {
      if (++myPlaces < 4) continue;
      for (const unsigned shift : {16U, 8U, 0U}) myBytes.push_back(static_cast<std::uint8_t>(myGroup >> shift));
      myGroup = 0;
      myPlaces = 0;
    }
  }

  std::vector<std::uint8_t> finish() {
    const bool isNothingBefore = myBytes.empty() && myPlaces == 0;
    unsigned padding = 0;
    for (; padding < 3 && myNext < myText.size() && myText[myNext] == u'='; skipSpace()) {
      ++padding;
      ++myNext;
    }
    if (padding == 3 || isNothingBefore) return {};
    // Padding fills up a group that has begun, as the digit 0; where it fills up none, it still takes its bytes.
    if (const unsigned missing = 4 - myPlaces; missing <= padding) {
      myGroup <<= 6U * missing;
      addPlaces(missing);
    }
    if (myBytes.size() < padding) return {};
    myBytes.resize(myBytes.size() - padding);
    return std::move(myBytes);
  }

  TextView myText;
  std::size_t myNext = 0;
  std::vector<std::uint8_t> myBytes;
  // The group that is being read: the value of its digits, and how many of its four bytes have come by.
  std::uint32_t myGroup = 0;
  unsigned myPlaces = 0;
};

}  // namespace

std::optional<Text> encodeDataToBase64(std::span<const std::uint8_t> bytes) {
  return unlessMemoryEnds([bytes] {
    const std::size_t length = base64Length(bytes.size());
    return overwritten<Text>(length, [&](char16_t* out) {
      encodeBase64(bytes, out);
      return length;
    });
  });
}

std::optional<Text> encodeDataToBase64(std::span<const std::uint8_t> bytes, std::size_t blockLength) {
  if (blockLength == 0) return encodeDataToBase64(bytes);
  return unlessMemoryEnds([&] {
    const std::size_t length = base64Length(bytes.size());
    const std::size_t lines = length / blockLength + (length % blockLength == 0 ? 0 : 1);
    return overwritten<Text>(length + lines, [&](char16_t* out) {
      constexpr std::size_t stretch = 3072;
      std::array<char16_t, base64Length(stretch)> buffer;
      std::size_t column = 0;
      for (std::size_t i = 0; i < bytes.size(); i += stretch) {
        const auto piece = bytes.subspan(i, std::min(stretch, bytes.size() - i));
        const char16_t* const end = encodeBase64(piece, buffer.data());
        out = appendInLines({buffer.data(), end}, blockLength, column, out);
      }
      if (column > 0) *out = u'\n';
      return length + lines;
    });
  });
}

void decodeQuantum(std::span<std::uint8_t, 3> destination, std::span<const char, 4> source) {
  std::uint32_t group = 0;
  for (const char character : source) {
    const std::uint8_t digit = character == '=' ? 0 : base64Digit(static_cast<unsigned char>(character));
    if (digit != noBase64Digit) group = group << 6U | digit;
  }
  destination[0] = static_cast<std::uint8_t>(group >> 16U);
  destination[1] = static_cast<std::uint8_t>(group >> 8U);
  destination[2] = static_cast<std::uint8_t>(group);
}

std::vector<std::uint8_t> decodeDataFromBase64(TextView text) { return Decoder(text).decode(); }

}  // namespace kelvane::NSDataExtensions
