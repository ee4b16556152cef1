#include <unistd.h>

#include <bit>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/PropertyList.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using Objects = std::vector<Ref<NSObject>>;

Ref<NSArray> array(Objects elements) { return std::make_shared<NSArray>(std::move(elements)); }
Ref<NSDictionary> dictionary(NSDictionary::Entries entries) {
  return std::make_shared<NSDictionary>(std::move(entries));
}
Ref<NSDate> date(double since1970) {
  return std::make_shared<NSDate>(NSDate::dateWithTimeIntervalSince1970(since1970));
}
Ref<NSData> data(std::vector<std::uint8_t> bytes) { return std::make_shared<NSData>(std::move(bytes)); }

std::string plist(std::string_view body) { return "<plist version=\"1.0\">" + std::string(body) + "</plist>"; }

// The class of an object, and what distinguishes numbers of equal value.
std::string kind(const NSObject* object) {
  if (!object) return "nil";
  if (const auto* number = as<NSNumber>(object)) return "NSNumber" + std::to_string(static_cast<int>(number->kind()));
  return utf8(object->className());
}

std::string written(const NSObject& object) {
  const PropertyListBytes result = writePropertyList(object);
  EXPECT_EQ(result.error, u""sv);
  return result.bytes;
}

void expectSame(const Ref<NSObject>& actual, const Ref<NSObject>& wanted) {
  EXPECT_TRUE(isEqual(actual, wanted)) << utf8(description(actual)) << "\nand not\n" << utf8(description(wanted));
  EXPECT_EQ(kind(actual.get()), kind(wanted.get()));
}

// Each refusal names what is wrong and where.
void expectRefused(const PropertyList& list, std::size_t line, std::string_view fragment) {
  EXPECT_EQ(list.root, nullptr);
  EXPECT_EQ(list.line, line);
  const std::string error = utf8(list.error);
  EXPECT_NE(error.find(fragment), std::string::npos) << error;
  EXPECT_TRUE(error.ends_with('.') && error.size() < 250) << error;
}

TEST(PropertyListReading, EveryKind) {
  const struct {
    const char* name;
    std::string_view body;
    Ref<NSObject> object;
  } rows[] = {
      {"empty containers", "<dict><key/><array><dict> <!-- none --> </dict></array></dict>",
       dictionary({{u"", array({dictionary({})})}})},
      {"the last of two keys", "<dict><key>b</key><true/><key>a</key><true/><key>b</key><string>x</string></dict>",
       dictionary({{u"a", box(true)}, {u"b", box(u"x")}})},
      {"empty text", "<string/>", box(u"")},
      {"white space in text", "<string> \n\ta  </string>", box(u" \n\ta  ")},
      {"text around comments", "<string>a <!-- & --> <!-- --> b</string>", box(u"a   b")},
      {"text around CDATA", "<string> <![CDATA[<&amp;]]> &lt;]]></string>", box(u" <&amp; <]]>")},
      {"line ends", "<string>a\r\nb\rc<![CDATA[\r\n]]>&#13;&#xD;</string>", box(u"a\nb\nc\n\r\r")},
      {"references", "<string>&amp;&lt;&gt;&quot;&apos;&#65;&#x1F600;&#xfffd;</string>",
       box(u"&<>\"'A\U0001F600\xFFFD")},
      {"a reference in a key", "<dict><key>&amp;amp;</key><false> </false></dict>",
       dictionary({{u"&amp;", box(false)}})},
      {"ill-formed UTF-8", "<string>\xE2\x82|\xFF\xED\xA0\x80</string>", box(u"\xFFFD|\xFFFD\xFFFD\xFFFD\xFFFD")},
      {"integer", "<integer>\n +0042 </integer>", box(42)},
      {"greatest signed", "<integer>9223372036854775807</integer>", box(std::numeric_limits<std::int64_t>::max())},
      {"greatest", "<integer>0XFFFFFFFFFFFFFFFF</integer>", box(std::numeric_limits<std::uint64_t>::max())},
      {"hexadecimal", "<integer>-0xFf</integer>", box(-255)},
      {"reals", "<array><real>.5</real><real>-5.</real><real> +1.5e3 </real><real>NaN</real></array>",
       array({box(0.5), box(-5.0), box(1500.0), box(std::nan(""))})},
      {"infinities", "<array><real>+infinity</real><real>-INF</real><real>inf</real></array>",
       array({box(infinity), box(-infinity), box(infinity)})},
      {"first date", "<date>0001-01-01T00:00:00Z</date>", date(-62135596800)},
      {"last date", "<date>9999-12-31T23:59:59Z</date>", date(253402300799)},
      {"data", "<array><data/><data>\n\tAAEC\r\n\t/w = =\n</data><data>+/8=</data></array>",
       array({data({}), data({0, 1, 2, 255}), data({0xFB, 0xFF})})},
      {"attributes", "<array id='&amp;'><true a=\"b\"/></array>", array({box(true)})},
      {"text beyond XML",
       "<array><string utf16='AGEAAQ=='>a&#xFFFD;</string><string utf16='AGEAAQ=='>edited&#xFFFD;</string>"
       "<string utf16='AGEA'>a</string></array>",
       array({box(u"a\x01"), box(u"edited\xFFFD"), box(u"a")})},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const PropertyList list = readPropertyList(plist(row.body));
    EXPECT_EQ(list.error, u""sv);
    EXPECT_EQ(list.line, 0u);
    expectSame(list.root, row.object);
  }
}

