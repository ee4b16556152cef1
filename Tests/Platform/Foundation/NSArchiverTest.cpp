#include <typeinfo>

#include "Platform/Foundation/ArchivedClass.h"
#include "Platform/Foundation/NSArchiver.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSCalendarDate.h"
#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/NSIndexSet.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/Properties.h"
#include "Support/Testing.h"

namespace {

Ref<NSObject> thereAndBack(const Ref<NSObject>& object) {
  const ArchivedData archived = NSArchiver::archivedDataWithRootObject(object);
  EXPECT_EQ(archived.error, u"");
  if (!archived.data) return nullptr;
  const UnarchivedObject read = NSUnarchiver::unarchiveObjectWithData(*archived.data);
  EXPECT_EQ(read.error, u"");
  return read.object;
}

Text errorOf(const Ref<NSObject>& object) { return NSArchiver::archivedDataWithRootObject(object).error; }
Text errorOf(const std::string& bytes) {
  const UnarchivedObject read =
      NSUnarchiver::unarchiveObjectWithData({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  EXPECT_EQ(read.object, nullptr);
  return read.error;
}

// An archive of version 1 around `body`, with the checksum that belongs to it.
std::string archiveOf(const std::string& body) {
  std::string bytes = "KelvArc\1" + body;
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
  for (unsigned shift = 0; shift < 64; shift += 8) bytes += static_cast<char>(hash >> shift);
  return bytes;
}

std::string number(std::uint64_t value) {
  std::string bytes;
  for (; value >= 0x80; value >>= 7U) bytes += static_cast<char>(value | 0x80U);
  return bytes + static_cast<char>(value);
}

std::string ascii(const std::string& text) { return number(2 * text.size()) + text; }

struct Person : NSObject {
  const PropertyTable& propertyTable() const override {
    static const PropertyTable table(NSObject::propertyTable(),
                                     {property(u"name", &Person::myName), property(u"friend", &Person::myFriend),
                                      property(u"initial", &Person::initial)});
    return table;
  }
  Text initial() const { return myName.substr(0, 1); }

  Text myName;
  Ref<NSObject> myFriend;
};

TEST(NSArchiver, RoundTripsEachKindOfValue) {
  const auto font = std::make_shared<NSFont>(NSFont::fontWithFamily(u"Helvetica", NSBoldFontMask, 5, 12.5));
  NSMutableAttributedString styled(u"styled \xD800 text");
  styled.addAttribute(NSFontAttributeName, font, {0, 6});
  styled.addAttribute(NSFontAttributeName, font, {9, 2});
  const auto indexes = std::make_shared<NSMutableIndexSet>();
  for (const std::size_t index : {1, 2, 900}) indexes->addIndex(index);
  const Ref<NSObject> objects[] = {
      box(u"gr\u00FC\u00DF\u20AC\xDC00"),
      box(std::numeric_limits<std::int64_t>::min()),
      box(std::numeric_limits<std::uint64_t>::max()),
      box(-0.0),
      box(NaN),
      std::make_shared<NSCalendarDate>(NSDate::dateWithTimeIntervalSinceReferenceDate(1e8),
                                       NSTimeZone::timeZoneWithName(u"Europe/Zurich"), u"%d.%m.%Y %z"),
      std::make_shared<NSCalendarDate>(NSDate(), NSTimeZone::timeZoneForSecondsFromGMT(-12600)),
      std::make_shared<NSData>(std::vector<std::uint8_t>{0, 255}),
      arrayOf({box(1), NSNull::null()}),
      dictionaryOf({{u"a", box(1)}, {u"\u20AC", box(u"b")}}),
      std::make_shared<NSIndexSet>(NSRange{7, 3}),
      indexes,
      NSURL::URLWithString(u"https://example.org/?a#b"),
      box(CGPoint{1, -2}),
      box(CGSize{3, 4}),
      box(NSRange{5, 6}),
      NSError::errorWithDescription(u"domain", -7, u"what"),
      std::make_shared<NSColor>(NSColor::grayColor()),
      std::make_shared<NSColor>(NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.4)),
      font,
      styled.copy(),
      styled.mutableCopy(),
      std::make_shared<NSTextStorage>(styled),
  };
  for (const auto& object : objects) {
    const auto read = thereAndBack(object);
    ASSERT_TRUE(isEqual(read, object)) << testing::PrintToString(object->description());
    const NSObject& a = *object;
    const NSObject& b = *read;
    EXPECT_TRUE(typeid(a) == typeid(b) && a.description() == b.description());
    EXPECT_TRUE(!as<NSNumber>(object) || as<NSNumber>(object)->kind() == as<NSNumber>(read)->kind());
  }
  const auto text = as<NSAttributedString>(thereAndBack(styled.copy()));
  EXPECT_EQ(text->attribute(NSFontAttributeName, 0), text->attribute(NSFontAttributeName, 9));
}

TEST(NSArchiver, KeepsIdentityAndTheHostsClasses) {
  registerArchivedClass<Person>(u"Person");
  const auto ann = std::make_shared<Person>();
  const auto bob = std::make_shared<Person>();
  ann->myName = u"Ann";
  bob->myName = u"Bob";
  bob->myFriend = ann;
  const auto read = as<NSArray>(thereAndBack(arrayOf({bob, ann, bob})));
  ASSERT_TRUE(read);
  const auto readBob = as<Person>(read->objectAtIndex(0));
  EXPECT_TRUE(readBob->myName == u"Bob" && readBob == read->objectAtIndex(2));
  EXPECT_EQ(readBob->myFriend, read->objectAtIndex(1));

  ann->myFriend = bob;
  EXPECT_EQ(errorOf(ann), u"An object of class Person cannot be archived: it leads back to itself.");
  bob->myFriend = nullptr;
  EXPECT_THROW(registerArchivedClass<NSMutableString>(u"Person"), std::invalid_argument);

  // The class changes: an older program refuses what a newer one has written, and so does one without the property.
  const auto encode = [](const NSObject&, ArchiveEncoder& encoder) { encoder.encodeUnsigned(1); };
  const auto decode = [](ArchiveDecoder& decoder) -> Ref<NSObject> {
    return decoder.classVersion() == 2 && decoder.decodeUnsigned() == 1 ? std::make_shared<Person>() : nullptr;
  };
  const auto old = NSArchiver::archivedDataWithRootObject(bob).data;
  registerArchivedClass(typeid(Person), {u"Person", 2, encode, decode});
  EXPECT_EQ(NSUnarchiver::unarchiveObjectWithData(*old).error,
            u"The archive cannot be read: object 2 (Person): it cannot be made.");
  const auto current = NSArchiver::archivedDataWithRootObject(bob).data;
  EXPECT_TRUE(NSUnarchiver::unarchiveObjectWithData(*current).object);
  registerArchivedClass<Person>(u"Person");
  EXPECT_EQ(NSUnarchiver::unarchiveObjectWithData(*current).error,
            u"The archive cannot be read: the class 'Person' is of version 2, and only 0 is known.");
  EXPECT_EQ(
      errorOf(archiveOf(number(2) + ascii("Person") + number(0) + ascii("NSString") + number(0) + number(2) +
                        number(1) + number(4) + ascii("Ann") + number(0) + number(6) + number(1) + ascii("age") +
                        number(1))),
      u"The archive cannot be read: object 2 (Person): setValue:forKey: an object of class Person has no key 'age'.");
  // What circles there are would keep each other alive.
  ann->myFriend = nullptr;
}

TEST(NSArchiver, RefusesWhatCannotBeWritten) {
  class Stranger : public NSMutableArray {};
  EXPECT_EQ(errorOf(Ref<NSObject>()), u"There is no object to be archived.");
  EXPECT_EQ(errorOf(arrayOf({std::make_shared<Stranger>()})),
            u"Objects of class Stranger cannot be archived: the class is not registered.");
  EXPECT_EQ(errorOf(std::make_shared<NSValue>(NSValue::valueWithPointer(nullptr))),
            u"An address cannot be archived: it means nothing in another process.");
  EXPECT_EQ(errorOf(std::make_shared<NSFont>(FontFace{u"a", u"a", 0, 16}, 12)),
            u"A font whose weight is beyond 15 cannot be archived.");
  const auto circle = std::make_shared<NSMutableArray>();
  circle->addObject(arrayOf({circle}));
  EXPECT_EQ(errorOf(circle), u"An object of class NSMutableArray cannot be archived: it leads back to itself.");
  circle->removeAllObjects();

  Ref<NSObject> chain = NSNull::null();
  for (std::size_t depth = 1; depth < maximumArchiveDepth; ++depth) chain = arrayOf({chain});
  EXPECT_TRUE(thereAndBack(chain));
  // Too deep only by way of an object that was seen before in a shallower place.
  EXPECT_EQ(errorOf(arrayOf({chain, arrayOf({chain})})),
            u"The object cannot be archived: objects refer to each other over more than 512 steps.");
  Ref<NSObject> doubled = NSNull::null();
  for (int i = 0; i < 64; ++i) doubled = arrayOf({doubled, doubled});
  EXPECT_EQ(errorOf(doubled),
            u"The object cannot be archived: objects share so many others that going through them would not end.");
}

TEST(NSArchiver, RefusesDamagedAndHostileArchives) {
  const auto object = dictionaryOf({{u"a", arrayOf({box(1), box(u"€")})}});
  const auto data = NSArchiver::archivedDataWithRootObject(object).data;
  const std::string good(data->bytes().begin(), data->bytes().end());
  for (std::size_t i = 0; i < good.size(); ++i) {
    EXPECT_NE(errorOf(good.substr(0, i)), u"") << i;
    std::string damaged = good;
    damaged[i] = static_cast<char>(damaged[i] ^ 4);
    EXPECT_NE(errorOf(damaged), u"") << i;
  }

  const std::string null = number(1) + ascii("NSNull") + number(0);
  const std::string array = number(1) + ascii("NSArray") + number(0);
  const std::string record(2, '\0');
  // Each array holds the one before twice.
  std::string doubled = array + number(65) + number(0) + number(1) + number(0);
  for (std::uint64_t i = 1; i < 65; ++i) doubled += number(0) + number(3) + number(2) + number(i) + number(i);
  std::string chain = array + number(513) + number(0) + number(1) + number(0);
  for (std::uint64_t i = 1; i < 513; ++i) {
    const std::string values = number(1) + number(i);
    chain += number(0) + number(values.size()) + values;
  }
  const std::tuple<std::string, TextView> rows[] = {
      {"", u"it is none"},
      {"KelvArc", u"it is cut short"},
      {archiveOf(""), u"it is cut short"},
      {archiveOf(null + number(1) + record + "x"), u"there is something behind its last object"},
      {archiveOf(null + number(1) + number(1) + number(0)), u"an object is of no class"},
      {archiveOf(null + number(1) + number(0) + number(1) + "x"),
       u"object 1 (NSNull): it has more values than it should"},
      {archiveOf(null + number(1000000000000) + record), u"it is cut short"},
      {archiveOf(null + number(1) + number(0) + std::string(9, '\xFF') + '\2'), u"a number has more than 64 bits"},
      {archiveOf(number(1) + ascii("System") + number(0) + number(1) + record),
       u"the class 'System' is not registered"},
      {archiveOf(array + number(1) + number(0) + number(2) + number(1) + number(1)),
       u"object 1 (NSArray): it refers to an object that does not stand before it"},
      {archiveOf(array + number(1) + number(0) + number(2) + number(1) + number(0)),
       u"object 1 (NSArray): an object of another kind is expected"},
      {archiveOf(number(1) + ascii("NSIndexSet") + number(0) + number(1) + number(0) + number(5) + number(2) +
                 number(5) + number(2) + number(6) + number(2)),
       u"object 1 (NSIndexSet): its ranges are not in order"},
      {archiveOf(doubled), u"object 25 (NSArray): objects share so many others that going through them would not end"},
      {archiveOf(chain), u"object 513 (NSArray): objects refer to each other over more than 512 steps"},
  };
  for (const auto& [bytes, reason] : rows)
    EXPECT_EQ(errorOf(bytes), u"The archive cannot be read: " + Text(reason) + u".");
}

}  // namespace
