#include "Platform/Foundation/ArchiveCoder.h"

#include <bit>
#include <utility>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// The count of a text says in its lowest bit whether each unit takes two bytes, low byte first, or one.
constexpr std::uint64_t isWide = 1;

}  // namespace

ArchiveEncoder::~ArchiveEncoder() = default;
ArchiveDecoder::~ArchiveDecoder() = default;

// Seven bits to a byte, the lowest first; a set eighth bit says that more follow.
void ArchiveEncoder::encodeUnsigned(std::uint64_t number) {
  for (; number >= 0x80; number >>= 7U) myValues += static_cast<char>(number | 0x80U);
  myValues += static_cast<char>(number);
}

// The sign goes to the lowest bit.
void ArchiveEncoder::encodeInteger(std::int64_t number) {
  const auto bits = static_cast<std::uint64_t>(number);
  encodeUnsigned(number < 0 ? ~(bits << 1U) : bits << 1U);
}

void ArchiveEncoder::encodeDouble(double number) {
  const auto bits = std::bit_cast<std::uint64_t>(number);
  for (unsigned shift = 0; shift < 64; shift += 8) myValues += static_cast<char>(bits >> shift);
}

void ArchiveEncoder::encodeText(TextView text) {
  if (const auto bytes = isoLatin1(text)) {
    encodeUnsigned(text.size() << 1U);
    myValues += *bytes;
    return;
  }
  encodeUnsigned((text.size() << 1U) | isWide);
  for (const char16_t unit : text) {
    myValues += static_cast<char>(unit);
    myValues += static_cast<char>(unit >> 8U);
  }
}

void ArchiveEncoder::encodeBytes(std::span<const std::uint8_t> bytes) {
  encodeUnsigned(bytes.size());
  myValues.append(bytes.begin(), bytes.end());
}

void ArchiveEncoder::fail(Text reason) {
  if (!hasFailed()) myError = std::move(reason);
}

void ArchiveDecoder::fail(Text reason) {
  if (!hasFailed()) myError = std::move(reason);
}

// The next `count` bytes; none, and failure, when there are fewer.
std::string_view ArchiveDecoder::take(std::size_t count) {
  if (count > myValues.size()) fail(u"it is cut short");
  if (hasFailed()) return {};
  const std::string_view bytes = myValues.substr(0, count);
  myValues.remove_prefix(count);
  return bytes;
}

bool ArchiveDecoder::decodeBool() {
  const std::string_view byte = take(1);
  if (!byte.empty() && static_cast<unsigned char>(byte[0]) > 1) fail(u"a truth value is neither 0 nor 1");
  return !hasFailed() && byte[0] == 1;
}

std::uint64_t ArchiveDecoder::decodeUnsigned() {
  std::uint64_t number = 0;
  for (unsigned shift = 0;; shift += 7) {
    const std::string_view byte = take(1);
    if (byte.empty()) return 0;
    const std::uint64_t bits = static_cast<unsigned char>(byte[0]) & 0x7FU;
    if (shift == 63 && bits > 1) break;
    number |= bits << shift;
    if ((static_cast<unsigned char>(byte[0]) & 0x80U) == 0) return number;
    if (shift == 63) break;
  }
  fail(u"a number has more than 64 bits");
  return 0;
}

std::int64_t ArchiveDecoder::decodeInteger() {
  const std::uint64_t bits = decodeUnsigned();
  return static_cast<std::int64_t>((bits & 1U) != 0 ? ~(bits >> 1U) : bits >> 1U);
}

double ArchiveDecoder::decodeDouble() {
  std::uint64_t bits = 0;
  unsigned shift = 0;
  for (const char byte : take(8)) {
    bits |= std::uint64_t{static_cast<unsigned char>(byte)} << shift;
    shift += 8;
  }
  return std::bit_cast<double>(bits);
}

Text ArchiveDecoder::decodeText() {
  const std::uint64_t count = decodeUnsigned();
  if ((count & isWide) == 0) return textFromISOLatin1(take(count >> 1U));
  // Cannot overflow: the lowest bit goes.
  const std::string_view bytes = take((count >> 1U) > myValues.size() ? myValues.size() + 1 : count & ~isWide);
  Text text(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i)
    text[i] = static_cast<char16_t>(static_cast<unsigned char>(bytes[2 * i]) |
                                    static_cast<unsigned char>(bytes[2 * i + 1]) << 8U);
  return text;
}

std::span<const std::uint8_t> ArchiveDecoder::decodeBytes() {
  const std::string_view bytes = take(decodeUnsigned());
  return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}

std::size_t ArchiveDecoder::decodeCount(std::size_t bytesEach) {
  const std::uint64_t count = decodeUnsigned();
  if (count <= myValues.size() / bytesEach) return count;
  fail(u"it is cut short");
  return 0;
}

}  // namespace kelvane
