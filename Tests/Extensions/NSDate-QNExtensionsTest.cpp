#include <unicode/smpdtfmt.h>

#include <ctime>
#include <thread>

#include "Extensions/NSDate-QNExtensions.h"
#include "Support/Testing.h"

namespace {

using namespace NSDateExtensions;

NSDate at(double secondsSince1970) { return NSDate::dateWithTimeIntervalSince1970(secondsSince1970); }

void useZone(TextView name) {
  const Ref<NSTimeZone> zone = NSTimeZone::timeZoneWithName(name);
  ASSERT_TRUE(zone) << utf8(name);
  NSTimeZone::setDefaultTimeZone(zone);
  ::setenv("TZ", utf8(name).c_str(), 1);
  ::tzset();
}

TEST(NSDateTest, FixedForms) {
  const std::tuple<TextView, double, TextView, TextView, TextView> rows[] = {
      {u"Europe/Zurich", 1235923509, u"2009-03-01 17:05:09 +0100", u"01 Mar 2009 05:05:09 +0100",
       u"2009-03-01T17:05:09+01:00"},
      {u"America/St_Johns", 1246462200, u"2009-07-01 13:00:00 -0230", u"01 Jul 2009 01:00:00 -0230",
       u"2009-07-01T13:00:00-02:30"},
      // Before time was counted by zones: +0:34:08, shown by whole minutes.
      {u"Europe/Zurich", -5000000000, u"1811-07-23 15:40:40 +0034", u"23 Jul 1811 03:40:40 +0034",
       u"1811-07-23T15:40:40+00:34"},
      {u"UTC", -0.5, u"1969-12-31 23:59:59 +0000", u"31 Dec 1969 11:59:59 +0000", u"1969-12-31T23:59:59+00:00"},
      {u"UTC", -62135596800, u"0001-01-01 00:00:00 +0000", u"01 Jan 0001 12:00:00 +0000", u"0001-01-01T00:00:00+00:00"},
      {u"UTC", 253402300799.5, u"9999-12-31 23:59:59 +0000", u"31 Dec 9999 11:59:59 +0000",
       u"9999-12-31T23:59:59+00:00"},
      // Out of range, also only by the zone.
      {u"UTC", -62135596801, u"", u"", u""},
      {u"Asia/Kathmandu", 253402300799, u"", u"", u""},
      {u"UTC", infinity, u"", u"", u""},
  };
  for (const auto& [zone, seconds, iso, rfc822, w3c] : rows) {
    useZone(zone);
    const NSDate date = at(seconds);
    EXPECT_EQ(isoDateString(date), iso);
    EXPECT_EQ(rfc822DateString(date), rfc822);
    EXPECT_EQ(w3cDateTimeString(date), w3c);
    EXPECT_EQ(localeDateAndTimeString(date).empty(), iso.empty());
  }
}

// Against the C library, in zones whose distance from UTC has whole minutes at these times; and back again at any.
TEST(NSDateTest, RandomInstants) {
  std::mt19937_64 random(1);
  for (const TextView zone : {u"Europe/Zurich", u"America/St_Johns", u"Asia/Kathmandu", u"Australia/Lord_Howe",
                              u"Africa/Casablanca", u"UTC"}) {
    useZone(zone);
    for (int i = 0; i < 3000; ++i) {
      const auto time = std::uniform_int_distribution<std::time_t>(-600'000'000, 8'000'000'000)(random);
      std::tm parts{};
      ::localtime_r(&time, &parts);
      char iso[64];
      char rfc[64];
      std::strftime(iso, sizeof iso, "%Y-%m-%d %H:%M:%S %z", &parts);
      std::strftime(rfc, sizeof rfc, "%d %b %Y %I:%M:%S %z", &parts);
      ASSERT_EQ(utf8(isoDateString(at(static_cast<double>(time)))), iso);
      ASSERT_EQ(utf8(rfc822DateString(at(static_cast<double>(time)))), rfc);

      const auto any =
          static_cast<double>(std::uniform_int_distribution<std::int64_t>(-62'000'000'000, 253'000'000'000)(random));
      const auto read = dateWithIsoDateString(isoDateString(at(any)));
      ASSERT_TRUE(read);
      ASSERT_EQ(read->timeIntervalSince1970(), any);
      ASSERT_EQ(read->description(), isoDateString(at(any)));
    }
  }
}

TEST(NSDateTest, ReadsOnlyItsOwnFormat) {
  const auto date = dateWithIsoDateString(u"2009-03-01 17:05:09 +0100");
  ASSERT_TRUE(date);
  EXPECT_EQ(date->timeIntervalSince1970(), 1235923509);
  EXPECT_EQ(date->timeZone()->name(), u"GMT+0100");
  EXPECT_EQ(date->descriptionWithCalendarFormat(u"%d.%m.%Y, %H h %M, 100 %%, %q%"), u"01.03.2009, 17 h 05, 100 %, %q%");
  // DateFuzz knows what else is none: what is read is written the same.
  for (const TextView text :
       {u"2009-03-01", u" 2009-03-01 17:05:09 +0100", u"2009-03-01T17:05:09 +0100", u"2009-02-29 17:05:09 +0100",
        u"2009-13-01 17:05:09 +0100", u"0000-03-01 17:05:09 +0100", u"2009-03-01 24:05:09 +0100",
        u"2009-03-01 17:05:60 +0100", u"2009-03-01 17:05:09 +2400", u"2009-03-01 17:05:0\x0669 +0100"})
    EXPECT_FALSE(dateWithIsoDateString(text)) << utf8(text);
  EXPECT_TRUE(dateWithIsoDateString(u"2008-02-29 00:00:00 -2359"));
}

TEST(NSDateTest, LocaleFormsAsICUHasThem) {
  const TemporaryFolder folder;
  ::setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
  ::unsetenv("LC_ALL");
  ::setenv("LANG", "fr_FR.UTF-8", 1);
  ::setenv("LC_TIME", "de_CH.UTF-8", 1);
  useZone(u"America/St_Johns");
  const auto byICU = [](icu::DateFormat::EStyle date, icu::DateFormat::EStyle time, double seconds) {
    const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(date, time, "de_CH"));
    format->adoptTimeZone(icu::TimeZone::createTimeZone("America/St_Johns"));
    icu::UnicodeString string;
    format->format(seconds * 1000, string);
    return Text(string.getBuffer(), static_cast<std::size_t>(string.length()));
  };
  for (const double seconds : {1235923509.0, 1246462200.0, 0.0, 4e9}) {
    using icu::DateFormat;
    EXPECT_EQ(localeDateAndTimeString(at(seconds)), byICU(DateFormat::kLong, DateFormat::kShort, seconds));
    EXPECT_EQ(localeLongDateAndTimeString(at(seconds)), byICU(DateFormat::kLong, DateFormat::kMedium, seconds));
    EXPECT_EQ(localeShortDateAndTimeString(at(seconds)), byICU(DateFormat::kShort, DateFormat::kShort, seconds));
  }
  EXPECT_EQ(localeShortDateAndTimeString(at(1246462200)), u"01.07.09, 13:00");
}

}  // namespace
