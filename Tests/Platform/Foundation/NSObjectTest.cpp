#include <type_traits>

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Properties.h"
#include "Support/Testing.h"

namespace {

enum class Mood : std::uint8_t { Good, Bad };

struct Person : NSObject {
  Person() = default;
  explicit Person(Text name) : myName(std::move(name)) {}
  const PropertyTable& propertyTable() const override {
    static const PropertyTable table(
        NSObject::propertyTable(),
        {property(u"name", &Person::myName), property(u"age", &Person::myAge), property(u"ratio", &Person::myRatio),
         property(u"alive", &Person::myIsAlive), property(u"frame", &Person::myFrame),
         property(u"level", &Person::myLevel), property(u"friend", &Person::myFriend),
         property(u"shout", &Person::shout), property(u"born", &Person::myBirth),
         property(u"title", &Person::title, &Person::setTitle), property(u"mood", &Person::mood, &Person::setMood)});
    return table;
  }
  // Hides the functions of the same name, which have other names for this.
  bool isEqual(const NSObject& other) const override {
    const Person* person = as<Person>(&other);
    return this == &other || (person && myFriend && areEqual(myFriend, person->myFriend));
  }
  std::size_t hash() const override { return 0; }
  Text shout() const { return myName + u"!"; }
  const std::optional<Text>& title() const { return myTitle; }
  void setTitle(std::optional<TextView> title) { myTitle = title; }
  Mood mood() const { return myMood; }
  void setMood(Mood mood) { myMood = mood; }

