#include "Platform/Foundation/TextEncoding.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "Platform/Foundation/Overwrite.h"
#include "Platform/Foundation/UTF8Runs.h"

namespace kelvane {
namespace {

constexpr char16_t replacementCharacter = 0xFFFD;
constexpr char16_t strayByteBase = 0xDC00;

constexpr bool isHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool isLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }
constexpr bool isSurrogate(char16_t unit) { return (unit & 0xF800) == 0xD800; }
constexpr bool isStrayByte(char16_t unit) { return unit >= 0xDC80 && unit <= 0xDCFF; }

enum class IllFormed { Replace, KeepStrayBytes };

// One sequence of UTF-8, well-formed or not: the character that it stands for and the bytes that it takes.
struct Sequence {
  char32_t character = 0;
  std::size_t length = 1;
  bool wellFormed = false;
};

// What a lead byte says about its sequence. The second byte's bounds are narrower than 80...BF where a wider range
// would let in overlong forms, surrogates or what lies beyond U+10FFFF.
struct Lead {
  std::size_t length;
  unsigned char secondLow;
  unsigned char secondHigh;
};

constexpr Lead leadOf(unsigned char byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {2, 0x80, 0xBF};
  if (byte == 0xE0) return {3, 0xA0, 0xBF};
  if (byte == 0xED) return {3, 0x80, 0x9F};
  if (byte >= 0xE1 && byte <= 0xEF) return {3, 0x80, 0xBF};
  if (byte == 0xF0) return {4, 0x90, 0xBF};
  if (byte >= 0xF1 && byte <= 0xF3) return {4, 0x80, 0xBF};
  if (byte == 0xF4) return {4, 0x80, 0x8F};
  return {0, 0, 0};
}

constexpr bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

Sequence decodeSequence(const unsigned char* bytes, std::size_t available) {
  // The well-formed sequences of most scripts, which need no look at narrower bounds.
  const unsigned char first = bytes[0];
  if (first >= 0xC2 && first <= 0xDF && available > 1 && isContinuation(bytes[1]))
    return {((first & 0x1FU) << 6) | (bytes[1] & 0x3FU), 2, true};
  if (first > 0xE0 && first < 0xED && available > 2 && isContinuation(bytes[1]) && isContinuation(bytes[2]))
    return {((first & 0x0FU) << 12) | ((bytes[1] & 0x3FU) << 6) | (bytes[2] & 0x3FU), 3, true};

  const Lead lead = leadOf(first);
  if (lead.length == 0) return {};
  char32_t character = first & (0xFFU >> (lead.length + 1));
  for (std::size_t i = 1; i < lead.length; ++i) {
    const unsigned char low = i == 1 ? lead.secondLow : 0x80;
    const unsigned char high = i == 1 ? lead.secondHigh : 0xBF;
    if (i == available || bytes[i] < low || bytes[i] > high) return {0, i, false};
    character = (character << 6) | (bytes[i] & 0x3FU);
  }
  return {character, lead.length, true};
}

char16_t* appendCharacter(char16_t* out, char32_t character) {
  if (character < 0x10000) {
    *out++ = static_cast<char16_t>(character);
    return out;
  }
  *out++ = static_cast<char16_t>(0xD7C0 + (character >> 10));
  *out++ = static_cast<char16_t>(0xDC00 | (character & 0x3FF));
  return out;
}

// How many of the units behind a word's first ones are zero in `marks`, where each unit takes `bits`.
constexpr std::size_t unitsBeforeMark(std::uint64_t marks, std::size_t bits) {
  constexpr bool isLittle = std::endian::native == std::endian::little;
  return static_cast<std::size_t>(isLittle ? std::countr_zero(marks) : std::countl_zero(marks)) / bits;
}

// Widens the ASCII bytes that the next eight begin with, and returns how many they are. All eight are written, without
// a branch; those behind the ASCII ones are written again by what comes next.
std::size_t widenEight(const unsigned char* bytes, char16_t* out) {
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  for (std::size_t k = 0; k < sizeof word; ++k) out[k] = bytes[k];
  return unitsBeforeMark(word & 0x8080808080808080U, 8);
}

// Narrows the ASCII code units that the next four begin with, likewise.
std::size_t narrowFour(const char16_t* units, char* out) {
  std::uint64_t word;
  std::memcpy(&word, units, sizeof word);
  for (std::size_t k = 0; k < 4; ++k) out[k] = static_cast<char>(units[k]);
  return unitsBeforeMark(word & 0xFF80FF80FF80FF80U, 16);
}

// Scripts whose characters take three bytes each come in long runs; a look a few characters ahead tells whether one may
// begin here, so that lone characters are not slowed down.
bool beginsThreeByteRun(const unsigned char* bytes, std::size_t available) {
  return available > 48 && (bytes[0] & 0xF0) == 0xE0 && (bytes[12] & 0xF0) == 0xE0;
}

bool beginsThreeByteRun(TextView text) { return text.size() > 48 && text[0] >= 0x800 && text[4] >= 0x800; }

Text decode(std::string_view source, IllFormed policy) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(source.data());
  const std::size_t count = source.size();
  // No sequence gives more code units than it has bytes.
  return overwritten<Text>(count, [&](char16_t* begin) {
    char16_t* out = begin;
    std::size_t i = 0;
    while (i < count) {
      // Most runs are short, and done before a longer one's call would be.
      std::size_t ascii = count - i >= 8 ? widenEight(bytes + i, out) : 0;
      if (ascii == 8 || count - i < 8) ascii += widenASCII(source.substr(i + ascii), out + ascii);
      out += ascii;
      i += ascii;
      while (i < count && bytes[i] >= 0x80) {
        if (beginsThreeByteRun(bytes + i, count - i)) {
          const std::size_t units = decodeThreeByteRun(source.substr(i), out);
          out += units;
          i += 3 * units;
          if (units > 0) continue;
        }
        const Sequence sequence = decodeSequence(bytes + i, count - i);
        if (sequence.wellFormed) {
          out = appendCharacter(out, sequence.character);
        } else if (policy == IllFormed::Replace) {
          *out++ = replacementCharacter;
        } else {
          for (std::size_t k = 0; k < sequence.length; ++k)
            *out++ = static_cast<char16_t>(strayByteBase + bytes[i + k]);
        }
        i += sequence.length;
      }
    }
    return out - begin;
  });
}

