#include <algorithm>

#include "Fuzz.h"
#include "Platform/Foundation/TextEncoding.h"

namespace {

using namespace kelvane;
using kelvane::fuzz::expect;

bool isSurrogate(char16_t unit, unsigned half) { return (unit & 0xFC00U) == half; }

// `text` with U+FFFD for each unpaired surrogate.
Text repaired(TextView text) {
  Text result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isPair = isSurrogate(text[i], 0xD800) && i + 1 < text.size() && isSurrogate(text[i + 1], 0xDC00);
    if (isPair)
      result.append(text.substr(i++, 2));
    else
      result += (text[i] & 0xF800U) == 0xD800U ? u'\xFFFD' : text[i];
  }
  return result;
}

// The length of the well-formed UTF-8 sequence at the start of `bytes`, by the table of the Unicode Standard; else 0.
std::size_t wellFormedLength(std::string_view bytes) {
  const auto at = [bytes](std::size_t i) { return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U; };
  const auto isWithin = [at](std::size_t i, unsigned low, unsigned high) { return at(i) >= low && at(i) <= high; };
  const auto isTail = [isWithin](std::size_t i) { return isWithin(i, 0x80, 0xBF); };
  const unsigned lead = at(0);
  if (lead < 0x80) return 1;
  if (isWithin(0, 0xC2, 0xDF)) return isTail(1) ? 2 : 0;
  if (isWithin(0, 0xE0, 0xEF))
    return isWithin(1, lead == 0xE0 ? 0xA0 : 0x80, lead == 0xED ? 0x9F : 0xBF) && isTail(2) ? 3 : 0;
  if (isWithin(0, 0xF0, 0xF4))
    return isWithin(1, lead == 0xF0 ? 0x90 : 0x80, lead == 0xF4 ? 0x8F : 0xBF) && isTail(2) && isTail(3) ? 4 : 0;
  return 0;
}

bool isWellFormed(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t length = wellFormedLength(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

void checkBytes(std::string_view bytes) {
  const Text text = textFromUTF8(bytes);
  const std::string again = utf8(text);
  expect(repaired(text) == text, "decoded text has no unpaired surrogate");
  expect(isWellFormed(again), "UTF-8 is well-formed");
  expect(textFromUTF8(again) == text, "UTF-8 reads back");
  expect((again == bytes) == isWellFormed(bytes), "well-formed bytes, and only these, come back");
  expect(fileSystemRepresentation(textFromFileSystem(bytes)) == bytes, "the bytes of a file name come back");
  expect(isoLatin1(textFromISOLatin1(bytes)) == bytes, "ISO Latin-1 comes back");
}

// The bytes as code units, whatever these are.
void checkUnits(std::string_view bytes) {
  Text units;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
    units +=
        static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) << 8U | static_cast<unsigned char>(bytes[i + 1]));
  const fuzz::ExactText exact(units);
  const TextView text = exact.view();
  expect(textFromUTF8(utf8(text)) == repaired(text), "text comes back but for unpaired surrogates");
  expect(utf8(text) == utf8(repaired(text)), "unpaired surrogates are written as U+FFFD");
  const bool isLatin = std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit <= 0xFF; });
  expect(isoLatin1(text).has_value() == isLatin, "ISO Latin-1 has the first 256 characters");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  checkBytes(kelvane::fuzz::bytesOf(data, size));
  checkUnits(kelvane::fuzz::bytesOf(data, size));
  return 0;
}
