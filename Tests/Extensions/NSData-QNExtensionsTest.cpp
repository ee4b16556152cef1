#include <array>

#include "Extensions/NSData-QNExtensions.h"
#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/Base64.h"
#include "Support/Testing.h"

namespace {

using namespace NSDataExtensions;
using Bytes = std::vector<std::uint8_t>;

constexpr TextView alphabet = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The plain way, which judges the fast one; for decoding, Base64Fuzz has one.

Text plainEncoding(const Bytes& bytes) {
  Text text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t real = std::min<std::size_t>(bytes.size() - i, 3);
    std::array<unsigned, 3> b{};
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(i), real, b.begin());
    text += alphabet[b[0] >> 2U];
    text += alphabet[(b[0] & 3U) << 4U | b[1] >> 4U];
    text += real > 1 ? alphabet[(b[1] & 15U) << 2U | b[2] >> 6U] : u'=';
    text += real > 2 ? alphabet[b[2] & 63U] : u'=';
  }
  return text;
}

TEST(Base64Test, EveryLengthThereAndBack) {
  std::mt19937 random(1);
  for (std::size_t length = 0; length < 9000; length += length < 400 ? 1 : 211) {
    Bytes bytes(length);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
    const Text text = *encodeDataToBase64(bytes);
    ASSERT_EQ(text, plainEncoding(bytes));
    ASSERT_EQ(decodeDataFromBase64(text), bytes);
    for (const std::size_t width : {1UL, 3UL, 64UL, 76UL, 100000UL}) {
      const Text lines = *encodeDataToBase64(bytes, width);
      Text wanted;
      for (std::size_t i = 0; i < text.size(); i += width) wanted.append(text, i, width) += u'\n';
      ASSERT_EQ(lines, wanted) << length << " bytes in lines of " << width;
      ASSERT_EQ(decodeDataFromBase64(lines), bytes);
    }
    std::string narrow(base64Length(length), ' ');
    ASSERT_EQ(encodeBase64(bytes, narrow.data()), narrow.data() + narrow.size());
    ASSERT_EQ(textFromUTF8(narrow), text);
  }
  EXPECT_EQ(encodeDataToBase64(Bytes{'A', 'B', 'C'}, 0), u"QUJD");
}

TEST(Base64Test, DecodesAQuantum) {
  const std::pair<std::string_view, Bytes> rows[] = {
      {"QQ==", {0x41, 0, 0}}, {"QU*D", {0x01, 0x05, 0x03}}, {"\xFF\xFF\xFFQ", {0, 0, 0x10}}};
  for (const auto& [source, wanted] : rows) {
    Bytes bytes(3);
    decodeQuantum(std::span<std::uint8_t, 3>(bytes), std::span<const char, 4>(source.data(), 4));
    EXPECT_EQ(bytes, wanted) << source;
  }
}

}  // namespace
