#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/PropertyList.h"
#include "Support/Process.h"
#include "Support/Testing.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using Objects = std::vector<Ref<NSObject>>;

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

void expectRead(const std::string& bytes, const Ref<NSObject>& wanted) {
  SCOPED_TRACE(bytes);
  const PropertyList list = readPropertyList(bytes);
  EXPECT_EQ(list.error, u""sv);
  EXPECT_EQ(list.line, 0u);
  expectSame(list.root, wanted);
}

void expectRefused(const PropertyList& list, std::size_t line, std::string_view fragment) {
  EXPECT_EQ(list.root, nullptr);
  EXPECT_EQ(list.line, line);
  const std::string error = utf8(list.error);
  EXPECT_NE(error.find(fragment), std::string::npos) << error;
  EXPECT_TRUE(error.ends_with('.') && error.size() < 250) << error;
}

TEST(PropertyListReading, EveryKind) {
  const std::pair<std::string_view, Ref<NSObject>> rows[] = {
      {"<dict><key/><array><dict> <!-- none --> </dict></array></dict>",
       dictionaryOf({{u"", arrayOf({dictionaryOf({})})}})},
      {"<dict><key>b</key><true/><key>a</key><true/><key>b</key><string>x</string></dict>",
       dictionaryOf({{u"a", box(true)}, {u"b", box(u"x")}})},
      {"<string/>", box(u"")},
      {"<string> \n\ta  </string>", box(u" \n\ta  ")},
      {"<string>a <!-- & --> <!-- --> b</string>", box(u"a   b")},
      {"<string> <![CDATA[<&amp;]]> &lt;]]></string>", box(u" <&amp; <]]>")},
      {"<string>a\r\nb\rc<![CDATA[\r\n]]>&#13;&#xD;</string>", box(u"a\nb\nc\n\r\r")},
      {"<string>&amp;&lt;&gt;&quot;&apos;&#65;&#x1F600;&#xfffd;</string>", box(u"&<>\"'A\U0001F600\xFFFD")},
      {"<dict><key>&amp;amp;</key><false> </false></dict>", dictionaryOf({{u"&amp;", box(false)}})},
      {"<string>\xE2\x82|\xFF\xED\xA0\x80</string>", box(u"\xFFFD|\xFFFD\xFFFD\xFFFD\xFFFD")},
      {"<integer>\n +0042 </integer>", box(42)},
      {"<integer>9223372036854775807</integer>", box(std::numeric_limits<std::int64_t>::max())},
      {"<integer>0XFFFFFFFFFFFFFFFF</integer>", box(std::numeric_limits<std::uint64_t>::max())},
      {"<integer>-0xFf</integer>", box(-255)},
      {"<array><real>.5</real><real>-5.</real><real> +1.5e3 </real><real>NaN</real></array>",
       arrayOf({box(0.5), box(-5.0), box(1500.0), box(std::nan(""))})},
      {"<array><real>+infinity</real><real>-INF</real><real>inf</real></array>",
       arrayOf({box(infinity), box(-infinity), box(infinity)})},
      {"<date>0001-01-01T00:00:00Z</date>", date(-62135596800)},
      {"<date>9999-12-31T23:59:59Z</date>", date(253402300799)},
      {"<array><data/><data>\n\tAAEC\r\n\t/w = =\n</data><data>+/8=</data></array>",
       arrayOf({data({}), data({0, 1, 2, 255}), data({0xFB, 0xFF})})},
      {"<array id='&amp;'><true a=\"b\"/></array>", arrayOf({box(true)})},
      // Text beyond XML.
      {"<array><string utf16='AGEAAQ=='>a&#xFFFD;</string><string utf16='AGEAAQ=='>edited&#xFFFD;</string>"
       "<string utf16='AGEA'>a</string></array>",
       arrayOf({box(u"a\x01"), box(u"edited\xFFFD"), box(u"a")})},
  };
  for (const auto& [body, object] : rows) expectRead(plist(body), object);
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
  const std::pair<std::string, TextView> rows[] = {
      {plist("<string>\xC3\xA9</string>"), u"é"},
      {"\xEF\xBB\xBF<?xml version='1.0'?>" + plist("<string>\xC3\xA9</string>"), u"é"},
      {"\xFF\xFE" + utf16(text, false), u"é\U0001F600"},
      {"\xFE\xFF" + utf16(text, true), u"é\U0001F600"},
      {utf16(text, false), u"é\U0001F600"},
      {utf16(text, true), u"é\U0001F600"},
      {utf16(u"<plist><string>\xD800|</string></plist>", true), u"\xFFFD|"},
      {latin, u"é"},
      {"<?xml version=\"1.0\" encoding=\"utf-8\"?>\n" + plist("<string>\xE9</string>"), u"\xFFFD"},
  };
  for (const auto& [bytes, wanted] : rows) expectRead(bytes, box(wanted));
  expectRefused(readPropertyList("<?xml version='1.0' encoding='EBCDIC'?>"s + plist("<true/>")), 1, "EBCDIC");
}

