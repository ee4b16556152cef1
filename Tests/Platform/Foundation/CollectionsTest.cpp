#include "Platform/Foundation/ElementTraits.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSNull.h"
#include "Support/Testing.h"

namespace {

TEST(NSArray, ElementsAreFoundByEquality) {
  const auto array = NSArray::arrayWithObjects({box(u"a"), box(1), box(1.0), NSNull::null()});
  EXPECT_EQ(array->indexOfObject(NSNull::null()), 3U);
  EXPECT_TRUE(array->containsObject(std::make_shared<NSMutableString>(u"a")));
  EXPECT_EQ(array->indexOfObject(box(u"b")), NSArray::NSNotFound);
  EXPECT_EQ(array->indexOfObject(nullptr), NSArray::NSNotFound);
  EXPECT_TRUE(array->firstObject() == array->objectAtIndex(0) && array->lastObject() == NSNull::null());
  EXPECT_EQ(description(array->valueForKey(u"@count")), u"4");
  EXPECT_THAT([&] { array->valueForKey(u"@max"); }, refuses("'@max'"));
}

TEST(NSArray, ChangesAndRefusals) {
  NSMutableArray array;
  array.addObject(box(u"b"));
  array.insertObject(box(u"a"), 0);
  array.insertObject(box(u"d"), 2);
  array.replaceObjectAtIndex(2, box(u"c"));
  const auto abc = NSArray::arrayWithObjects({box(u"a"), box(u"b"), box(u"c")});
  EXPECT_TRUE(array.isEqual(*abc));
  EXPECT_THAT([&] { array.objectAtIndex(3); }, isBeyond("objectAtIndex:", "index 3"));
  EXPECT_THAT([&] { array.insertObject(box(1), 4); }, isBeyond("insertObject:atIndex:", "4"));
  EXPECT_THAT([&] { array.removeObjectAtIndex(NSNotFound); }, isBeyond("removeObjectAtIndex:", "18446744073709551615"));
  EXPECT_THAT([&] { array.replaceObjectAtIndex(3, box(1)); }, isBeyond("replaceObjectAtIndex:withObject:", "index 3"));
  EXPECT_THAT([&] { array.addObject(nullptr); }, refuses("addObject:"));
  EXPECT_THAT([&] { array.replaceObjectAtIndex(0, nullptr); }, refuses("replaceObjectAtIndex:withObject:"));
  EXPECT_THAT([&] { NSArray::arrayWithObjects({box(1), nullptr}); }, refuses("nil"));
  EXPECT_TRUE(array.isEqual(*abc)) << "what was refused changed something";
}

TEST(NSDictionary, EntriesAreInOrderOfTheirKeys) {
  NSMutableDictionary dictionary;
  for (const TextView key : {u"b", u"\xE000", u"\xD800\xDC00", u"", u"a", u"B"}) dictionary.setObject(box(key), key);
  EXPECT_THAT(dictionary.allKeys(), ElementsAre(u"", u"B", u"a", u"b", u"\xD800\xDC00", u"\xE000"));
  for (const TextView key : {u"", u"\xE000", u"\xD800\xDC00", u"none"}) dictionary.removeObjectForKey(key);
  dictionary.setValueForKey(nullptr, u"b");
  EXPECT_TRUE(dictionary.isEqual(*NSDictionary::dictionaryWithEntries({{u"B", box(u"B")}, {u"a", box(u"a")}})));
  EXPECT_EQ(description(dictionary.valueForKey(u"@count")), u"2");

  EXPECT_THAT([&] { dictionary.setObject(nullptr, u"k"); }, refuses("setObject:forKey:", "\'k\'"));
  EXPECT_THAT([] { NSDictionary::dictionaryWithEntries({{u"k", nullptr}}); }, refuses("nil", "\'k\'"));
  EXPECT_THAT([] { NSDictionary().setValueForKey(box(1), u"k"); }, refuses("setValue:forKey:", "\'k\'"));
  EXPECT_THAT([&] { dictionary.valueForKey(u"@k"); }, refuses("'@k'"));
}

TEST(Collections, DescribeThemselvesIndented) {
  const auto inner = NSArray::arrayWithObjects({box(1), box(u"two words"), box(u""), NSArray::arrayWithObjects({})});
  const auto outer = NSDictionary::dictionaryWithEntries(
      {{u"list", inner}, {u"a key", box(u"say \"\\\"")}, {u"none", NSDictionary::dictionaryWithEntries({})}});
  EXPECT_EQ(outer->description(),
            u"{\n"
            u"    \"a key\" = \"say \\\"\\\\\\\"\";\n"
            u"    list = (\n"
            u"        1,\n"
            u"        \"two words\",\n"
            u"        \"\",\n"
            u"        ()\n"
            u"    );\n"
            u"    none = {};\n"
            u"}");
  const auto endless = std::make_shared<NSMutableArray>();
  endless->addObject(endless);
  endless->addObject(NSDictionary::dictionaryWithEntries({{u"self", endless}}));
  EXPECT_EQ(endless->description(), u"(\n    (...),\n    {\n        self = (...);\n    }\n)");
  endless->removeAllObjects();
}

// What holds for each class with a mutable form: copies are equal and apart, immutable objects give themselves.
template <class Immutable, class Change>
void expectCopies(const Ref<Immutable>& object, Change change) {
  SCOPED_TRACE(testing::PrintToString(object->className()));
  EXPECT_EQ(object->copy(), object);
  const Ref<NSObject> changed = object->mutableCopy();
  const Ref<NSObject> snapshot = changed->copy();
  EXPECT_NE(changed, object);
  EXPECT_NE(snapshot, changed);
  EXPECT_EQ(snapshot->copy(), snapshot) << "the copy is immutable";
  for (const Ref<NSObject>& equal : {changed, snapshot}) {
    EXPECT_TRUE(isEqual(equal, object) && isEqual(object, equal));
    EXPECT_EQ(equal->hash(), object->hash());
  }
  change(changed);
  EXPECT_FALSE(isEqual(changed, object));
  EXPECT_FALSE(isEqual(object, changed));
  EXPECT_TRUE(isEqual(snapshot, object));
  EXPECT_FALSE(isEqual(object, NSNull::null()));
  const Immutable onTheStack(*object);
  EXPECT_TRUE(isEqual(onTheStack.copy(), object));
}

TEST(Collections, CopiesAreEqualAndApart) {
  expectCopies(std::make_shared<NSString>(u"text"),
               [](const auto& copy) { as<NSMutableString>(copy)->mutableText() += u"!"; });
  expectCopies(std::make_shared<NSData>(std::vector<std::uint8_t>{1}),
               [](const auto& copy) { as<NSMutableData>(copy)->mutableBytes().push_back(2); });
  expectCopies(std::make_shared<NSArray>(std::vector<Ref<NSObject>>{box(1)}),
               [](const auto& copy) { as<NSMutableArray>(copy)->addObject(box(2)); });
  expectCopies(NSDictionary::dictionaryWithEntries({{u"k", box(1)}}),
               [](const auto& copy) { as<NSMutableDictionary>(copy)->setObject(box(2), u"k"); });
}

// Nested in turn, so that each kind meets the other.
Ref<NSObject> nested(std::size_t levels) {
  Ref<NSObject> object = NSArray::arrayWithObjects({});
  for (std::size_t level = 1; level < levels; ++level)
    object = level % 2 == 0 ? Ref<NSObject>(NSArray::arrayWithObjects({object}))
                            : NSDictionary::dictionaryWithEntries({{u"key", object}});
  return object;
}

TEST(Collections, DeepNestsDoNotUseUpTheStack) {
  EXPECT_TRUE(nested(512)->isEqual(*nested(512)));
  const Ref<NSObject> deep = nested(1'000'000);
  EXPECT_TRUE(deep->isEqual(*deep));
  EXPECT_FALSE(deep->isEqual(*nested(1'000'000)));
  EXPECT_EQ(deep->hash(), nested(4)->hash());

  const auto makeCircle = [] {
    const auto circle = std::make_shared<NSMutableArray>();
    circle->addObject(circle);
    circle->addObject(circle);
    return circle;
  };
  const auto a = makeCircle(), b = makeCircle();
  EXPECT_EQ(a->hash(), b->hash());
  EXPECT_TRUE(a->isEqual(*a) && !a->isEqual(*b));
  for (const auto& circle : {a, b}) circle->removeAllObjects();
}

}  // namespace
