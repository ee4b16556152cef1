#include <stdexcept>

#include "Extensions/NSDictionary-QNExtensions.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSValue.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

TEST(DictionaryTest, TypedReadersAndWriters) {
  NSMutableDictionary dictionary;
  encodeBool(dictionary, true, u"bool");
  encodeFloat(dictionary, 2.5F, u"float");
  encodeBool(dictionary, true, std::nullopt);
  encodeFloat(dictionary, 2.5F, std::nullopt);
  EXPECT_TRUE(dictionary.isEqual(*NSDictionary::dictionaryWithEntries({{u"bool", box(true)}, {u"float", box(2.5F)}})));
  dictionary.setObject(box(u"YES"), u"yes");
  dictionary.setObject(box(u"2.5 m"), u"length");
  EXPECT_TRUE(decodeBoolForKey(dictionary, u"bool"));
  EXPECT_TRUE(decodeBoolForKey(dictionary, u"yes"));
  EXPECT_FALSE(decodeBoolForKey(dictionary, u"missing"));
  EXPECT_EQ(decodeFloatForKey(dictionary, u"float"), 2.5F);
  EXPECT_EQ(decodeFloatForKey(dictionary, u"length"), 2.5F);
  // Keys of the dictionary itself.
  EXPECT_TRUE(containsValueForKey(dictionary, u"@count"));
  EXPECT_EQ(decodeFloatForKey(dictionary, u"@count"), 4.0F);
  EXPECT_THROW(decodeBoolForKey(dictionary, u"@other"), std::invalid_argument);
  EXPECT_FALSE(containsValueForKey(dictionary, u"missing"));

  dictionary.setObject(NSNull::null(), u"null");
  EXPECT_THROW(decodeBoolForKey(dictionary, u"null"), std::invalid_argument);
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
  const auto inner = NSArray::arrayWithObjects({box(1)});
  const auto dictionary = NSDictionary::dictionaryWithEntries(
      {{u"a", box(3)}, {u"b", box(u"text")}, {u"c", box(2.5)}, {u"d", box(true)}, {u"e", inner}});
  const std::vector<Text> keys{u"b", u"missing", u"a", u"b"};
  EXPECT_TRUE(isEqual(dictionaryWithObjectsForKeys(*dictionary, keys),
                      NSDictionary::dictionaryWithEntries({{u"a", box(3)}, {u"b", box(u"text")}})));
  const std::vector<Text> all{u"a", u"b", u"c", u"d", u"missing"};
  EXPECT_TRUE(isEqual(
      normalizedDictionaryWithStringObjectsForKeys(*dictionary, all),
      NSDictionary::dictionaryWithEntries(
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
       {Ref<NSObject>(box(u"")), Ref<NSObject>(box(true)), Ref<NSObject>(NSArray::arrayWithObjects({NSNull::null()})),
        Ref<NSObject>(std::make_shared<NSMutableDictionary>()), Ref<NSObject>(std::make_shared<NSDate>()),
        Ref<NSObject>(std::make_shared<NSMutableData>())})
    EXPECT_TRUE(isValidPListObject(object)) << utf8(object->className());
  EXPECT_FALSE(isValidPListObject(nullptr));
  EXPECT_FALSE(isValidPListObject(NSNull::null()));
  EXPECT_FALSE(isValidPListObject(std::make_shared<NSValue>(CGPoint())));
}

}  // namespace
}  // namespace kelvane