TEST(PropertyListReading, RefusesBodies) {
  const std::tuple<std::string_view, std::size_t, const char*> rows[] = {
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
  for (const auto& [body, line, words] : rows) {
    SCOPED_TRACE(body);
    expectRefused(readPropertyList(plist(body)), line, words);
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
  const std::tuple<const char*, std::string, std::size_t, const char*> rows[] = {
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
  for (const auto& [name, bytes, line, fragment] : rows) {
    SCOPED_TRACE(name);
    expectRefused(readPropertyList(bytes), line, fragment);
  }
  // What a DOCTYPE names is not looked at.
  const auto list =
      readPropertyList("<!DOCTYPE plist SYSTEM \"file:///nowhere/[x]\"><?pi [?>" + good + "<!-- end -->\n");
  expectSame(list.root, box(u"a"));
}

TEST(PropertyListReading, Limits) {
  const auto nested = [](std::size_t depth) {
    std::string opened, closed;
    for (; depth > 0; --depth) opened += "<array>", closed += "</array>";
    return plist(opened + closed);
  };
  EXPECT_TRUE(readPropertyList(nested(maximumPropertyListDepth)).root);
  for (const std::size_t depth : {maximumPropertyListDepth + 1, std::size_t{1000000}})
    expectRefused(readPropertyList(nested(depth)), 1, "deeper than 512");
  expectRefused(readPropertyList(plist("<string>" + std::string(100000000, 'a') + "</string>")), 0,
                "larger than 67108864");
}

TEST(PropertyListWriting, Layout) {
  const auto root = dictionaryOf({{u"b<", arrayOf({box(true), box(-1), box(0.1), arrayOf({})})},
                                  {u"a", box(u"x\r\n&<>\"'é\U0001F600")},
                                  {u"c", data({0, 1, 2, 255})},
                                  {u"d", date(-0.5)},
                                  {u"e", dictionaryOf({})},
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
  const Objects objects = {box(-infinity),
                           box(std::nan("")),
                           date(-62135596800),
                           date(253402300799),
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
    return dictionaryOf({{u"people", arrayOf({box(1), dictionaryOf({{u"name", std::move(object)}})})}});
  };
  const std::tuple<Ref<NSObject>, const char*> rows[] = {
      {NSNull::null(), "The object at the root is of class NSNull, which a property list cannot hold."},
      {people(box(CGPoint{1, 2})),
       "The object at people[1].name is of class NSValue, which a property list cannot hold."},
      {dictionaryOf({{u"a\x1F", box(1)}}), "The key at a\xEF\xBF\xBD holds U+001F, which XML cannot hold."},
      {people(date(-62135596801)), "The date at people[1].name is outside the years 1 to 9999."},
      {date(253402300800), "The date at the root is outside the years 1 to 9999."},
      {box(Text(maximumPropertyListSize, u'a')), "The property list is larger than 67108864 bytes."},
  };
  for (const auto& [root, error] : rows) {
    SCOPED_TRACE(error);
    const PropertyListBytes result = writePropertyList(*root);
    EXPECT_EQ(utf8(result.error), error);
    EXPECT_EQ(result.bytes, "");
  }
}

TEST(PropertyListWriting, Limits) {
  Ref<NSObject> nested = arrayOf({});
  for (std::size_t depth = 1; depth < maximumPropertyListDepth; ++depth) nested = arrayOf({nested});
  expectSame(readPropertyList(written(*nested)).root, nested);
  const auto refused = [](const NSObject& root, std::string_view fragment) {
    const std::string error = utf8(writePropertyList(root).error);
    EXPECT_NE(error.find(fragment), std::string::npos) << error;
    EXPECT_LT(error.size(), 300u);
  };
  refused(*arrayOf({nested}), "... is nested deeper than 512 levels.");

  const auto cycle = std::make_shared<NSMutableDictionary>();
  cycle->setObject(arrayOf({box(1), cycle, cycle}), u"self");
  refused(*cycle, "The object at self[1].self[1].");
  cycle->removeAllObjects();

  // Nothing but sharing, yet more than any memory holds once it is written out.
  Ref<NSObject> doubled = box(u"a");
  for (int i = 0; i < 60; ++i) doubled = arrayOf({doubled, doubled});
  refused(*doubled, "larger than");
  refused(*arrayOf(Objects(30, data(std::vector<std::uint8_t>(3000000)))), "larger than");
}

// Another reader and writer as judge: random trees that it writes mean the same to it after we have read and written
// them, and it sees the same carriage returns.
TEST(PropertyListWriting, AgreesWithPlistlib) {
  constexpr const char* judge = R"(
import datetime, os, plistlib, random, sys
os.chdir(sys.argv[1])
random.seed(1)
def text():
    return ''.join(random.choice('\t\n &<>"\']\u00e9\ue000\U0001f600' + 50 * 'x') for _ in range(random.randrange(60)))
def tree(depth):
    kind = random.randrange(8 if depth > 0 else 6)
    if kind == 0: return random.random() < 0.5
    if kind == 1: return random.choice([-1, 1, 2]) * random.getrandbits(random.randrange(1, 64))
    if kind == 2: return random.choice([float('inf'), random.randrange(999) / 8, random.uniform(-1, 1) ** 99])
    if kind == 3: return datetime.datetime(1, 1, 1) + datetime.timedelta(seconds=random.randrange(315537897600))
    if kind == 4: return random.randbytes(random.randrange(200))
    if kind == 5: return text()
    if kind == 6: return [tree(depth - 1) for _ in range(random.randrange(6))]
    return {text(): tree(depth - 1) for _ in range(random.randrange(6))}
for i in range(300):
    made = tree(6)
    if sys.argv[2] == 'write': plistlib.dump(made, open(str(i), 'wb'))
    else: assert plistlib.load(open(str(i), 'rb')) == made, i
if sys.argv[2] == 'read': assert plistlib.load(open('returns', 'rb')) == {'a\r': '\r\n\r'}
)";
  const TemporaryFolder folder;
  const auto judged = [&](const char* what) {
    return runProcess({"/usr/bin/env", "python3", "-c", judge, folder.path(), what}).err;
  };
  ASSERT_EQ(judged("write"), "");
  for (const std::string& name : folder.names()) {
    const PropertyList list = readPropertyList(folder.bytes(name));
    ASSERT_EQ(list.error, u""sv);
    folder.write(name, written(*list.root));
  }
  folder.write("returns", written(*dictionaryOf({{u"a\r", box(u"\r\n\r")}})));
  EXPECT_EQ(judged("read"), "");
}

}  // namespace
