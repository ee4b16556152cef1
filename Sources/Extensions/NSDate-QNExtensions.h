#pragma once

#include <array>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSCalendarDate.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/Text.h"

// Dates as text, in the default time zone (NSTimeZone::defaultTimeZone). For 2009-03-01 16:05:09 UTC in Zurich, for a
// user whose language is English:
//
//   isoDateString                2009-03-01 17:05:09 +0100
//   rfc822DateString             01 Mar 2009 05:05:09 +0100      (12 hours, no marker)
//   w3cDateTimeString            2009-03-01T17:05:09+01:00
//   localeShortDateAndTimeString 3/1/09, 5:05 PM
//   localeDateAndTimeString      March 1, 2009 at 5:05 PM
//   localeLongDateAndTimeString  March 1, 2009 at 5:05:09 PM
//
// ```cpp
// const Text stamp = isoDateString(NSDate());
// const Ref<NSCalendarDate> sameSecond = NSDateExtensions::dateWithIsoDateString(stamp);
// ```
//
// The first three are the same whatever the user's language, count by the Gregorian calendar at all times, and cut
// fractions of a second toward the past. Where clocks were apart from UTC by odd seconds, as before railways, they show
// the time by whole minutes, so that what is read back is the same instant. All forms are empty for NaN and outside the
// years 1 to 9999. Any thread.
namespace kelvane {

namespace NSDateExtensions {

// calendarDateWithDate:  The same instant with the default time zone.
KELVANE_EXPORT Ref<NSCalendarDate> calendarDateWithDate(const NSDate& date);

// dateWithIsoDateString:  What `isoDateString` gave, with the distance from UTC that it tells as time zone. Nil for
// anything else: each field has its full width and its range (seconds to 59, distances to 23:59), the day must be in
// the calendar, and nothing stands before or behind.
KELVANE_EXPORT Ref<NSCalendarDate> dateWithIsoDateString(TextView text);

}  // namespace NSDateExtensions

// Room for a date in one of the fixed forms, for whoever writes many of them.
using DateTextBuffer = std::array<char16_t, 32>;

// isoDateString  "%Y-%m-%d %H:%M:%S %z".
KELVANE_EXPORT Text isoDateString(const NSDate& date);
// The same without memory being taken: a view into `buffer`.
KELVANE_EXPORT TextView isoDateString(const NSDate& date, DateTextBuffer& buffer);

// rfc822DateString  "dd MMM yyyy hh:mm:ss" with the English names of months and a clock of twelve hours, a blank and
// the zone as "+0100". Neither weekday nor AM and PM, so that it cannot be read back.
KELVANE_EXPORT Text rfc822DateString(const NSDate& date);
KELVANE_EXPORT TextView rfc822DateString(const NSDate& date, DateTextBuffer& buffer);

// w3cDateTimeString  "%Y-%m-%dT%H:%M:%S%z" with a colon within the zone (W3C's profile of ISO 8601, RFC 3339).
KELVANE_EXPORT Text w3cDateTimeString(const NSDate& date);
KELVANE_EXPORT TextView w3cDateTimeString(const NSDate& date, DateTextBuffer& buffer);

// The next three are in the user's own locale, "AppleLocale" among the preferences at the first call, and by its
// calendar: the Persian one in Iran, the Julian one before October 1582.

// localeDateAndTimeString  The date long, the time short.
KELVANE_EXPORT Text localeDateAndTimeString(const NSDate& date);
// localeLongDateAndTimeString  The date long, the time with seconds.
KELVANE_EXPORT Text localeLongDateAndTimeString(const NSDate& date);
// localeShortDateAndTimeString  Both short.
KELVANE_EXPORT Text localeShortDateAndTimeString(const NSDate& date);

}  // namespace kelvane
