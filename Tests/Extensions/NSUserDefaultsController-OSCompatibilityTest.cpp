#include "Extensions/NSUserDefaultsController-OSCompatibility.h"
#include "Support/PreferencesTest.h"

namespace {

using NSUserDefaultsControllerExtensions::standardUserDefaults;

using TypedPreferencesTest = PreferencesTest;

TEST_F(TypedPreferencesTest, ReadersTakeNumbersAndText) {
  // What is stored, and what is made of it as truth, a truth number, a float, an integer and a text. Floats and
  // integers that a missing value stands for are 9 and 0.
  const std::tuple<Ref<NSObject>, bool, Text, float, std::int32_t, std::optional<Text>> rows[] = {
      {nullptr, false, u"1", 9, 0, std::nullopt},
      {box(u"YES"), true, u"1", 0, 0, u"YES"},
      {box(u"2.5"), false, u"1", 2.5F, 2, u"2.5"},
      {box(u"99999999999"), false, u"1", 99999999999.F, 2147483647, u"99999999999"},
      {box(7), true, u"7", 7, 7, std::nullopt},
      {box(0.5), true, u"0.5", 0.5F, 0, std::nullopt},
      {box((std::int64_t{1} << 32) + 5), true, u"4294967301", 4294967301.F, 5, std::nullopt},
      {box(true), true, u"1", 1, 1, std::nullopt},
      {std::make_shared<NSDate>(), false, u"1", 9, 0, std::nullopt},
  };
  NSUserDefaultsController& preferences = standardUserDefaults();
  for (const auto& [stored, isTrue, boolNumber, asFloat, asInteger, string] : rows) {
    SCOPED_TRACE(testing::PrintToString(description(stored)));
    setObject(preferences, stored, u"key");
    EXPECT_EQ(boolForKey(preferences, u"key"), isTrue);
    EXPECT_EQ(boolNumberForKey(preferences, u"key", true)->stringValue(), boolNumber);
    EXPECT_EQ(floatForKey(preferences, u"key", 9), asFloat);
    EXPECT_EQ(integerForKey(preferences, u"key"), asInteger);
    EXPECT_EQ(stringForKey(preferences, u"key"), string);
    EXPECT_EQ(dateForKey(preferences, u"key") != nullptr, as<NSDate>(stored) != nullptr);
    EXPECT_EQ(objectForKey(preferences, u"key") == nullptr, stored == nullptr);
  }
  EXPECT_FALSE(boolNumberForKey(preferences, u"nowhere", false)->boolValue());
}

TEST_F(TypedPreferencesTest, WritersStoreAndSave) {
  NSUserDefaultsController& preferences = standardUserDefaults();
  NSUserDefaults elsewhere(textFromFileSystem(folder.path("elsewhere.plist")));
  NSUserDefaultsController other(elsewhere);
  setBool(other, true, u"bool");
  setFloat(other, 0.1F, u"float");
  setInteger(other, std::int64_t{1} << 40, u"integer");
  setString(other, u"text", u"string");
  setString(other, std::nullopt, u"nil string");
  const auto date = std::make_shared<NSDate>(NSDate::dateWithTimeIntervalSince1970(86400));
  setDate(other, date, u"date");
  setValuesFromDictionary(other, dictionaryOf({{u"a", box(1)}, {u"string", box(u"new")}}));
  setValuesFromDictionary(other, nullptr);
  ASSERT_TRUE(synchronize(other));
  EXPECT_EQ(elsewhere.objectForKey(u"bool"), nullptr);

  const NSUserDefaults saved(preferences.defaults().path());
  const std::pair<TextView, Ref<NSObject>> rows[] = {{u"bool", box(true)},
                                                     {u"float", box(0.1F)},
                                                     {u"integer", box(std::int64_t{1} << 40)},
                                                     {u"string", box(u"new")},
                                                     {u"date", date}};
  for (const auto& [key, value] : rows) EXPECT_TRUE(isEqual(saved.objectForKey(key), value)) << utf8(key);
  EXPECT_EQ(as<NSNumber>(saved.objectForKey(u"bool"))->kind(), NSNumber::Kind::Boolean);
  EXPECT_EQ(stringForKey(preferences, u"nil string"), u"");
}

}  // namespace
