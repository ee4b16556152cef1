#include <cstdlib>

#include "Extensions/NSUserDefaultsController-OSCompatibility.h"
#include "Extensions/NSValue-OSExtensions.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

using NSUserDefaultsControllerExtensions::standardUserDefaults;

// What the typed readers make of each kind of stored value. Floats and integers that a missing value stands for are 9
// and 0.
struct Row {
  const char* name;
  Ref<NSObject> stored;
  bool isTrue;
  Text boolNumber;
  float asFloat;
  std::int32_t asInteger;
  std::optional<Text> string;
};

class TypedPreferencesTest : public testing::Test {
 protected:
  TypedPreferencesTest() { setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1); }

  TemporaryFolder folder;
};

TEST_F(TypedPreferencesTest, ReadersTakeNumbersAndText) {
  const Row rows[] = {
      {"missing", nullptr, false, u"1", 9, 0, std::nullopt},
      {"yes", box(u"YES"), true, u"1", 0, 0, u"YES"},
      {"decimal as text", box(u"2.5"), false, u"1", 2.5F, 2, u"2.5"},
      {"huge text", box(u"99999999999"), false, u"1", 99999999999.F, 2147483647, u"99999999999"},
      {"seven", box(7), true, u"7", 7, 7, std::nullopt},
      {"half", box(0.5), true, u"0.5", 0.5F, 0, std::nullopt},
      {"beyond 32 bits", box((std::int64_t{1} << 32) + 5), true, u"4294967301", 4294967301.F, 5, std::nullopt},
      {"truth", box(true), true, u"1", 1, 1, std::nullopt},
      {"date", std::make_shared<NSDate>(), false, u"1", 9, 0, std::nullopt},
  };
  NSUserDefaultsController& preferences = standardUserDefaults();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    setObject(preferences, row.stored, u"key");
    EXPECT_EQ(boolForKey(preferences, u"key"), row.isTrue);
    EXPECT_EQ(boolNumberForKey(preferences, u"key", true)->stringValue(), row.boolNumber);
    EXPECT_EQ(floatForKey(preferences, u"key", 9), row.asFloat);
    EXPECT_EQ(integerForKey(preferences, u"key"), row.asInteger);
    EXPECT_EQ(stringForKey(preferences, u"key"), row.string);
    EXPECT_EQ(dateForKey(preferences, u"key") != nullptr, std::string_view(row.name) == "date");
    EXPECT_EQ(objectForKey(preferences, u"key") == nullptr, row.stored == nullptr);
  }
  EXPECT_FALSE(boolNumberForKey(preferences, u"nowhere", false)->boolValue());
}

TEST_F(TypedPreferencesTest, WritersStoreAndSave) {
  NSUserDefaultsController& preferences = standardUserDefaults();
  // Any controller will do, and all mean the shared one.
  NSUserDefaults elsewhere(textFromFileSystem(folder.path("elsewhere.plist")));
  NSUserDefaultsController other(elsewhere);
  setBool(other, true, u"bool");
  setFloat(other, 0.1F, u"float");
  setInteger(other, std::int64_t{1} << 40, u"integer");
  setString(other, u"text", u"string");
  setString(other, std::nullopt, u"nil string");
  setDate(other, std::make_shared<NSDate>(NSDate::dateWithTimeIntervalSince1970(86400)), u"date");
  setValuesFromDictionary(other, NSDictionary::dictionaryWithEntries({{u"a", box(1)}, {u"string", box(u"new")}}));
  setValuesFromDictionary(other, nullptr);
  ASSERT_TRUE(synchronize(other));
  EXPECT_EQ(elsewhere.objectForKey(u"bool"), nullptr);

  const NSUserDefaults saved(preferences.defaults().path());
  EXPECT_EQ(as<NSNumber>(saved.objectForKey(u"bool"))->kind(), NSNumber::Kind::Boolean);
  EXPECT_EQ(as<NSNumber>(saved.objectForKey(u"float"))->floatValue(), 0.1F);
  EXPECT_EQ(as<NSNumber>(saved.objectForKey(u"integer"))->integerValue(), std::int64_t{1} << 40);
  EXPECT_EQ(description(saved.objectForKey(u"string")), u"new");
  EXPECT_EQ(stringForKey(preferences, u"nil string"), u"");
  EXPECT_EQ(description(saved.objectForKey(u"date")), u"1970-01-02 00:00:00 +0000");
}

TEST(NSValueOSExtensions, BoxGeometryAndReadNilAsZero) {
  using namespace NSValueExtensions;
  EXPECT_EQ(CGRectValue(valueWithCGRect({1, 2, 3, 4})), CGRect(1, 2, 3, 4));
  EXPECT_EQ(CGSizeValue(valueWithCGSize({3, 4})), (CGSize{3, 4}));
  EXPECT_EQ(CGRectValue(Ref<NSValue>()), CGRectZero);
  EXPECT_EQ(CGRectValue(valueWithCGSize({3, 4})), CGRectZero);
}

}  // namespace
}  // namespace kelvane
