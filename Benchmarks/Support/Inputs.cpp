#include "Support/Inputs.h"

#include <random>
#include <span>

#include "Extensions/NSString-QNExtensions.h"

namespace kelvane::bench {
namespace {

constexpr TextView englishWords[] = {u"the",   u"a",       u"of",     u"to",     u"and",      u"in",    u"garden",
                                     u"is",    u"meeting", u"letter", u"street", u"possible", u"about", u"their",
                                     u"don't", u"\"yes\"", u"number", u"2026",   u"because",  u"it's"};
constexpr TextView otherWords[] = {u"für",          u"Straße", u"garçon", u"señor", u"Ελλάδα", u"Москва",
                                   u"привет",       u"東京",   u"你好",   u"naïve", u"Ærø",    u"„so“",
                                   u"\xD83D\xDE00", u"café",   u"Łódź",   u"weiß",  u"—",      u"€"};
constexpr TextView chineseWords[] = {u"人生", u"自由", u"平等的",   u"尊严", u"和",
                                     u"权利", u"他们", u"赋有理性", u"良心", u"并应"};

// The standard's own distributions differ from library to library, this engine does not.
class Words {
 public:
  std::size_t below(std::size_t count) { return myEngine() % count; }
  TextView oneOf(std::span<const TextView> words) { return words[below(words.size())]; }

 private:
  std::mt19937 myEngine{4711};
};

// Lines of words, of which `otherPercent` of a hundred are taken from the others, up to the whole length.
Text prose(std::span<const TextView> words, std::span<const TextView> others, std::size_t otherPercent,
           TextView blank) {
  Words random;
  Text text;
  text.reserve(inputUnits + 256);
  while (text.size() < inputUnits) {
    if (random.below(8) == 0) text += u"    ";
    for (std::size_t length = 4 + random.below(16); length > 0; --length) {
      text += random.oneOf(random.below(100) < otherPercent ? others : words);
      if (length > 1 || random.below(10) == 0) text += blank;
    }
    text += u'\n';
  }
  text.resize(inputUnits - 1);
  // A cut pair would be no valid text.
  if (text.back() >= 0xD800 && text.back() <= 0xDBFF) text.back() = u'x';
  text += u'\n';
  return text;
}

Text table() {
  constexpr std::size_t columns = 8;
  Words random;
  Text text = u"name\tstreet\ttown\tcountry\tage\theight\tcolour\tremark\n";
  while (text.size() < inputUnits) {
    for (std::size_t column = 0; column < columns; ++column) {
      if (column > 0) text += u'\t';
      if (column > 0 && random.below(10) == 0) continue;
      text += random.oneOf(englishWords);
      text += random.oneOf(random.below(5) == 0 ? std::span<const TextView>(otherWords) : englishWords);
    }
    text += u'\n';
  }
  return text;
}

}  // namespace

const Text& mixedText() {
  static const Text text = prose(englishWords, otherWords, 20, u" ");
  return text;
}

const Text& asciiText() {
  static const Text text = prose(englishWords, {}, 0, u" ");
  return text;
}

const Text& chineseText() {
  static const Text text = prose(chineseWords, {}, 0, u"，");
  return text;
}

const std::vector<TextView>& mixedLines() {
  static const std::vector<TextView> lines = componentsSeparatedByLineSeparators(mixedText());
  return lines;
}

const Text& tableText() {
  static const Text text = table();
  return text;
}

}  // namespace kelvane::bench
