#include "Platform/Foundation/TextEncoding.h"
#include "Support/Testing.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

char byteOf(char32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); }

std::string encoded(char32_t c) {
  if (c < 0x80) return {byteOf(c)};
  if (c < 0x800) return {byteOf(0xC0 + c / 64), byteOf(0x80 + c % 64)};
  if (c < 0x10000) return {byteOf(0xE0 + c / 4096), byteOf(0x80 + c / 64 % 64), byteOf(0x80 + c % 64)};
  return {byteOf(0xF0 + c / 262144), byteOf(0x80 + c / 4096 % 64), byteOf(0x80 + c / 64 % 64), byteOf(0x80 + c % 64)};
}

Text unitsOf(char32_t c) {
  if (c < 0x10000) return {static_cast<char16_t>(c)};
  return {static_cast<char16_t>(0xD800 + (c - 0x10000) / 1024), static_cast<char16_t>(0xDC00 + (c - 0x10000) % 1024)};
}

// TextEncodingFuzz judges unpaired surrogates in UTF-8, and ISO Latin-1.
TEST(TextEncoding, EveryCharacterRoundTrips) {
  std::string bytes;
  Text text;
  for (char32_t c = 0; c < 0x110000; c = c == 0xD7FF ? 0xE000 : c + 1) {
    bytes += encoded(c);
    text += unitsOf(c);
  }
  EXPECT_TRUE(utf8(text) == bytes);
  EXPECT_TRUE(textFromUTF8(bytes) == text);
  EXPECT_TRUE(textFromFileSystem(bytes) == text);
  EXPECT_TRUE(fileSystemRepresentation(text) == bytes);
}

// The first is the standard's table 3-11.
TEST(TextEncoding, DecodesIllFormedBytesByMaximalSubparts) {
  const std::pair<std::string_view, TextView> rows[] = {
      {"\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64",
       u"a\xFFFD\xFFFD\xFFFD"
       u"b\xFFFD"
       u"c\xFFFD\xFFFD"
       u"d"},
      {"\xC0\xAF|\xC1|\xFE\xFF", u"\xFFFD\xFFFD|\xFFFD|\xFFFD\xFFFD"},
      {"\xE0\x9F\xBF|\xE0\xA0|\xED\xA0\x80", u"\xFFFD\xFFFD\xFFFD|\xFFFD|\xFFFD\xFFFD\xFFFD"},
      {"\xF0\x8F\xBF\xBF|\xF0\x90\x80", u"\xFFFD\xFFFD\xFFFD\xFFFD|\xFFFD"},
      {"\xF4\x90\x80|\xF4\x8F\xBF|\xF5\x80", u"\xFFFD\xFFFD\xFFFD|\xFFFD|\xFFFD\xFFFD"},
      {"\xE4\xB8", u"\xFFFD"},
      {"\xEF\xBB\xBF|", u"\xFEFF|"},
  };
  for (const auto& [bytes, text] : rows) {
    EXPECT_EQ(textFromUTF8(bytes), text);
    // Wherever it begins in a machine word, and with each of its bytes kept.
    const std::string later = "1234567" + std::string(bytes);
    EXPECT_EQ(textFromUTF8(later), u"1234567" + Text(text));
    EXPECT_EQ(fileSystemRepresentation(textFromFileSystem(later)), later);
  }
  EXPECT_EQ(textFromFileSystem("\xE4\xB8|\xC3\xA9"), u"\xDCE4\xDCB8|\xE9");
}

TEST(TextEncoding, FileNamesKeepTheBytesThatSurrogatesStandFor) {
  const std::pair<TextView, std::string_view> rows[] = {
      {u"\xD83D\xD83D\xDE00\xD800", "\xEF\xBF\xBD\xF0\x9F\x98\x80\xEF\xBF\xBD"},
      {u"\xDC80\xDD00", "\x80\xEF\xBF\xBD"},
      {u"\xD800\xDC80\xDC80", "\xF0\x90\x82\x80\x80"},
  };
  for (const auto& [text, bytes] : rows) EXPECT_EQ(fileSystemRepresentation(text), bytes);
}

}  // namespace
