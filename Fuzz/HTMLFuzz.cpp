#include <algorithm>

#include "Extensions/NSString-HTML.h"
#include "Fuzz.h"
#include "Platform/Foundation/HTMLBytes.h"
#include "Platform/Foundation/HTMLPlainText.h"
#include "Platform/Foundation/TextEncoding.h"

namespace {

using namespace kelvane;
using kelvane::fuzz::expect;

std::string inUTF16(TextView text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : text) (bytes += static_cast<char>(unit & 0xFF)) += static_cast<char>(unit >> 8);
  return bytes;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::bytesOf(data, size);
  const Text decoded = textOfHTMLBytes(bytes);
  expect(decoded.size() <= bytes.size(), "no encoding makes more units than there are bytes");
  const fuzz::ExactText html(decoded);
  const Text text = plainTextOfHTML(html.view());
  expect(text == plainTextOfHTML(bytes), "bytes are decoded and read");
  expect(text == plainTextOfHTML(inUTF16(decoded)), "the encoding does not matter");
  expect(text.find(u'\0') == Text::npos, "U+0000 vanishes");
  expect(html.view().size() < 4 || flattenHTML(html.view()) == text, "long text is read as it is");

  const Text escaped = htmlString(html.view());
  expect(std::ranges::all_of(escaped, [](char16_t unit) { return unit < 128; }), "what is escaped is ASCII");
  expect(escaped.find_first_of(u"<>\"\n") >= escaped.find(u"<br/>"), "nothing but line breaks is markup");
  Text ascii;
  for (const char16_t unit : html.view())
    if (unit != 0 && unit < 128 && unit != u'\r') ascii += unit;
  expect(plainTextOfHTML(u"<pre>\n" + htmlString(ascii)) == ascii, "what was escaped reads back");
  return 0;
}
