#include <stdexcept>

#include "Extensions/NSAttributedString-QNExtensions.h"
#include "Extensions/NSString-HTML.h"
#include "Fuzz.h"
#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/TextEncoding.h"

namespace {

using namespace kelvane;
using kelvane::fuzz::expect;

// Reads from left to right, and skips white space before each thing that it looks for.
class Scanner {
 public:
  explicit Scanner(TextView text) : myText(text) {}

  bool isAtEnd() const { return skipped() == myText.size(); }
  // Empty when there is nothing.
  TextView upTo(char16_t unit) {
    const std::size_t start = skipped();
    const std::size_t end = std::min(myText.find(unit, start), myText.size());
    if (end > start) myPlace = end;
    return myText.substr(start, end - start);
  }
  TextView all(char16_t unit) {
    const std::size_t start = skipped();
    std::size_t end = start;
    while (end < myText.size() && myText[end] == unit) ++end;
    if (end > start) myPlace = end;
    return myText.substr(start, end - start);
  }
  bool one(char16_t unit) {
    if (isAtEnd() || myText[skipped()] != unit) return false;
    myPlace = skipped() + 1;
    return true;
  }

 private:
  std::size_t skipped() const { return std::min(myText.find_first_not_of(u' ', myPlace), myText.size()); }

  TextView myText;
  std::size_t myPlace = 0;
};

void readRun(TextView run, Text& out) {
  constexpr std::pair<char16_t, TextView> keys[] = {{u'"', u"&quot"}, {u'&', u"&amp"}, {u'<', u"&lt"}, {u'>', u"&gt"}};
  TextView scanned;
  for (Scanner scanner(run); !scanner.isAtEnd();) {
    if (const TextView next = scanner.upTo(u'&'); !next.empty()) scanned = next;
    out += scanned;
    for (const auto& [key, name] : keys)
      if (!scanner.isAtEnd() && scanner.one(key)) out += name;
  }
}

// The text that the subset's rules give, step by step.
Text plainlyRead(TextView html) {
  const NSCharacterSet& blanks = NSCharacterSet::whitespaceAndNewlineCharacterSet();
  Text words;
  for (const char16_t unit : html) {
    if (!blanks.characterIsMember(unit))
      words += unit;
    else if (!words.empty() && words.back() != u' ')
      words += u' ';
  }
  if (!words.empty() && words.back() != u' ') words += u' ';
  Text out;
  for (Scanner scanner(words); !scanner.isAtEnd();) {
    if (const TextView run = scanner.upTo(u'<'); !run.empty()) readRun(run, out);
    if (scanner.isAtEnd()) break;
    scanner.all(u'<');
    const TextView name = scanner.upTo(u'>');
    scanner.all(u'>');
    if (name == u"p") out += u"\n\n";
    if (name == u"br") out += u"\n";
  }
  return out;
}

void checkRTF(const NSAttributedString& text) {
  int depth = 0;
  char before = 0;
  for (const std::uint8_t byte : rtf(text)) {
    expect(byte < 128 && byte != 0, "RTF is ASCII");
    if (before != '\\') depth += byte == '{' ? 1 : byte == '}' ? -1 : 0;
    before = before == '\\' ? char{0} : static_cast<char>(byte);
    expect(depth >= 0, "groups are opened before they are closed");
  }
  expect(depth == 0, "groups are closed");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  NSAttributedStringExtensions::didLoad();
  const Text html = textFromFileSystem(fuzz::bytesOf(data, size));
  const NSAttributedString first = attributedStringWithHTML(fuzz::ExactText(html).view());
  expect(first.string() == plainlyRead(html), "read as in the plain way");
  checkRTF(first);
  // No links or colours are read, so all that ends was written.
  const Text second = htmlString(attributedStringWithHTML(htmlString(first)));
  const Text third = htmlString(attributedStringWithHTML(second));
  const bool isPlain =
      first.string().find_first_of(u"&<>\"") == Text::npos && utf8(first.string()).size() == first.length();
  expect(!isPlain || htmlString(attributedStringWithHTML(third)) == third, "from the third pass on nothing changes");
  return 0;
}
