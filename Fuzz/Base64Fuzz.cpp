#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "Extensions/NSData-QNExtensions.h"
#include "Extensions/NSString-QNExtensions.h"
#include "Fuzz.h"
#include "Platform/Foundation/Base64.h"
#include "Platform/Foundation/TextEncoding.h"

namespace {

using namespace kelvane;
using kelvane::fuzz::expect;
using Bytes = std::vector<std::uint8_t>;

// The rules of decoding one by one, over the whole text each.
Bytes plainDecoding(TextView text) {
  const std::string source = utf8(stringByRemovingWhitespace(text));
  const std::size_t digits = std::min(source.find('='), source.size());
  std::size_t padding = 0;
  while (digits + padding < source.size() && source[digits + padding] == '=') ++padding;
  const std::size_t groups = (digits + padding) / 4;
  if (padding >= 3 || digits == 0 || 3 * groups < padding) return {};
  Bytes bytes(3 * groups);
  for (std::size_t i = 0; i < groups; ++i)
    NSDataExtensions::decodeQuantum(std::span<std::uint8_t, 3>(bytes.data() + 3 * i, 3),
                                    std::span<const char, 4>(source.data() + 4 * i, 4));
  bytes.erase(bytes.end() - static_cast<std::ptrdiff_t>(padding), bytes.end());
  return bytes;
}

void checkEncoding(std::span<const std::uint8_t> bytes, std::size_t blockLength) {
  const std::optional<Text> text = NSDataExtensions::encodeDataToBase64(bytes);
  const std::optional<Text> lines = NSDataExtensions::encodeDataToBase64(bytes, blockLength);
  expect(text && lines, "there is memory");
  expect(text->size() == base64Length(bytes.size()), "four digits for three bytes");
  expect(std::ranges::equal(NSDataExtensions::decodeDataFromBase64(*text), bytes), "what was encoded decodes");
  expect(std::ranges::equal(NSDataExtensions::decodeDataFromBase64(*lines), bytes), "lines decode");
  expect(replaceAllOccurencesOfString(*lines, u"\n", u"") == *text, "lines are the text in pieces");
}

}  // namespace

// The bytes are what is encoded, and are decoded as the text that they mean in UTF-8 and, two for a unit, in UTF-16.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  checkEncoding({data, size}, size == 0 ? 0 : data[0] % 80U);
  const Text text = textFromUTF8(fuzz::bytesOf(data, size));
  const fuzz::ExactText exact(text);
  expect(NSDataExtensions::decodeDataFromBase64(exact.view()) == plainDecoding(text), "decodes as the plain way does");
  Text units;
  for (std::size_t i = 0; i + 1 < size; i += 2) units += static_cast<char16_t>(data[i] << 8U | data[i + 1]);
  expect(NSDataExtensions::decodeDataFromBase64(units) == plainDecoding(units), "decodes any units");
  return 0;
}