std::string utf16(TextView text, bool bigEndian) {
  std::string bytes;
  for (const char16_t unit : text) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

TEST(PropertyListReading, Encodings) {
  const Text text = u"<?xml version='1.0' encoding='UTF-16'?><plist><string>é\U0001F600</string></plist>";
  const std::string latin = "<?xml version=\"1.0\" encoding = 'iso-8859-1'?>" + plist("<string>\xE9</string>");
  const struct {
    const char* name;
    std::string bytes;
    TextView wanted;
  } rows[] = {
      {"UTF-8", plist("<string>\xC3\xA9</string>"), u"é"},
      {"UTF-8 with mark", "\xEF\xBB\xBF<?xml version='1.0'?>" + plist("<string>\xC3\xA9</string>"), u"é"},
      {"UTF-16 little", "\xFF\xFE" + utf16(text, false), u"é\U0001F600"},
      {"UTF-16 big", "\xFE\xFF" + utf16(text, true), u"é\U0001F600"},
      {"UTF-16 little without mark", utf16(text, false), u"é\U0001F600"},
      {"UTF-16 big without mark", utf16(text, true), u"é\U0001F600"},
      {"UTF-16 unpaired", utf16(u"<plist><string>\xD800|</string></plist>", true), u"\xFFFD|"},
      {"Latin-1", latin, u"é"},
      {"declared UTF-8", "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n" + plist("<string>\xE9</string>"), u"\xFFFD"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const PropertyList list = readPropertyList(row.bytes);
    EXPECT_EQ(list.error, u""sv);
    expectSame(list.root, box(row.wanted));
  }
  expectRefused(readPropertyList("<?xml version='1.0' encoding='EBCDIC'?>"s + plist("<true/>")), 1, "EBCDIC");
}

TEST(PropertyListReading, RefusesBodies) {
  const struct {
    std::string_view body;  // begins in line 1
    std::size_t line;
    const char* fragment;
  } rows[] = {
      {"", 1, "no value"},
      {"<true/>\n<true/>", 2, "more than one value"},
      {"\n\n<set/>", 3, "<set> is no element"},
      {"<array>\n<true/>\n\n x </array>", 4, "\"x\" stands outside"},
      {"<array>\n&#32;</array>", 2, "stands outside"},
      {"<dict>\n<key>a</key>\n<key>b</key><true/></dict>", 2, "The key \"a\" has no value"},
      {"<dict><key>a</key><true/>\n<array/></dict>", 2, "<array> stands in a <dict> without a <key>"},
      {"<dict><key><true/></key></dict>", 1, "<true> stands within <key>"},
      {"<true>\nx</true>", 1, "<true> is not empty"},
      {"<string>\n\na & b</string>", 3, "begins no reference"},
      {"<array><true a='&x;'/></array>", 1, "&x;"},
      {"<string>\n\0</string>"sv, 2, "U+0000"},
      {"\n<array></dict>", 2, "malformed"},
      {"<array><!DOCTYPE x></array>", 1, "DOCTYPE"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.body);
    expectRefused(readPropertyList(plist(row.body)), row.line, row.fragment);
  }
  const auto each = [](std::string_view element, std::string_view fragment, std::string_view values) {
    for (std::size_t end; !values.empty(); values.remove_prefix(std::min(end + 1, values.size()))) {
      end = std::min(values.find('|'), values.size());
      const std::string value(values.substr(0, end));
      SCOPED_TRACE(value);
      const std::string name(element);
      expectRefused(readPropertyList(plist("<" + name + ">" + value + "</" + name + ">")), 1,
                    fragment.empty() ? value : fragment);
    }
  };
  each("string", "", "&lol;|&;|&#0;|&#x1F;|&#xD83D;|&#xDE00;|&#xFFFE;|&#x110000;|&#99999999999;|&#-65;");
  each("integer", "which is no integer of 64 bits",
       "1 2|1.0|+-1|0x|0xG|18446744073709551616|-9223372036854775809|-0x8000000000000001");
  each("real", "number that a double", "1,5|0x1p3|+-1|nan(1)|-nan|1e999");
  each("date", "date",
       "2001-02-29T00:00:00Z|1900-02-29T00:00:00Z|2001-13-01T00:00:00Z|0000-01-01T00:00:00Z|2001-01-01T24:00:00Z|"
       "2001-01-01T00:60:00Z|2001-01-01T00:00:60Z|2001-01-01T00:00:00|2001-01-01 00:00:00Z| 2001-01-01T00:00:00Z|"
       "+001-01-01T00:00:00Z");
  each("data", "base64", "A|AA=|AAA|A===|AAAA====|AA==AAAA|AA== AAAA|AB==|AAB=|A=AA|AA-_|AAA\xC3\xA9");
}

TEST(PropertyListReading, RefusesDocuments) {
  const std::string good = plist("<string>a</string>");
  const struct {
    const char* name;
    std::string bytes;
    std::size_t line;
    const char* fragment;
  } rows[] = {
      {"nothing", "", 1, "no <plist>"},
      {"other root", "\n<html/>", 2, "<html> and not <plist>"},
      {"long root", "<" + std::string(100000, 'a') + "/>", 1, "aaa..."},
      {"text before", "x" + good, 1, "\"x\" stands outside"},
      {"attribute of the root", "<plist version='&v;'><true/></plist>", 1, "&v;"},
      {"DOCTYPE behind", good + "<!DOCTYPE plist>", 1, "DOCTYPE"},
      {"internal subset", "\n<!DOCTYPE plist []>" + good, 2, "internal subset"},
      {"billion laughs",
       "<!DOCTYPE plist [<!ENTITY a 'ha'><!ENTITY b '&a;&a;&a;&a;'><!ENTITY c '&b;&b;&b;&b;'>]>" +
           plist("<string>&c;</string>"),
       1, "internal subset"},
      {"subset behind an identifier", "<!DOCTYPE plist SYSTEM \"a'\" [ ]>" + good, 1, "internal subset"},
      {"NUL behind", good + '\0', 1, "U+0000"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    expectRefused(readPropertyList(row.bytes), row.line, row.fragment);
  }
  // What a DOCTYPE names is not looked at.
  const auto list =
      readPropertyList("<!DOCTYPE plist SYSTEM \"file:///nowhere/[x]\"><?pi [?>" + good + "<!-- end -->\n");
  expectSame(list.root, box(u"a"));
}

std::string repeated(std::string_view piece, std::size_t times) {
  std::string all;
  all.reserve(piece.size() * times);
  while (times-- > 0) all += piece;
  return all;
}

TEST(PropertyListReading, Limits) {
  const auto nested = [](std::size_t depth) { return plist(repeated("<array>", depth) + repeated("</array>", depth)); };
  EXPECT_TRUE(readPropertyList(nested(maximumPropertyListDepth)).root);
  for (const std::size_t depth : {maximumPropertyListDepth + 1, std::size_t{1000000}})
    expectRefused(readPropertyList(nested(depth)), 1, "deeper than 512");
  expectRefused(readPropertyList(plist("<string>" + std::string(100000000, 'a') + "</string>")), 0,
                "larger than 67108864");
}
TEST(PropertyListWriting, Layout) {
  const auto root = dictionary({{u"b<", array({box(true), box(-1), box(0.1), array({})})},
                                {u"a", box(u"x\r\n&<>\"'é\U0001F600")},
                                {u"c", data({0, 1, 2, 255})},
                                {u"d", date(-0.5)},
                                {u"e", dictionary({})},
                                {u"f", data({})}});
  const std::string bytes = written(*root);
  EXPECT_TRUE(bytes.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n"));
  EXPECT_EQ(
      bytes.substr(bytes.find("<plist")),
      "<plist version=\"1.0\">\n<dict>\n\t<key>a</key>\n\t<string>x&#13;\n&amp;&lt;&gt;\"'\xC3\xA9\xF0\x9F\x98\x80"
      "</string>\n\t<key>b&lt;</key>\n\t<array>\n\t\t<true/>\n\t\t<integer>-1</integer>\n\t\t<real>0.1</real>\n"
      "\t\t<array/>\n\t</array>\n\t<key>c</key>\n\t<data>\n\tAAEC/w==\n\t</data>\n\t<key>d</key>\n"
      "\t<date>1969-12-31T23:59:59Z</date>\n\t<key>e</key>\n\t<dict/>\n\t<key>f</key>\n\t<data></data>\n</dict>\n"
      "</plist>\n");
}

// What the random trees below seldom hold.
TEST(PropertyListWriting, ReadsBackAsWritten) {
  const Objects objects = {box(5e-324),
                           box(1.7976931348623157e308),
                           box(infinity),
                           box(-infinity),
                           box(std::nan("")),
                           date(-62135596800),
                           date(253402300799),
                           box(u"]]>"),
                           box(u" \t\n\r "),
                           box(u"\x7F\x85\xFFFD\xFEFF"),
                           box(Text(10000, u'\r')),
                           box(Text(10001, u'\xE9')),
                           box(Text(u"\0<\v\xDE00\xD83D\xFFFE\xFFFD&", 8)),
                           box(Text(10000, u'a') + u'\xD800')};
  for (const Ref<NSObject>& object : objects) expectSame(readPropertyList(written(*object)).root, object);
  // Kinds that XML does not tell apart keep their value.
  expectSame(readPropertyList(written(*box(0.1f))).root, box(double{0.1f}));
  expectSame(readPropertyList(written(*date(0.75))).root, date(0));
  EXPECT_TRUE(std::signbit(as<NSNumber>(readPropertyList(written(*box(-0.0))).root)->doubleValue()));
}

TEST(PropertyListWriting, Refuses) {
  const auto people = [](Ref<NSObject> object) {
    return dictionary({{u"people", array({box(1), dictionary({{u"name", std::move(object)}})})}});
  };
  const struct {
    Ref<NSObject> root;
    const char* error;
  } rows[] = {
      {NSNull::null(), "The object at the root is of class NSNull, which a property list cannot hold."},
      {people(box(CGPoint{1, 2})),
       "The object at people[1].name is of class NSValue, which a property list cannot hold."},
      {dictionary({{u"a\x1F", box(1)}}), "The key at a\xEF\xBF\xBD holds U+001F, which XML cannot hold."},
      {people(date(-62135596801)), "The date at people[1].name is outside the years 1 to 9999."},
      {date(253402300800), "The date at the root is outside the years 1 to 9999."},
      {box(Text(maximumPropertyListSize, u'a')), "The property list is larger than 67108864 bytes."},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.error);
    const PropertyListBytes result = writePropertyList(*row.root);
    EXPECT_EQ(utf8(result.error), row.error);
    EXPECT_EQ(result.bytes, "");
  }
}

TEST(PropertyListWriting, Limits) {
  Ref<NSObject> nested = array({});
  for (std::size_t depth = 1; depth < maximumPropertyListDepth; ++depth) nested = array({nested});
  expectSame(readPropertyList(written(*nested)).root, nested);
  const auto refused = [](const NSObject& root, std::string_view fragment) {
    const std::string error = utf8(writePropertyList(root).error);
    EXPECT_NE(error.find(fragment), std::string::npos) << error;
    EXPECT_LT(error.size(), 300u);
  };
  refused(*array({nested}), "... is nested deeper than 512 levels.");

  const auto cycle = std::make_shared<NSMutableDictionary>();
  cycle->setObject(array({box(1), cycle, cycle}), u"self");
  refused(*cycle, "The object at self[1].self[1].");
  cycle->removeAllObjects();

  // Nothing but sharing, yet more than any memory holds once it is written out.
  Ref<NSObject> doubled = box(u"a");
  for (int i = 0; i < 60; ++i) doubled = array({doubled, doubled});
  refused(*doubled, "larger than");
  refused(*array(Objects(30, data(std::vector<std::uint8_t>(3000000)))), "larger than");
}

class Tree {
 public:
  explicit Tree(unsigned seed) : myRandom(seed) {}

  // Without carriage returns, which some writers change.
  Text text() {
    Text result;
    for (std::size_t length = below(4) == 0 ? below(60) : below(8); length > 0; --length) {
      const TextView odd = u"\t\n &<>\"']\xE9\xE000";
      const std::size_t kind = below(6);
      if (kind == 1)
        result += {static_cast<char16_t>(0xD800 + below(0x400)), static_cast<char16_t>(0xDC00 + below(0x400))};
      if (kind != 1) result += kind == 0 ? odd[below(odd.size())] : static_cast<char16_t>(u' ' + below(95));
    }
    return result;
  }

  Ref<NSObject> object(unsigned depth) {
    switch (below(depth == 0 ? 7 : 10)) {
      case 0:
        return box(below(2) == 0);
      case 1:
        return box(static_cast<std::int64_t>(bits()) >> below(64));
      case 2:
        return box(bits() | (std::uint64_t{1} << 63U));
      case 3: {
        const double value = std::bit_cast<double>(bits());
        return box(below(2) == 0 ? value : static_cast<double>(below(1000)) / 8);
      }
      case 4:
        return date(static_cast<double>(bits() % 315537897600U) - 62135596800.0);
      case 5: {
        std::vector<std::uint8_t> bytes(below(200));
        for (auto& byte : bytes) byte = static_cast<std::uint8_t>(myRandom());
        return data(std::move(bytes));
      }
      case 6:
        return box(text());
      case 7: {
        Objects elements(below(6));
        for (auto& element : elements) element = object(depth - 1);
        return array(std::move(elements));
      }
      default: {
        NSDictionary::Entries entries;
        for (std::size_t count = below(6); count > 0; --count) entries[text()] = object(depth - 1);
        return dictionary(std::move(entries));
      }
    }
  }

 private:
  std::size_t below(std::size_t limit) { return myRandom() % limit; }
  std::uint64_t bits() { return myRandom(); }

  std::mt19937_64 myRandom;
};

// Another reader and writer as judge: what it reads of ours, written by it, is what we had written; and it sees the
// same carriage returns.
TEST(PropertyListWriting, AgreesWithPlistlib) {
  if (std::system("python3 -c 'import plistlib' 2>/dev/null") != 0) GTEST_SKIP() << "no python3 with plistlib";
  const std::filesystem::path folder = testing::TempDir() + "PropertyListTest." + std::to_string(getpid());
  std::filesystem::create_directory(folder);
  const auto file = [&](const std::string& name) { return folder / name; };
  const unsigned count = 300;
  for (unsigned i = 0; i < count; ++i) std::ofstream(file(std::to_string(i))) << written(*Tree(i).object(6));
  std::ofstream(file("returns")) << written(*dictionary({{u"a\r", box(u"\r\n\r")}}));
  std::ofstream(file("judge.py")) << "import plistlib, sys\n"
                                     "f = sys.argv[1] + '/'\n"
                                     "for i in range(int(sys.argv[2])):\n"
                                     "  tree = plistlib.load(open(f + str(i), 'rb'))\n"
                                     "  plistlib.dump(tree, open(f + str(i) + '.out', 'wb'))\n"
                                     "assert plistlib.load(open(f + 'returns', 'rb')) == {'a\\r': '\\r\\n\\r'}\n";
  const std::string command =
      "python3 '" + file("judge.py").string() + "' '" + folder.string() + "' " + std::to_string(count);
  ASSERT_EQ(std::system(command.c_str()), 0);
  for (unsigned i = 0; i < count; ++i) {
    SCOPED_TRACE(i);
    std::ifstream stream(file(std::to_string(i) + ".out"), std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(stream)), {});
    const PropertyList list = readPropertyList(bytes);
    ASSERT_EQ(list.error, u""sv);
    ASSERT_EQ(written(*list.root), written(*Tree(i).object(6)));
  }
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace kelvane
