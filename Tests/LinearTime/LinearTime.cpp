// What reads text takes time proportional to it, also where the text was made to prevent that. Under callgrind, this
// runs each row on inputs of 1, 2, 4 and 8 times a size and has the instructions of each run counted apart;
// linear_time.py starts it and judges the growth. Counts are the same in every run, unlike seconds.
//
// To add a row: a name, what makes the input, what is done with it.

#include <valgrind/callgrind.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "Extensions/NSAttributedString-QNExtensions.h"
#include "Extensions/NSData-QNExtensions.h"
#include "Extensions/NSString-QNExtensions.h"
#include "Extensions/NSTextStorage-QNExtensions.h"
#include "Platform/Foundation/ABAddressBook.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/HTMLPlainText.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/PropertyList.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextNumbers.h"

namespace {

using namespace kelvane;

constexpr std::size_t smallestSize = 8192;

// --- Inputs, all about as long as the given size

template <class String>
String repeated(const String& unit, std::size_t size) {
  String result;
  while (result.size() < size) result += unit;
  return result;
}

auto text(Text head, Text unit, Text tail) {
  return [=](std::size_t size) { return head + repeated(unit, size) + tail; };
}
auto text(Text unit) { return text(u"", std::move(unit), u""); }

auto bytes(std::string head, std::string unit, std::string tail) {
  return [=](std::size_t size) { return head + repeated(unit, size) + tail; };
}
auto bytes(std::string unit) { return bytes("", std::move(unit), ""); }

auto list(const std::string& head, std::string unit, const std::string& tail) {
  return bytes("<plist>" + head, std::move(unit), tail + "</plist>");
}

std::string nest(const std::string& opening, std::size_t depth, const std::string& closing) {
  return repeated(opening, depth * opening.size()) + repeated(closing, depth * closing.size());
}

// All sizes go beyond the depth that is read.
auto tooDeep(std::string opening, std::string closing) {
  return [=](std::size_t size) { return "<plist>" + nest(opening, size / 10, closing) + "</plist>"; };
}

auto distinctKeys() {
  return [](std::size_t size) {
    std::string keys;
    for (int key = 0; keys.size() < size; ++key) keys += "<key>" + std::to_string(key) + "</key><true/>";
    return "<plist><dict>" + keys + "</dict></plist>";
  };
}

auto inUTF16(const std::string& unit) {
  return [=](std::size_t size) {
    std::string result = "\xFF\xFE";
    for (const char byte : "<plist><string>" + repeated(unit, size / 2) + "</string></plist>") (result += byte) += '\0';
    return result;
  };
}

// A table with two wide rows: in each, the names or cells repeated.
auto wide(Text name, Text cell) {
  return [=](std::size_t size) { return repeated(name, size / 2) + u'\n' + repeated(cell, size / 2); };
}

auto distinctColumns() {
  return [](std::size_t size) {
    Text names;
    Text cells;
    for (int column = 0; names.size() + cells.size() < size; ++column) {
      names += shortestDecimal(static_cast<double>(column)) + u'\t';
      cells += u"1\t";
    }
    return names + u'\n' + cells;
  };
}

// Column names of eight units which all have the same hash in GNU's standard library: of its two rounds, the second
// takes back what the first gave.
auto columnsOfOneHash() {
  return [](std::size_t size) {
    constexpr std::uint64_t factor = 0xC6A4A7935BD1E995U;
    std::uint64_t inverse = 1;
    for (int step = 0; step < 6; ++step) inverse *= 2 - factor * inverse;
    const auto mix = [](std::uint64_t number) { return number ^ (number >> 47U); };
    Text names;
    for (std::uint64_t first = 0x0041004100410041U; names.size() < size; first += 0x9E3779B97F4A7C15U) {
      const std::uint64_t hash = (0xC70F6907U ^ (16 * factor) ^ (mix(first * factor) * factor)) * factor;
      const std::uint64_t halves[] = {first, mix(hash * inverse) * inverse};
      Text name(8, u' ');
      std::memcpy(name.data(), halves, sizeof halves);
      if (name.find_first_of(u"\t\n\r\x85\x2028\x2029") == Text::npos) names += name + u'\t';
    }
    return names + u"\n1";
  };
}

// A text and a needle of half its length.
struct Haystack {
  Text text;
  Text needle;
};
auto haystack(Text unit, Text needleHead, Text needleUnit, Text needleTail) {
  return [=](std::size_t size) {
    return Haystack{repeated(unit, size), needleHead + repeated(needleUnit, size / 2) + needleTail};
  };
}

// A font of its own for every eight code units.
NSTextStorage styledRuns(std::size_t size) {
  NSTextStorage text;
  for (std::size_t i = 8; i <= size; i += 8) {
    const NSFont font = NSFont::fontWithFamily(u"No Such", 0, 5, static_cast<double>(i));
    text.appendString(u"8 units ", NSDictionary::dictionaryWithEntries({{NSFontAttributeName, box(font)}}));
  }
  return text;
}

// --- What is done with them

template <NSStringCompareOptions options>
void search(const Haystack& input) {
  rangeOfString(input.text, input.needle, options);
}

// Every match, and so one search after the other, in the text that the needle was made for.
void replaceNeedle(const Haystack& input) { replaceAllOccurencesOfString(input.text, input.needle, u"x"); }

template <NSStringCompareOptions options>
void replaceKeys(TextView text) {
  static const NSDictionary replacements(
      NSDictionary::Entries{{u"a", box(u"bb")}, {u"aab", box(u"a")}, {u"bb", box(u"")}, {u"\xDF", box(u"\x1E9E")}});
  replaceAllTextFromDictionary(text, replacements, options);
}

// What has no other effect is not optimised away.
[[maybe_unused]] volatile std::size_t kept;

void readTable(TextView text) {
  const TSVTable table = arrayFromTSV(text);
  std::size_t cells = 0;
  for (const TSVRow row : table)
    for (const auto& [name, cell] : row) cells += name.size() + cell.size();
  kept = cells;
}

const auto readNumbers = [](TextView t) { integerValue(t), doubleValue(t), floatValue(t), boolValue(t); };
const auto readBase64 = [](TextView t) { NSDataExtensions::decodeDataFromBase64(t); };
const auto readGeometry = [](TextView t) { NSPointFromString(t), NSRectFromString(t); };
const auto readPage = [](TextView html) { flattenHTML(html); };
const auto readLines = [](TextView t) { componentsSeparatedByLineSeparators(t), numberOfLines(t); };
const auto readURL = [](TextView t) {
  if (const Ref<NSURL> url = NSURL::URLWithString(t)) url->path();
};
const auto readAndWriteList = [](std::string_view bytes) {
  const PropertyList list = readPropertyList(bytes);
  if (list.root) writePropertyList(*list.root);
};
const auto readAndWriteStyles = [](TextView html) {
  rtf(NSAttributedString(attributedStringWithHTML(htmlString(attributedStringWithHTML(html)))));
};
const auto scaleFonts = [](const NSTextStorage& input) {
  NSTextStorage text(input);
  scaleAttributedStringUsingFactor(text, 1.5);
  setFontSize(text, 12);
};

// Shows that the check can fail.
void compareAllPairs(TextView text) {
  std::size_t pairs = 0;
  for (const char16_t a : text)
    for (const char16_t b : text.substr(0, text.size() / 64)) pairs += a == b;
  kept = pairs;
}

// --- Rows

struct Row {
  template <class Make, class Operation>
  Row(const char* theName, Make make, Operation operation)
      : name(theName),
        prepare([=](std::size_t size) { return [input = make(size), operation] { operation(input); }; }) {}

