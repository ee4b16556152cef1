#include "Extensions/NSDictionary-QNExtensions.h"
#include "Extensions/NSObject-QNExtensions.h"
#include "Platform/Foundation/ArchivedClass.h"
#include "Platform/Foundation/NSArchiver.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/NSManagedObject.h"
#include "Platform/Foundation/Properties.h"
#include "Support/Testing.h"

namespace {

struct Note : NSManagedObject {
  Note() : NSManagedObject({u"title", u"body", u"color"}) {}
  const PropertyTable& propertyTable() const override {
    static const PropertyTable table(NSManagedObject::propertyTable(),
                                     {property(u"title", &Note::title), property(u"pages", &Note::myPages)});
    return table;
  }
  Text title() const { return u"a title made up"; }

  mutable int accesses = 0;
  int changes = 0;

 protected:
  void willAccessValueForKey(TextView) const override { ++accesses; }
  void didChangeValueForKey(TextView) override { ++changes; }

  int myPages = 0;
};

TEST(NSManagedObject, KeepsValuesUnderItsAttributes) {
  Note note;
  const auto body = box(u"body");
  note.setValueForKey(body, u"body");
  EXPECT_EQ(note.changes, 1);
  EXPECT_EQ(note.valueForKey(u"body"), body);
  EXPECT_EQ(note.accesses, 1);
  note.setValueForKey(box(3), u"pages");
  EXPECT_EQ(note.accesses + note.changes, 2);
  EXPECT_THROW(note.setValueForKey(nullptr, u"nothing"), std::invalid_argument);
  EXPECT_THROW(note.setPrimitiveValueForKey(nullptr, u"pages"), std::invalid_argument);
  EXPECT_THROW(note.primitiveValueForKey(u"pages"), std::invalid_argument);
}

// With what is stored behind a property of the same name.
TEST(NSManagedObject, IsArchivedWithItsValues) {
  registerArchivedClass<Note>(u"Note");
  const auto note = std::make_shared<Note>();
  note->setPrimitiveValueForKey(box(u"stored"), u"title");
  EXPECT_TRUE(isEqual(note->valueForKey(u"title"), box(u"a title made up")));
  note->setValueForKey(box(3), u"pages");
  const auto read =
      as<Note>(NSUnarchiver::unarchiveObjectWithData(*NSArchiver::archivedDataWithRootObject(note).data).object);
  ASSERT_TRUE(read);
  EXPECT_TRUE(isEqual(read->primitiveValueForKey(u"title"), box(u"stored")));
  EXPECT_TRUE(isEqual(read->valueForKey(u"pages"), box(3)));
  EXPECT_EQ(read->changes, 0);
}

TEST(NSObjectExtensions, DictionaryWithCopiedValuesForKeys) {
  Note note;
  const auto storage = std::make_shared<NSTextStorage>(u"styled");
  note.setPrimitiveValueForKey(storage, u"body");
  note.setPrimitiveValueForKey(box(u"stored"), u"title");
  const std::vector<Text> keys = {u"title", u"color", u"body"};
  const auto copies = dictionaryWithCopiedValuesForKeys(note, keys);
  EXPECT_EQ(note.accesses, 0);
  EXPECT_EQ(copies->count(), 2U);
  EXPECT_TRUE(isEqual(copies->objectForKey(u"title"), box(u"stored")));
  const auto copy = as<NSTextStorage>(copies->objectForKey(u"body"));
  EXPECT_TRUE(copy && copy != storage && isEqual(copy, storage));

  NSMutableDictionary plain;
  plain.setObject(std::make_shared<NSMutableArray>(), u"list");
  const auto plainCopies = dictionaryWithCopiedValuesForKeys(plain, std::vector<Text>{u"list", u"missing"});
  EXPECT_EQ(plainCopies->count(), 1U);
  EXPECT_FALSE(as<NSMutableArray>(plainCopies->objectForKey(u"list")));
  EXPECT_THROW(dictionaryWithCopiedValuesForKeys(note, std::vector<Text>{u"x"}), std::invalid_argument);
}

TEST(NSDictionaryExtensions, ApplyValuesAsPropertiesToObject) {
  CapturedSystemLog log;
  Note note;
  const auto before = box(u"before");
  note.setPrimitiveValueForKey(before, u"body");
  const auto color = std::make_shared<NSColor>(NSColor::redColor());
  NSMutableDictionary values;
  values.setObject(box(7), u"pages");
  values.setObject(NSArchiver::archivedDataWithRootObject(color).data, u"color");
  values.setObject(std::make_shared<NSData>(std::vector<std::uint8_t>{1, 2, 3}), u"body");
  applyValuesAsPropertiesToObject(values, &note);
  applyValuesAsPropertiesToObject(values, nullptr);
  EXPECT_TRUE(isEqual(note.valueForKey(u"pages"), box(7)));
  EXPECT_TRUE(isEqual(note.primitiveValueForKey(u"color"), color));
  EXPECT_EQ(note.primitiveValueForKey(u"body"), before);
  const auto messages = log.take();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_NE(messages[0].find(u"Can't set property 'body'. The archive cannot be read: it is none."), TextView::npos);
  values.setObject(box(1), u"unknown");
  EXPECT_THROW(applyValuesAsPropertiesToObject(values, &note), std::invalid_argument);
}

}  // namespace
