#include "Platform/Foundation/NSAttributedString.h"
#include "Support/Testing.h"

namespace {

// A dictionary made anew; 0 stands for the empty one.
Ref<NSDictionary> attributesOf(int number) { return number == 0 ? nullptr : dictionaryOf({{u"a", box(number)}}); }

int numberOf(const Ref<NSDictionary>& attributes) {
  const auto number = as<NSNumber>(attributes->objectForKey(u"a"));
  return number ? number->intValue() : 0;
}

// Each run's text with its attributes behind it: "plain{}link{NSLink=here}".
Text shown(const NSAttributedString& text) {
  Text result;
  for (const AttributeRun run : text.runs()) {
    result += text.string().substr(run.range.location, run.range.length) + u'{';
    for (const auto& [name, value] : *run.attributes)
      result += (result.ends_with(u'{') ? u"" : u",") + name + u'=' + value->description();
    result += u'}';
  }
  return result;
}

// Each unit with the number of its dictionary: the plain way to keep styled text.
struct PlainText {
  Text text;
  std::vector<int> numbers;

  void replace(NSRange range, TextView string, int number) {
    text.replace(range.location, range.length, string);
    const auto place = numbers.begin() + static_cast<std::ptrdiff_t>(range.location);
    const auto behind = numbers.erase(place, place + static_cast<std::ptrdiff_t>(range.length));
    numbers.insert(behind, string.size(), number);
  }
};

void expectSame(const NSAttributedString& text, const PlainText& plain) {
  ASSERT_EQ(text.string(), plain.text);
  ASSERT_EQ(text.runs().length(), plain.text.size());
  std::size_t place = 0;
  std::size_t runs = 0;
  int before = -1;
  for (const AttributeRun run : text.runs()) {
    ASSERT_EQ(run.range.location, place);
    ASSERT_GT(run.range.length, 0U);
    const int number = numberOf(run.attributes);
    ASSERT_NE(number, before) << "two neighbours are equal at " << place;
    place = run.range.end();
    const auto numbers = std::span(plain.numbers).subspan(run.range.location, run.range.length);
    ASSERT_EQ(std::ranges::count(numbers, number), std::ssize(numbers)) << "before " << place;
    NSRange range;
    ASSERT_EQ(text.attributesAtIndex(place - 1, &range), run.attributes);
    ASSERT_EQ(range, run.range);
    before = number;
    ++runs;
  }
  ASSERT_EQ(place, plain.text.size());
  ASSERT_EQ(runs, text.runs().count());
}

// Thousands of random edits, in bursts between which the text is read, so that it goes into pieces and back.
TEST(NSAttributedString, EditsAsThePlainWayDoes) {
  std::mt19937 random(7);
  const auto upTo = [&random](std::size_t most) { return std::uniform_int_distribution<std::size_t>(0, most)(random); };
  NSMutableAttributedString text;
  PlainText plain;
  for (int i = 0; i < 30000; ++i) {
    const Text unit(1, static_cast<char16_t>(u'a' + i % 26));
    text.appendString(unit, attributesOf(i % 3));
    plain.replace({plain.text.size(), 0}, unit, i % 3);
  }
  expectSame(text, plain);
  for (int i = 0; i < 6000; ++i) {
    const std::size_t location = upTo(text.length());
    // Mostly small, now and then over several chunks, and towards the end growing again.
    const std::size_t most = i % 500 == 0 ? 9000 : 6;
    const NSRange range{location, std::min(upTo(most), text.length() - location)};
    const Text string(upTo(i % 700 == 1 ? 9000 : 5), static_cast<char16_t>(u'A' + i % 26));
    const int number = static_cast<int>(upTo(3));
    switch (upTo(3)) {
      case 0:
        text.setAttributes(attributesOf(number), range);
        plain.replace(range, Text(plain.text, range.location, range.length), number);
        break;
      case 1:
        if (range.length == 0)
          text.insertAttributedString(NSAttributedString(string, attributesOf(number)), location);
        else
          text.replaceCharactersInRange(range, NSAttributedString(string, attributesOf(number)));
        plain.replace(range, string, number);
        break;
      case 2: {
        const std::size_t giver = range.length == 0 && location > 0 ? location - 1 : location;
        const int inherited = giver < plain.numbers.size() ? plain.numbers[giver] : 0;
        text.replaceCharactersInRange(range, string);
        plain.replace(range, string, inherited);
        break;
      }
      default:
        text.deleteCharactersInRange(range);
        plain.replace(range, {}, 0);
        break;
    }
    if (i % 200 == 0) {
      ASSERT_NO_FATAL_FAILURE(expectSame(text, plain)) << "edit " << i;
    }
  }
  for (int i = 0; i < 50; ++i) {
    const std::size_t location = upTo(text.length());
    const NSRange range{location, upTo(text.length() - location)};
    const auto first = plain.numbers.begin() + static_cast<std::ptrdiff_t>(location);
    expectSame(text.attributedSubstringFromRange(range),
               {plain.text.substr(location, range.length), {first, first + static_cast<std::ptrdiff_t>(range.length)}});
  }
  NSMutableAttributedString other(u"before");
  other.setAttributedString(text);
  expectSame(other, plain);
  text.deleteCharactersInRange({0, text.length()});
  expectSame(text, {});
}

TEST(NSAttributedString, ValuesKeepTheirIdentity) {
  const auto link = box(u"here");
  const auto same = box(u"here");
  NSMutableAttributedString text(u"abcdef");
  text.addAttribute(NSLinkAttributeName, link, {0, 2});
  text.addAttribute(NSLinkAttributeName, same, {2, 2});
  // Equal dictionaries are one run, and the first one's values stand.
  NSRange range;
  EXPECT_EQ(text.attribute(NSLinkAttributeName, 3, &range), link);
  EXPECT_EQ(range, (NSRange{0, 4}));
  EXPECT_EQ(text.attribute(NSLinkAttributeName, 4, &range), nullptr);
  text.addAttribute(NSUnderlineStyleAttributeName, box(1), {1, 4});
  EXPECT_EQ(shown(text), u"a{NSLink=here}bcd{NSLink=here,NSUnderline=1}e{NSUnderline=1}f{}");
  const auto copy = as<NSAttributedString>(text.copy());
  EXPECT_TRUE(!as<NSMutableAttributedString>(copy) && copy->isEqual(text) && copy->hash() == text.hash());
  EXPECT_EQ(copy->attribute(NSLinkAttributeName, 0), link);
  text.removeAttribute(NSUnderlineStyleAttributeName, {0, 6});
  EXPECT_FALSE(copy->isEqual(text));

  // A dictionary that is changed afterwards changes no text.
  const auto changing = std::make_shared<NSMutableDictionary>();
  NSTextStorage storage(*copy);
  storage.setAttributes(changing, {0, 6});
  changing->setObject(link, u"x");
  EXPECT_EQ(shown(storage), u"abcdef{}");
  storage.addAttributes(changing, {5, 1});
  storage.addAttributes(nullptr, {0, 1});
  EXPECT_EQ(shown(storage), u"abcde{}f{x=here}");
  storage.appendAttributedString(storage);
  EXPECT_EQ(shown(storage), u"abcde{}f{x=here}abcde{}f{x=here}");
  EXPECT_TRUE(isEqual(storage.valueForKey(u"length"), box(12)));
}

TEST(NSAttributedString, RefusesWhatIsBeyondTheTextAndTakesAPieceOfItself) {
  NSMutableAttributedString text(u"abc", attributesOf(1));
  EXPECT_THROW(text.attribute(u"a", 3), std::out_of_range);
  EXPECT_THROW(text.attributedSubstringFromRange({2, 2}), std::out_of_range);
  EXPECT_THROW(text.setAttributes(nullptr, {4, 0}), std::out_of_range);
  EXPECT_THROW(text.replaceCharactersInRange({1, ~std::size_t{0}}, u"x"), std::out_of_range);
  EXPECT_THROW(text.addAttribute(u"b", nullptr, {0, 1}), std::invalid_argument);
  EXPECT_EQ(text.description(), u"abc{\n    a = 1;\n}");
  // Also a piece of a long one that is about to be cut.
  NSMutableAttributedString whole(Text(100000, u'x') + u"end");
  whole.replaceCharactersInRange({50000, 1}, TextView(whole.string()).substr(100000));
  whole.deleteCharactersInRange({0, 50000});
  EXPECT_EQ(whole.string(), u"end" + Text(49999, u'x') + u"end");
}

}  // namespace