  const char* name;
  std::function<std::function<void()>(std::size_t)> prepare;
};

const Row rows[] = {
    {"control: quadratic", text(u"ab"), compareAllPairs},

    {"UTF-8 read: mixed", bytes("a\xC3\xA9\xE4\xB8\x96\xF0\x9F\x98\x80"), textFromUTF8},
    {"UTF-8 read: cut short", bytes("\xF0\x90\x80"), textFromUTF8},
    {"UTF-8 write: mixed", text(u"a\xE9\x4E16\xD83D\xDE00"), utf8},
    {"UTF-8 write: unpaired surrogates", text(u"\xDC00\xD800"), utf8},
    {"file names: stray bytes", bytes("\xFF\xC3"),
     [](std::string_view b) { fileSystemRepresentation(textFromFileSystem(b)); }},

    {"lines: only CR", text(u"\r"), readLines},
    {"lines: only CR LF", text(u"\r\n"), readLines},
    {"comments: lines of blanks", text(u"    \n"), removeCommentedLines},

    {"trim: blanks only", text(u" \t"), [](const Text& t) { trim(t); }},
    {"white space: alternating", text(u"a "), stringByRemovingWhitespace},
    {"trailing 0: zeros only", text(u"0"), normalizeTrailing0},
    {"trailing 0: zeros and points", text(u"1", u"0.", u"0"), normalizeTrailing0},
    {"escapeQuots: only", text(u"\"'"), escapeQuots},
    {"removeQuots: only", text(u"'\""), removeQuots},

    {"table: usual", text(u"a\tb\tc\n", u"1\t23\t\n", u""), readTable},
    {"table: only tabs", text(u"\t"), readTable},
    {"table: only line ends", text(u"a\n", u"\r\n", u""), readTable},
    {"table: one name for all columns", wide(u"a\t", u"1\t"), readTable},
    {"table: one name, one late cell", wide(u"a\t", u"\t"), readTable},
    {"table: names of one hash", columnsOfOneHash(), readTable},
    {"table: distinct names", distinctColumns(), readTable},

    {"search: half-length needle", haystack(u"a", u"", u"a", u"b"), search<0>},
    {"search: periodic", haystack(u"aab", u"", u"aab", u"c"), search<0>},
    {"search: backwards", haystack(u"a", u"b", u"a", u""), search<NSBackwardsSearch>},
    {"search: backwards, periodic", haystack(u"baa", u"c", u"baa", u""), search<NSBackwardsSearch>},
    {"search: case-blind", haystack(u"aA\xDF", u"", u"Aa\x1E9E", u"b"), search<NSCaseInsensitiveSearch>},
    {"search: case-blind, backwards", haystack(u"a", u"B", u"A", u""),
     search<NSCaseInsensitiveSearch | NSBackwardsSearch>},
    {"search: case-blind, surrogates", haystack(u"\xD801\xDC00", u"", u"\xD801\xDC28", u"\xD801"),
     search<NSCaseInsensitiveSearch>},
    {"tokens: late", text(u"", u"=", u"=>"),
     [](const Text& t) { substringToToken(t, u"=>"), substringFromToken(t, u"=>"); }},

    {"replace: every unit", text(u"a"), [](TextView t) { replaceAllOccurencesOfString(t, u"a", u"bb"); }},
    {"replace: to nothing", text(u"ab"), [](TextView t) { replaceAllOccurencesOfString(t, u"a", u""); }},
    {"replace: almost-matches", text(u"aaaaaaab"),
     [](TextView t) { replaceAllOccurencesOfString(t, u"aaaaaaaac", u"x"); }},
    {"replace: half-length needle", haystack(u"a", u"", u"a", u"b"), replaceNeedle},
    {"replace: many long matches", text(u"", u"aaaaaaaaaaaaaaab", u""),
     [](TextView t) { replaceAllOccurencesOfString(t, u"aaaaaaaaaaaaaaab", u"x"); }},
    {"replace: dictionary", text(u"aab\xDF"), replaceKeys<0>},
    {"replace: dictionary, case-blind", text(u"aAB\x1E9E"), replaceKeys<NSCaseInsensitiveSearch>},
    {"replace: dictionary, backwards", text(u"aab\xDF"), replaceKeys<NSBackwardsSearch>},

    {"numbers: zeros", text(u"-", u"0", u""), readNumbers},
    {"numbers: blanks only", text(u" \x2003"), readNumbers},
    {"numbers: late digit", text(u"0.", u"0", u"1"), readNumbers},
    {"numbers: long exponent", text(u"1e", u"0", u"1"), readNumbers},
    {"numbers: halfway", text(u"9007199254740993.", u"0", u"1"), readNumbers},
    {"geometry: digits", text(u"{", u"1", u", 2}"), readGeometry},
    {"geometry: blanks", text(u"{{1,", u" ", u"2}}"), readGeometry},

    {"fonts: a run for each size", styledRuns, scaleFonts},

    {"format: signs only", text(u"%"), formatWithoutArguments},
    {"format: signs and flags", text(u"%-5.2"), formatWithoutArguments},

    {"card: folded", bytes("BEGIN:VCARD\nEMAIL:a", "\n b", ""), readVCard},
    {"card: soft line ends", bytes("BEGIN:VCARD\nEMAIL;QUOTED-PRINTABLE:", "=61=\n", ""), readVCard},
    {"card: cards within", bytes("BEGIN:VCARD\n"), readVCard},

    {"HTML: escaping", text(u"a&\xE9"), [](const Text& t) { htmlString(t), encodeLegally(t); }},
    {"HTML: paragraphs", text(u"<p>a &amp; <b>b</b>\n"), readPage},
    {"HTML: only <", text(u"<"), readPage},
    {"HTML: only &", text(u"&"), readPage},
    {"HTML: cut references", text(u"&notin&#1"), readPage},
    {"HTML: nested", text(u"<div><ul><ol><li><b>"), readPage},
    {"HTML: crossed lists", text(u"<ul><ol></ul>"), readPage},
    {"HTML: ends of lists", text(u"<ul>", u"</ol>", u""), readPage},
    {"HTML: unended comments", text(u"<!--"), readPage},
    {"HTML: ends of no comment", text(u"<!--", u"->", u""), readPage},
    {"HTML: unended tags", text(u"<a b='"), readPage},
    {"HTML: scripts in scripts", text(u"<script><!--<script>"), readPage},
    {"HTML: almost ended title", text(u"<title>", u"</titl", u""), readPage},
    {"HTML: unended CDATA", text(u"<svg><![CDATA["), readPage},
    {"HTML: declarations", bytes("<meta charset"), [](std::string_view b) { plainTextOfHTML(b); }},
    {"styles: usual", text(u"<b>a</b> <i>b<u>c</i></u><br>"), readAndWriteStyles},
    {"styles: only <", text(u"<"), readAndWriteStyles},
    {"styles: only &", text(u"&"), [](const Text& t) { attributedStringWithHTML(t); }},

    {"path: slashes only", text(u"/"), stringByStandardizingPath},
    {"path: there and back", text(u"a/../"), stringByStandardizingPath},
    {"path: down, then up", [](std::size_t n) { return repeated(Text(u"a/"), n / 2) + repeated(Text(u"../"), n / 2); },
     stringByStandardizingPath},
    {"URL: escapes", text(u"file:", u"%2F", u""), readURL},
    {"URL: marks", text(u"s://", u"@:/?#", u""), readURL},

    {"Base64: lines of 70", text(Text(70, u'A') + u"\n"), readBase64},
    {"Base64: halves of pairs and blanks", text(u"\xD800 \xDC00  "), readBase64},
    {"Base64: padding and blanks", text(u"QQ", u" ", u"=="), readBase64},

    {"list: references", list("<string>", "&amp;&#x41;", "</string>"), readAndWriteList},
    {"list: long reference", list("<string>&#x", "0", "41;</string>"), readAndWriteList},
    {"list: unended references", list("<string>", "&", "</string>"), readAndWriteList},
    {"list: late fault", list("<string>", "\n", "&x;</string>"), readAndWriteList},
    {"list: CR", list("<string>", "\r", "</string>"), readAndWriteList},
    {"list: almost forbidden", list("<string>", "\xEF\xBF", "</string>"), readAndWriteList},
    {"list: CDATA", list("<string>", "<![CDATA[]]]>]", "</string>"), readAndWriteList},
    {"list: comments", list("<string>", "a<!-- - -->", "</string>"), readAndWriteList},
    {"list: unended comment", bytes("<plist><!--", "-", ""), readAndWriteList},
    {"list: declaration of blanks", bytes("<?xml", " ", "encoding='UTF-8'?><plist><true/></plist>"), readAndWriteList},
    {"list: quotes in DOCTYPE", bytes("<!DOCTYPE plist ", "\"'\"", "><plist><true/></plist>"), readAndWriteList},
    {"list: attributes", list("<true ", "a='b' ", "/>"), readAndWriteList},
    {"list: one key", list("<dict>", "<key>a</key><true/>", "</dict>"), readAndWriteList},
    {"list: distinct keys", distinctKeys(), readAndWriteList},
    {"list: arrays, too deep", tooDeep("<array>", "</array>"), readAndWriteList},
    {"list: unended arrays", bytes("<plist>", "<array>", ""), readAndWriteList},
    {"list: nests", list("<array>", nest("<array>", 40, "</array>"), "</array>"), readAndWriteList},
    {"list: data", list("<data>", "AAAA", "</data>"), readAndWriteList},
    {"list: blanks in data", list("<data>", " \n", "</data>"), readAndWriteList},
    {"list: real", list("<real>0.", "0", "1</real>"), readAndWriteList},
    {"list: UTF-16", inUTF16("ab&amp;"), readAndWriteList},
    {"list: ISO Latin-1", bytes("<?xml encoding='ISO-8859-1'?><plist><string>", "\xE9", "</string></plist>"),
     readAndWriteList},
};

}  // namespace

// With an argument, only the rows whose names begin with it.
int main(int count, char** arguments) {
  const std::string_view beginning = count > 1 ? arguments[1] : "";
  for (const Row& row : rows) {
    if (!std::string_view(row.name).starts_with(beginning)) continue;
    // What is made on first use is no part of the growth.
    row.prepare(64)();
    for (std::size_t times = 1; times <= 8; times *= 2) {
      const std::function<void()> work = row.prepare(times * smallestSize);
      const std::string label = std::string(row.name) + '*' + std::to_string(times);
      CALLGRIND_ZERO_STATS;
      work();
      CALLGRIND_DUMP_STATS_AT(label.c_str());
    }
    std::printf("%s\n", row.name);
  }
}
