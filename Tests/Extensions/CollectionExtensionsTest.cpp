#include "Extensions/NSArray-QNExtensions.h"
#include "Extensions/NSDictionary-QNExtensions.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSValue.h"
#include "Support/Testing.h"

namespace {

constexpr std::size_t largest = std::numeric_limits<std::size_t>::max();

std::vector<Ref<NSObject>> boxed(TextView letters) {
  std::vector<Ref<NSObject>> elements;
  for (const char16_t letter : letters) elements.push_back(box(Text(1, letter)));
  return elements;
}

Text text(const auto& array) {
  Text text;
  for (const Ref<NSObject>& element : array) text += description(element);
  return text;
}

template <class Array>
void expectChanges() {
  const std::tuple<TextView, std::size_t, TextView, TextView, TextView> rows[] = {
      {u"abc", 0, u"bac", u"abc", u"bc"},        {u"abc", 1, u"acb", u"bac", u"ac"}, {u"abc", 2, u"abc", u"acb", u"ab"},
      {u"abc", 3, u"abc", u"abc", u"abc"},       {u"a", 0, u"a", u"a", u""},         {u"", largest, u"", u"", u""},
      {u"abc", largest, u"abc", u"abc", u"abc"},
  };
  for (const auto& [before, index, movedUp, movedDown, left] : rows) {
    Array up(boxed(before)), down(boxed(before)), rest(boxed(before));
    moveUpObjectAtIndex(up, index);
    moveDownObjectAtIndex(down, index);
    const Ref<NSObject> pulled = pullObjectAtIndex(rest, index);
    EXPECT_EQ(text(up), movedUp);
    EXPECT_EQ(text(down), movedDown);
    EXPECT_EQ(text(rest), left);
    EXPECT_EQ(description(pulled), index < before.size() ? before.substr(index, 1) : u"(null)");
  }
  Array empty;
  for (const std::size_t index : {std::size_t{0}, largest - 1})
    EXPECT_THAT([&] { moveUpObjectAtIndex(empty, index); }, isBeyond("moveUpObjectAtIndex: index"));
  EXPECT_EQ(firstObject(empty), nullptr);
  EXPECT_EQ(fetchAndRemoveFirstObject(empty), nullptr);
  Array queue(boxed(u"ab"));
  EXPECT_EQ(description(fetchAndRemoveFirstObject(queue)), u"a");
  EXPECT_EQ(text(queue), u"b");
}

TEST(NSArrayExtensions, ObjectsAndVectorsChangeAlike) {
  expectChanges<NSMutableArray>();
  expectChanges<std::vector<Ref<NSObject>>>();
}

TEST(NSArrayExtensions, ReversingFewGivesTheReceiver) {
  for (const TextView few : {TextView(u""), TextView(u"a")}) {
    const auto array = std::make_shared<NSMutableArray>(boxed(few));
    EXPECT_EQ(reverseArray(array), array);
  }
  EXPECT_EQ(reverseArray(Ref<NSArray>()), nullptr);
  const Ref<NSArray> array = std::make_shared<NSArray>(boxed(u"abc"));
  const Ref<NSArray> reversed = reverseArray(array);
  EXPECT_EQ(text(*reversed), u"cba");
  EXPECT_NE(as<NSMutableArray>(reversed), nullptr);
  EXPECT_EQ(text(*array), u"abc");
  EXPECT_EQ(text(reverseArray(boxed(u"ab"))), u"ba");
}

TEST(DictionaryTest, TypedReadersAndWriters) {
  NSMutableDictionary dictionary;
  encodeBool(dictionary, true, u"bool");
  encodeFloat(dictionary, 2.5F, u"float");
  encodeBool(dictionary, true, std::nullopt);
  encodeFloat(dictionary, 2.5F, std::nullopt);
  EXPECT_TRUE(dictionary.isEqual(*dictionaryOf({{u"bool", box(true)}, {u"float", box(2.5F)}})));
  dictionary.setObject(box(u"YES"), u"yes");
  dictionary.setObject(box(u"2.5 m"), u"length");
  for (const TextView key : {u"bool", u"yes"}) EXPECT_TRUE(decodeBoolForKey(dictionary, key));
  for (const TextView key : {u"float", u"length"}) EXPECT_EQ(decodeFloatForKey(dictionary, key), 2.5F);
  EXPECT_FALSE(decodeBoolForKey(dictionary, u"missing") || containsValueForKey(dictionary, u"missing"));
  EXPECT_TRUE(containsValueForKey(dictionary, u"@count")) << "a key of the dictionary itself";
  EXPECT_EQ(decodeFloatForKey(dictionary, u"@count"), 4.0F);
  dictionary.setObject(NSNull::null(), u"null");
  for (const TextView key : {u"@other", u"null"})
    EXPECT_THROW(decodeBoolForKey(dictionary, key), std::invalid_argument);
  NSDictionary immutable;
  EXPECT_THROW(encodeBool(immutable, true, u"key"), std::invalid_argument);
}

TEST(DictionaryTest, PointersAndStrings) {
  NSMutableDictionary dictionary;
  int target = 0;
  setPointer(dictionary, &target, u"p");
  setPointer(dictionary, nullptr, u"p");
  setPointer(dictionary, &target, std::nullopt);
  EXPECT_EQ(pointerForKey(dictionary, u"p"), &target);
  dictionary.setObject(std::make_shared<NSValue>(CGPoint(1, 2)), u"point");
  EXPECT_EQ(pointerForKey(dictionary, u"point"), nullptr);
  setValidString(dictionary, u"text", u"s");
  for (const std::optional<TextView> nothing : {std::optional<TextView>(), std::optional<TextView>(u"")})
    setValidString(dictionary, nothing, u"s");
  setValidString(dictionary, u"text", std::nullopt);
  EXPECT_EQ(description(dictionary.objectForKey(u"s")), u"text");
  EXPECT_EQ(dictionary.count(), 3U);
}

TEST(DictionaryTest, Selections) {
  const auto inner = arrayOf({box(1)});
  const auto dictionary =
      dictionaryOf({{u"a", box(3)}, {u"b", box(u"text")}, {u"c", box(2.5)}, {u"d", box(true)}, {u"e", inner}});
  const std::vector<Text> keys{u"b", u"missing", u"a", u"b"};
  EXPECT_TRUE(
      isEqual(dictionaryWithObjectsForKeys(*dictionary, keys), dictionaryOf({{u"a", box(3)}, {u"b", box(u"text")}})));
  const std::vector<Text> all{u"a", u"b", u"c", u"d", u"missing"};
  EXPECT_TRUE(isEqual(
      normalizedDictionaryWithStringObjectsForKeys(*dictionary, all),
      dictionaryOf(
          {{u"a", box(u"3")}, {u"b", box(u"text")}, {u"c", box(u"2.5")}, {u"d", box(u"1")}, {u"missing", box(u"")}})));
  const std::vector<Text> bad{u"e"};
  EXPECT_THROW(normalizedDictionaryWithStringObjectsForKeys(*dictionary, bad), std::invalid_argument);

  const auto copies = dictionaryWithDeepCopiedValues(*dictionary);
  EXPECT_TRUE(isEqual(copies, dictionary));
  const auto array = as<NSMutableArray>(copies->objectForKey(u"e"));
  ASSERT_TRUE(array);
  EXPECT_EQ(array->firstObject(), inner->firstObject());
  array->addObject(box(2));
  EXPECT_EQ(inner->count(), 1U);
}

TEST(DictionaryTest, PropertyListKinds) {
  using NSDictionaryExtensions::isValidPListObject;
  for (const Ref<NSObject>& object :
       {Ref<NSObject>(box(u"")), Ref<NSObject>(box(true)), Ref<NSObject>(arrayOf({NSNull::null()})),
        Ref<NSObject>(std::make_shared<NSMutableDictionary>()), Ref<NSObject>(std::make_shared<NSDate>()),
        Ref<NSObject>(std::make_shared<NSMutableData>())})
    EXPECT_TRUE(isValidPListObject(object)) << utf8(object->className());
  EXPECT_FALSE(isValidPListObject(nullptr));
  EXPECT_FALSE(isValidPListObject(NSNull::null()));
  EXPECT_FALSE(isValidPListObject(std::make_shared<NSValue>(CGPoint())));
}

}  // namespace