  Text myName = u"Ann";
  std::optional<Text> myTitle;
  Mood myMood = Mood::Good;
  const NSDate myBirth = NSDate::dateWithTimeIntervalSinceReferenceDate(0);
  int myAge = 30;
  std::uint8_t myLevel = 0;
  std::optional<double> myRatio;
  bool myIsAlive = true;
  CGRect myFrame;
  Ref<Person> myFriend;
};

struct Pilot : Person {
  using Person::Person;
  const PropertyTable& propertyTable() const override {
    static const PropertyTable table(Person::propertyTable(),
                                     {property(u"age", &Pilot::flownHours), property(u"Zone", &Pilot::flownHours)});
    return table;
  }
  std::size_t flownHours() const { return 1200; }
};

template <class T>
class Holder : public NSObject {};

static_assert(!std::is_copy_constructible_v<NSObject> && !std::is_copy_assignable_v<NSObject>);

TEST(NSObject, DefaultsOfAClass) {
  const auto a = std::make_shared<Person>();
  const auto b = std::make_shared<Person>();
  EXPECT_TRUE(isEqual(a, a) && !isEqual(a, b) && !isEqual(a, Ref<NSObject>()));
  EXPECT_EQ(a->description(), format(u"<Person: %p>", static_cast<const NSObject*>(a.get())));
  EXPECT_EQ(description(Ref<Person>()), u"(null)");
  EXPECT_EQ(a->mutableCopy(), nullptr);
  EXPECT_THAT([&] { a->copy(); }, refuses("copy", "<Person: 0x"));
}

TEST(NSObject, OrderIsWithinTextNumbersAndDates) {
  const auto date = [](double seconds) {
    return std::make_shared<NSDate>(NSDate::dateWithTimeIntervalSinceReferenceDate(seconds));
  };
  const std::vector<std::vector<Ref<NSObject>>> lists = {
      {box(u""), box(u"A"), box(u"a"), box(u"a/"), box(u"ab"), box(u"\xD800\xDC00"), box(u"\xE000")},
      {box(std::nan("")), box(-HUGE_VAL), box(std::numeric_limits<std::int64_t>::min()), box(-0.5), box(0), box(true),
       box(9007199254740993), box(9007199254740994.0), box(std::numeric_limits<std::int64_t>::max()),
       box(std::numeric_limits<std::uint64_t>::max()), box(18446744073709551616.0)},
      {date(-1), date(0), date(0.5)},
  };
  for (const auto& list : lists) {
    for (std::size_t i = 0; i < list.size(); ++i)
      for (std::size_t j = 0; j < list.size(); ++j)
        EXPECT_TRUE(compare(list[i].get(), list[j].get()) == (i <=> j)) << i << ' ' << j;
    EXPECT_TRUE(compare(nullptr, list[0].get()) == 0);
    for (const NSObject* other :
         {static_cast<const NSObject*>(nullptr), static_cast<const NSObject*>(NSNull::null().get())})
      EXPECT_THROW(compare(list[0].get(), other), std::invalid_argument);
  }
  EXPECT_THROW(NSObject().compare(NSObject()), std::invalid_argument);
}

TEST(NSObject, ClassNameIsWithoutNamespaces) {
  struct Inside : NSObject {};
  EXPECT_EQ(Inside().className(), u"Inside");
  EXPECT_TRUE(Holder<std::vector<NSRange>>().className().starts_with(u"Holder<std::vector<kelvane::NSRange"));
}

TEST(NSObject, PropertiesAreReadAndWrittenByKey) {
  const auto bob = std::make_shared<Person>(u"Bob");
  const std::tuple<TextView, Ref<NSObject>, Ref<NSObject>, Ref<NSObject>> rows[] = {
      {u"name", box(u"Ann"), std::make_shared<NSMutableString>(u"Eve"), box(u"Eve")},
      {u"level", box(0), box(-1), box(255)},
      {u"ratio", nullptr, box(2), box(2.0)},
      {u"friend", nullptr, bob, bob},
      {u"alive", box(true), box(0), box(false)},
      {u"frame", box(CGRectZero), box(CGRect(1, 2, 3, 4)), box(CGRect(1, 2, 3, 4))},
      {u"title", nullptr, box(u"a title too long to be kept in place"), box(u"a title too long to be kept in place")},
      {u"mood", box(0), box(Mood::Bad), box(1)},
  };
  const auto person = std::make_shared<Person>();
  for (const auto& [key, before, written, after] : rows) {
    SCOPED_TRACE(testing::PrintToString(key));
    EXPECT_EQ(description(person->valueForKey(key)), description(before));
    person->setValueForKey(written, key);
    EXPECT_EQ(description(person->valueForKey(key)), description(after));
    EXPECT_TRUE(isEqual(person->valueForKey(key), after));
  }
  EXPECT_TRUE(as<NSNumber>(person->valueForKey(u"alive"))->isBoolean());
}

TEST(NSObject, WhatCannotBeReadOrWrittenIsRefused) {
  Person person;
  const auto refused = [&](const Ref<NSObject>& value, TextView key) {
    const Text before = description(person.valueForKey(key));
    EXPECT_THAT([&] { person.setValueForKey(value, key); }, refuses("setValue:forKey:", "'" + utf8(key) + "'"));
    EXPECT_EQ(description(person.valueForKey(key)), before);
  };
  for (const TextView key : {u"name", u"age", u"frame", u"mood"}) refused(nullptr, key);
  refused(box(u"31"), u"age");
  refused(box(CGPoint{1, 2}), u"frame");
  refused(box(u"x"), u"ratio");
  refused(box(u"x"), u"shout");
  refused(box(NSDate()), u"born");
  EXPECT_THAT([&] { person.setValueForKey(nullptr, u"age"); },
              ThrowsMessage<std::invalid_argument>(
                  std::string("setValue:forKey: unbox: a number is wanted, not '(null)', for key 'age'")));
  for (const TextView key : {u"", u"Name", u"nam", u"names"}) {
    const std::string name = "'" + utf8(key) + "'";
    EXPECT_THAT([&] { person.valueForKey(key); }, refuses("valueForKey:", "Person", name));
    EXPECT_THAT([&] { person.setValueForKey(box(1), key); }, refuses("setValue:forKey:", "Person", name));
  }
}

TEST(NSObject, SubclassesInheritAndReplaceProperties) {
  Pilot pilot(u"Amy");
  EXPECT_EQ(description(pilot.valueForKey(u"shout")), u"Amy!");
  EXPECT_EQ(description(pilot.valueForKey(u"age")), u"1200");
  EXPECT_THROW(pilot.setValueForKey(box(1), u"age"), std::invalid_argument) << "the replaced one could be written";
  EXPECT_EQ(pilot.propertyTable().properties().front().key, u"Zone") << "the first in order";
}

TEST(NSObject, KeyPathsFollowObjectsAndCollections) {
  const auto ann = std::make_shared<Person>(u"Ann");
  const auto bob = std::make_shared<Person>(u"Bob");
  ann->setValueForKey(bob, u"friend");
  const auto people = arrayOf({ann, bob});
  const auto root = dictionaryOf({{u"people", people}, {u"boss", ann}, {u"", ann}});
  const std::pair<TextView, TextView> rows[] = {
      {u"boss.friend.name.length", u"3"}, {u"boss.friend.friend.name", u"(null)"},
      {u"nobody.name.length", u"(null)"}, {u"people.name", u"(\n    Ann,\n    Bob\n)"},
      {u"people.friend.@count", u"2"},    {u".name", u"Ann"},
  };
  for (const auto& [path, expected] : rows) {
    EXPECT_EQ(description(root->valueForKeyPath(path)), expected) << testing::PrintToString(path);
  }
  EXPECT_TRUE(isEqual(root->valueForKeyPath(u"people.friend"), arrayOf({bob, NSNull::null()})));
  for (const TextView path : {u"boss.", u"boss..name", u"boss.friend.nothing", u"people.@sum"})
    EXPECT_THROW(root->valueForKeyPath(path), std::invalid_argument) << testing::PrintToString(path);

  root->setValueForKeyPath(box(u"Eve"), u"boss.friend.name");
  EXPECT_EQ(description(bob->valueForKey(u"name")), u"Eve");
  root->setValueForKeyPath(box(9), u"people.age");
  EXPECT_TRUE(isEqual(people->valueForKey(u"age"), arrayOf({box(9), box(9)})));
  root->setValueForKeyPath(box(9), u"nobody.name");
  root->setValueForKeyPath(box(9), u"boss.friend.friend.name");
  EXPECT_THROW(root->setValueForKeyPath(box(9), u"boss"), std::invalid_argument);
}

}  // namespace
