#include <ctime>

#include "Platform/Foundation/CivilTime.h"
#include "Platform/Foundation/NSTimeZone.h"
#include "Support/Testing.h"

namespace {

constexpr const char* database = "/usr/share/zoneinfo";

// The C library's answer, for the zone that TZ names.
long offsetByC(std::int64_t instant) {
  const std::time_t time = instant;
  std::tm parts{};
  return ::localtime_r(&time, &parts) ? parts.tm_gmtoff : -1;
}

void useZone(const std::string& name) {
  ::setenv("TZ", name.c_str(), 1);
  ::tzset();
}

void expectPeriodsAsInC(const ZoneRules& rules, const std::string& name, std::int64_t earliest = startOfYear1) {
  useZone(name);
  std::mt19937_64 random(1);
  std::uniform_int_distribution<std::int64_t> anyTime(earliest, startOfYear10000);
  std::uniform_int_distribution<std::int64_t> recent(std::max<std::int64_t>(earliest, -3'000'000'000), 5'000'000'000);
  for (int i = 0; i < 60; ++i) {
    const std::int64_t instant = i % 4 == 0 ? anyTime(random) : recent(random);
    const ZonePeriod period = rules.periodAt(instant);
    ASSERT_LE(period.from, instant) << name;
    ASSERT_GT(period.until, instant) << name;
    for (const std::int64_t place : {instant, std::max(period.from, earliest), period.until - 1, period.until}) {
      if (place > startOfYear10000) continue;
      ASSERT_EQ(rules.periodAt(place).offset, offsetByC(place)) << name << " at " << place;
    }
  }
}

TEST(ZoneRulesTest, EveryZoneOfTheDatabaseAsTheCLibraryReadsIt) {
  int count = 0;
  for (auto entry = fs::recursive_directory_iterator(database); entry != fs::recursive_directory_iterator(); ++entry) {
    const std::string name = entry->path().lexically_relative(database).native();
    // These count leap seconds, or are the same again.
    if (name == "right" || name == "posix") entry.disable_recursion_pending();
    if (!entry->is_regular_file()) continue;
    const std::string bytes = bytesOfFile(entry->path());
    if (!bytes.starts_with("TZif")) continue;
    const auto rules = ZoneRules::fromTZif(bytes);
    ASSERT_TRUE(rules) << name;
    expectPeriodsAsInC(*rules, name);
    ++count;
  }
  EXPECT_GT(count, 300);
}

TEST(ZoneRulesTest, RulesAsTheCLibraryReadsThem) {
  for (const char* rule : {"UTC0", "CET-1CEST,M3.5.0,M10.5.0/3", "<+0545>-5:45", "<-02>2<-01>,M3.5.0/-1,M10.5.0/0",
                           "NZST-12NZDT,M9.5.0,M4.1.0/3", "EST5XDT,M3.2.0,M11.1.0", "AAA0BBB,J60/1,J300/0:30:15",
                           "AAA-3BBB-4:30,59/24,364/2", "IST-2IDT,M3.4.4/26,M10.5.0"}) {
    const auto rules = ZoneRules::fromPOSIX(rule);
    ASSERT_TRUE(rules) << rule;
    // Before, the C library takes the days of 1970 for those of any year.
    constexpr std::int64_t startOf1972 = 63'072'000;
    expectPeriodsAsInC(*rules, rule, startOf1972);
  }
}

TEST(ZoneRulesTest, RefusesWhatIsNoRule) {
  for (const char* rule : {"", "CE", "CET", "CET-1x", "CET-25", "CET-1:60", "<CET-1", "CET-1CEST,M3.5.0",
                           "CET-1CEST,M13.1.0,M10.5.0", "CET-1CEST,J0,J3", "CET-1CEST,M3.5.0,M10.5.0/168"})
    EXPECT_FALSE(ZoneRules::fromPOSIX(rule)) << rule;
}

// DateFuzz reads files that are damaged elsewhere.
TEST(ZoneRulesTest, CutFilesAreRefused) {
  const std::string bytes = bytesOfFile(fs::path(database) / "Europe/Berlin");
  for (std::size_t size = 0; size < bytes.size(); ++size)
    EXPECT_FALSE(ZoneRules::fromTZif(std::string_view(bytes).substr(0, size))) << size;
}

TEST(NSTimeZoneTest, NamesAndTheDefault) {
  const Ref<NSTimeZone> zurich = NSTimeZone::timeZoneWithName(u"Europe/Zurich");
  ASSERT_TRUE(zurich);
  EXPECT_EQ(zurich->name(), u"Europe/Zurich");
  EXPECT_EQ(zurich->secondsFromGMTForDate(NSDate::dateWithTimeIntervalSince1970(0)), 3600);
  for (const TextView name : {u"", u"Nowhere/Land", u"../zoneinfo/UTC", u"/etc/localtime", u"tzdata.zi", u"Europe"})
    EXPECT_FALSE(NSTimeZone::timeZoneWithName(name)) << utf8(name);

  ::setenv("TZ", ":Asia/Kathmandu", 1);
  EXPECT_EQ(NSTimeZone::defaultTimeZone()->name(), u"Asia/Kathmandu");
  NSTimeZone::setDefaultTimeZone(zurich);
  EXPECT_EQ(NSTimeZone::defaultTimeZone(), zurich);
  NSTimeZone::setDefaultTimeZone(nullptr);
  EXPECT_EQ(NSTimeZone::defaultTimeZone(), NSTimeZone::systemTimeZone());
  EXPECT_EQ(NSTimeZone::timeZoneForSecondsFromGMT(-9000)->name(), u"GMT-0230");
  EXPECT_EQ(NSTimeZone::timeZoneForSecondsFromGMT(-86400), nullptr);
  EXPECT_TRUE(zurich->copy()->isEqual(*NSTimeZone::timeZoneWithName(u"Europe/Zurich")) &&
              !zurich->isEqual(*NSTimeZone::systemTimeZone()));
}

TEST(NSTimeZoneTest, TheVariableMayHoldRules) {
  ::setenv("TZ", "XST-3:30", 1);
  const auto zone = NSTimeZone::systemTimeZone();
  EXPECT_EQ(zone->name(), u"XST-3:30");
  EXPECT_EQ(zone->secondsFromGMTForDate(NSDate::dateWithTimeIntervalSince1970(0)), 12600);
}

}  // namespace