char* encodeCharacter(char* out, char32_t character) {
  const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(static_cast<unsigned char>(byte)); };
  if (character < 0x800) {
    put(0xC0 | (character >> 6));
  } else {
    if (character < 0x10000) {
      put(0xE0 | (character >> 12));
    } else {
      put(0xF0 | (character >> 18));
      put(0x80 | ((character >> 12) & 0x3F));
    }
    put(0x80 | ((character >> 6) & 0x3F));
  }
  put(0x80 | (character & 0x3F));
  return out;
}

char* encodeInto(char* out, TextView text, IllFormed policy) {
  std::size_t i = 0;
  while (i < text.size()) {
    const std::size_t left = text.size() - i;
    std::size_t ascii = left >= 4 ? narrowFour(text.data() + i, out) : 0;
    if (ascii == 4 || left < 4) ascii += narrowASCII(text.substr(i + ascii), out + ascii);
    out += ascii;
    i += ascii;
    i += encodeByVectors(text.substr(i), out);
    while (i < text.size() && text[i] >= 0x80) {
      if (beginsThreeByteRun(text.substr(i))) {
        const std::size_t units = encodeThreeByteRun(text.substr(i), out);
        out += 3 * units;
        i += units;
        if (units > 0) continue;
      }
      const char16_t unit = text[i++];
      if (!isSurrogate(unit)) {
        out = encodeCharacter(out, unit);
      } else if (isHighSurrogate(unit) && i < text.size() && isLowSurrogate(text[i])) {
        const char32_t low = text[i++];
        out = encodeCharacter(out, (char32_t{unit} << 10) + low - 0x35FDC00);
      } else if (policy == IllFormed::KeepStrayBytes && isStrayByte(unit)) {
        *out++ = static_cast<char>(static_cast<unsigned char>(unit - strayByteBase));
      } else {
        out = encodeCharacter(out, replacementCharacter);
      }
    }
  }
  return out;
}

std::string encode(TextView text, IllFormed policy) {
  // Most texts are ASCII throughout, and done then. In others what is not stands near the beginning.
  std::size_t ascii = 0;
  auto narrowed = overwritten<std::string>(text.size(), [&](char* out) { return ascii = narrowASCII(text, out); });
  if (ascii == text.size()) return narrowed;
  const TextView rest = text.substr(ascii);
  return overwritten<std::string>(ascii + utf8SizeLimit(rest), [&](char* begin) {
    std::memcpy(begin, narrowed.data(), ascii);
    return encodeInto(begin + ascii, rest, policy) - begin;
  });
}

}  // namespace

std::string utf8(TextView text) { return encode(text, IllFormed::Replace); }

Text textFromUTF8(std::string_view bytes) { return decode(bytes, IllFormed::Replace); }

bool narrowISOLatin1(TextView text, char* out) {
  char16_t all = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    all |= text[i];
    out[i] = static_cast<char>(static_cast<unsigned char>(text[i]));
  }
  return all <= 0xFF;
}

std::optional<std::string> isoLatin1(TextView text) {
  bool isLatin1 = false;
  auto bytes = overwritten<std::string>(text.size(), [&](char* out) {
    isLatin1 = narrowISOLatin1(text, out);
    return text.size();
  });
  if (!isLatin1) return std::nullopt;
  return bytes;
}

Text textFromISOLatin1(std::string_view bytes) {
  return overwritten<Text>(bytes.size(), [&](char16_t* out) {
    for (std::size_t i = 0; i < bytes.size(); ++i) out[i] = static_cast<unsigned char>(bytes[i]);
    return bytes.size();
  });
}

Text textFromFileSystem(std::string_view bytes) { return decode(bytes, IllFormed::KeepStrayBytes); }

std::string fileSystemRepresentation(TextView path) { return encode(path, IllFormed::KeepStrayBytes); }

}  // namespace kelvane
