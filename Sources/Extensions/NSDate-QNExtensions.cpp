#include "Extensions/NSDate-QNExtensions.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "Platform/Foundation/CivilTime.h"
#include "Platform/Foundation/LocalizedDates.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/NSUserDefaults.h"

namespace kelvane {
namespace {

// A date as clocks show it.
struct LocalTime {
  CivilTime time;
  std::int32_t offset = 0;
};

// A zone's distance from UTC holds until its next change. Each thread remembers the period that it last found in each
// stretch of some seven weeks, for 34 years of them: dates that are near each other, or near those before, cost no
// search.
std::int32_t offsetAt(std::int64_t seconds) {
  struct Known {
    const NSTimeZone* zone = nullptr;
    ZonePeriod period;
  };
  constexpr unsigned stretchBits = 22;
  constexpr std::size_t stretches = 256;
  thread_local std::array<Known, stretches> knowns;
  const NSTimeZone& zone = NSTimeZone::currentTimeZone();
  Known& known = knowns[static_cast<std::uint64_t>(seconds) >> stretchBits & (stretches - 1)];
  if (&zone != known.zone || seconds < known.period.from || seconds >= known.period.until)
    known = {&zone, zone.periodAt(seconds)};
  return known.period.offset;
}

std::optional<LocalTime> localTime(const NSDate& date) {
  const std::optional<std::int64_t> seconds = wholeSecondsSince1970(date);
  if (!seconds) return std::nullopt;
  const std::int32_t offset = wholeMinutes(offsetAt(*seconds));
  const std::optional<CivilTime> time = civilTime(*seconds, offset);
  if (!time) return std::nullopt;
  return LocalTime{*time, offset};
}

char16_t* putTwo(char16_t* out, unsigned value) {
  out[0] = static_cast<char16_t>(u'0' + value / 10);
  out[1] = static_cast<char16_t>(u'0' + value % 10);
  return out + 2;
}

char16_t* putFour(char16_t* out, unsigned value) { return putTwo(putTwo(out, value / 100), value % 100); }

char16_t* putDay(char16_t* out, const CivilTime& time) {
  out = putFour(out, time.year);
  *out++ = u'-';
  out = putTwo(out, time.month);
  *out++ = u'-';
  return putTwo(out, time.day);
}

char16_t* putClock(char16_t* out, unsigned hour, const CivilTime& time) {
  out = putTwo(out, hour);
  *out++ = u':';
  out = putTwo(out, time.minute);
  *out++ = u':';
  return putTwo(out, time.second);
}

char16_t* putZone(char16_t* out, std::int32_t offset, bool withColon) {
  const auto minutes = static_cast<unsigned>(std::abs(offset)) / 60;
  *out++ = offset < 0 ? u'-' : u'+';
  out = putTwo(out, minutes / 60);
  if (withColon) *out++ = u':';
  return putTwo(out, minutes % 60);
}

char16_t* putISO(char16_t* out, const LocalTime& local) {
  out = putDay(out, local.time);
  *out++ = u' ';
  out = putClock(out, local.time.hour, local.time);
  *out++ = u' ';
  return putZone(out, local.offset, false);
}

char16_t* putRFC822(char16_t* out, const LocalTime& local) {
  constexpr TextView months = u"JanFebMarAprMayJunJulAugSepOctNovDec";
  constexpr unsigned noon = 12;
  out = putTwo(out, local.time.day);
  *out++ = u' ';
  out = std::copy_n(months.begin() + (local.time.month - 1) * 3, 3, out);
  *out++ = u' ';
  out = putFour(out, local.time.year);
  *out++ = u' ';
  out = putClock(out, local.time.hour % noon == 0 ? noon : local.time.hour % noon, local.time);
  *out++ = u' ';
  return putZone(out, local.offset, false);
}

char16_t* putW3C(char16_t* out, const LocalTime& local) {
  out = putDay(out, local.time);
  *out++ = u'T';
  out = putClock(out, local.time.hour, local.time);
  return putZone(out, local.offset, true);
}

template <class Put>
TextView dateText(const NSDate& date, DateTextBuffer& buffer, Put put) {
  const std::optional<LocalTime> local = localTime(date);
  if (!local) return {};
  return {buffer.data(), put(buffer.data(), *local)};
}

// What a template with a digit for each digit leaves open; false when the text is not of its shape.
bool hasShape(TextView text, TextView shape) {
  return std::ranges::equal(text, shape, [](char16_t unit, char16_t wanted) {
    return wanted == u'0' ? unit >= u'0' && unit <= u'9' : unit == wanted;
  });
}

unsigned numberIn(TextView digits) {
  unsigned number = 0;
  for (const char16_t digit : digits) number = number * 10 + (digit - u'0');
  return number;
}

// The user's own, which the environment tells when the preferences do not.
Text currentLocaleCode() {
  const auto code = as<NSString>(NSUserDefaults::standardUserDefaults().objectForKey(u"AppleLocale"));
  return code ? code->text() : u"en";
}

Text localeText(const NSDate& date, const LocalizedDateFormatter& formatter) {
  const std::optional<std::int64_t> seconds = wholeSecondsSince1970(date);
  if (!seconds || !civilTime(*seconds, offsetAt(*seconds))) return {};
  return formatter.text(*seconds, offsetAt(*seconds));
}

}  // namespace

Ref<NSCalendarDate> NSDateExtensions::calendarDateWithDate(const NSDate& date) {
  return std::make_shared<NSCalendarDate>(date);
}

Ref<NSCalendarDate> NSDateExtensions::dateWithIsoDateString(TextView text) {
  constexpr std::size_t signAt = 20;
  if (text.size() <= signAt || (text[signAt] != u'+' && text[signAt] != u'-')) return nullptr;
  const bool isWest = text[signAt] == u'-';
  if (!hasShape(text, isWest ? u"0000-00-00 00:00:00 -0000" : u"0000-00-00 00:00:00 +0000")) return nullptr;
  const auto field = [text](std::size_t place, std::size_t width = 2) { return numberIn(text.substr(place, width)); };
  const unsigned hours = field(21);
  const unsigned minutes = field(23);
  if (hours > 23 || minutes > 59) return nullptr;
  const auto distance = static_cast<std::int32_t>(hours * 3600 + minutes * 60);
  const std::int32_t offset = isWest ? -distance : distance;
  const auto seconds =
      secondsSince1970(CivilTime{field(0, 4), field(5), field(8), field(11), field(14), field(17)}, offset);
  if (!seconds) return nullptr;
  return std::make_shared<NSCalendarDate>(NSDate::dateWithTimeIntervalSince1970(static_cast<double>(*seconds)),
                                          NSTimeZone::timeZoneForSecondsFromGMT(offset));
}

TextView isoDateString(const NSDate& date, DateTextBuffer& buffer) { return dateText(date, buffer, putISO); }
TextView rfc822DateString(const NSDate& date, DateTextBuffer& buffer) { return dateText(date, buffer, putRFC822); }
TextView w3cDateTimeString(const NSDate& date, DateTextBuffer& buffer) { return dateText(date, buffer, putW3C); }

Text isoDateString(const NSDate& date) {
  DateTextBuffer buffer;
  return Text(isoDateString(date, buffer));
}

Text rfc822DateString(const NSDate& date) {
  DateTextBuffer buffer;
  return Text(rfc822DateString(date, buffer));
}

Text w3cDateTimeString(const NSDate& date) {
  DateTextBuffer buffer;
  return Text(w3cDateTimeString(date, buffer));
}

Text localeDateAndTimeString(const NSDate& date) {
  static const auto& formatter = *new LocalizedDateFormatter(currentLocaleCode(), DateStyle::Long, DateStyle::Short);
  return localeText(date, formatter);
}

Text localeLongDateAndTimeString(const NSDate& date) {
  static const auto& formatter = *new LocalizedDateFormatter(currentLocaleCode(), DateStyle::Long, DateStyle::Medium);
  return localeText(date, formatter);
}

Text localeShortDateAndTimeString(const NSDate& date) {
  static const auto& formatter = *new LocalizedDateFormatter(currentLocaleCode(), DateStyle::Short, DateStyle::Short);
  return localeText(date, formatter);
}

}  // namespace kelvane
