#include <array>
#include <random>
#include <string_view>

#include "Extensions/NSData-QNExtensions.h"
#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/Base64.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

using namespace NSDataExtensions;
using Bytes = std::vector<std::uint8_t>;

constexpr TextView alphabet = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

Bytes bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

// --- The plain way, which judges the fast one: each rule by itself and in its order.

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

Bytes plainDecoding(TextView text) {
  const std::string source = utf8(stringByRemovingWhitespace(text));
  const std::size_t p = std::min(source.find('='), source.size());
  std::size_t e = 0;
  while (p + e < source.size() && source[p + e] == '=') ++e;
  const std::size_t q = (p + e) / 4;
  if (e >= 3 || p == 0 || 3 * q < e) return {};
  Bytes bytes;
  for (std::size_t i = 0; i < q; ++i) {
    std::uint64_t group = 0;
    for (const char c : source.substr(4 * i, 4)) {
      if (const std::size_t digit = alphabet.find(static_cast<unsigned char>(c)); digit != TextView::npos)
        group = group * 64 + digit;
      else if (c == '=')
        group *= 64;
    }
    for (const unsigned shift : {16U, 8U, 0U}) bytes.push_back(static_cast<std::uint8_t>(group >> shift));
  }
  bytes.resize(3 * q - e);
  return bytes;
}

TEST(Base64Test, EncodesTheStandardsVectors) {
  // RFC 4648, section 10.
  const std::pair<std::string_view, TextView> rows[] = {{"", u""},
                                                        {"f", u"Zg=="},
                                                        {"fo", u"Zm8="},
                                                        {"foo", u"Zm9v"},
                                                        {"foob", u"Zm9vYg=="},
                                                        {"fooba", u"Zm9vYmE="},
                                                        {"foobar", u"Zm9vYmFy"}};
  for (const auto& [plain, encoded] : rows) {
    EXPECT_EQ(encodeDataToBase64(bytesOf(plain)), encoded);
    EXPECT_EQ(decodeDataFromBase64(encoded), bytesOf(plain));
  }
}

TEST(Base64Test, AllShortInputsThereAndBack) {
  for (unsigned number = 0; number < 0x10100; ++number) {
    Bytes bytes{static_cast<std::uint8_t>(number)};
    if (number >= 0x100) bytes.push_back(static_cast<std::uint8_t>((number - 0x100) >> 8U));
    const Text text = *encodeDataToBase64(bytes);
    ASSERT_EQ(text, plainEncoding(bytes));
    ASSERT_EQ(decodeDataFromBase64(text), bytes);
  }
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
    // The forms of the floor below.
    std::string narrow(base64Length(length), ' ');
    ASSERT_EQ(encodeBase64(bytes, narrow.data()), narrow.data() + narrow.size());
    ASSERT_EQ(textFromUTF8(narrow), text);
  }
  EXPECT_EQ(encodeDataToBase64(bytesOf("ABC"), 0), u"QUJD");
}

TEST(Base64Test, DecodesLeniently) {
  const struct {
    TextView text;
    std::string_view bytes;
  } rows[] = {
      {u"QUJD", "ABC"},
      {u" Q\tU\nJ\x2029\x00A0"
       u"D\x3000",
       "ABC"},             // white space of every kind
      {u"QUJDRA", "ABC"},  // a group cut short
      {u"QQ", ""},
      {u"QQ==QUJD", "A"},  // what follows the padding
      {u"QUJDQ=", "AB"},   // padding that fills no group takes its byte all the same
      {u"QUJDQUI==", "ABCA"},
      {u"=", ""},
      {u"QUJDQ===", ""},
      {u"QU*D", {"\x01\x05\x03", 3}},  // three digits only: 16, 20, 3
      {u"QU\x00E9QUJD",
       {"\x00\x04\x14"
        "ABC",
        6}},  // two bytes, and so two places
  };
  for (const auto& row : rows) {
    EXPECT_EQ(decodeDataFromBase64(row.text), bytesOf(row.bytes)) << utf8(row.text);
    EXPECT_EQ(decodeDataFromBase64(row.text), plainDecoding(row.text)) << utf8(row.text);
  }
}

// Lines of one length go a way of their own, until one is different.
TEST(Base64Test, TroubleAnywhereInLines) {
  for (const std::size_t width : {32UL, 64UL, 76UL, 84UL, 128UL, 140UL}) {
    for (const TextView end : {u"\n", u"\r\n", u"\r\n "}) {
      Text text;
      for (std::size_t i = 0; i < 5 * width; ++i) {
        text += alphabet[i * 7 % 64];
        if ((i + 1) % width == 0) text += end;
      }
      ASSERT_EQ(decodeDataFromBase64(text), plainDecoding(text)) << width;
      for (std::size_t place = 0; place < text.size(); ++place) {
        for (const char16_t unit : {u'*', u'=', u' ', u'A', u'\x20AC', u'\x0141'}) {
          Text troubled = text;
          troubled[place] = unit;
          ASSERT_EQ(decodeDataFromBase64(troubled), plainDecoding(troubled)) << width << ", " << place;
          troubled.insert(place, 1, unit);
          ASSERT_EQ(decodeDataFromBase64(troubled), plainDecoding(troubled)) << width << ", " << place;
        }
      }
    }
  }
}

// A text of clean stretches with trouble in between: more or less of it, from few or many kinds.
Text randomText(std::mt19937& random) {
  constexpr TextView trouble = u"\n\n\r\n \t=*-_\x80\x85\xA0\xE9\x2028\x20AC\xD83D\xDE00\xDC00\xFFFF";
  const std::size_t length = random() % (random() % 16 == 0 ? 400 : 24);
  const unsigned rarity = 1U << (random() % 8);
  Text text;
  while (text.size() < length)
    text += random() % rarity == 0 ? trouble[random() % (random() % trouble.size() + 1)] : alphabet[random() % 64];
  if (random() % 2 == 0) text.append(random() % 3, u'=');
  return text;
}

TEST(Base64Test, AMillionRandomTextsAgainstThePlainWay) {
  std::mt19937 random(2);
  for (int i = 0; i < 1000000; ++i) {
    const Text text = randomText(random);
    const Bytes wanted = plainDecoding(text);
    if (decodeDataFromBase64(text) != wanted) FAIL() << testing::PrintToString(text);
  }
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
}  // namespace kelvane
