#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "Platform/Foundation/NSDate.h"

// Instants as days and hours, in the calendar that is in use today for all times (the proleptic Gregorian one). Dates
// have a text form in the years 1 to 9999. Pure functions, any thread.
namespace kelvane {

struct CivilTime {
  unsigned year = 1;
  unsigned month = 1;
  unsigned day = 1;
  unsigned hour = 0;
  unsigned minute = 0;
  unsigned second = 0;
};

// The first second of the year 1 and of the year 10000, from 1970 on.
inline constexpr std::int64_t startOfYear1 = -62135596800;
inline constexpr std::int64_t startOfYear10000 = 253402300800;

// Fractions are cut toward the past. Nothing for NaN and for what is more than a day outside the years 1 to 9999.
inline std::optional<std::int64_t> wholeSecondsSince1970(const NSDate& date) {
  constexpr std::int64_t day = 86400;
  constexpr auto reference = static_cast<std::int64_t>(NSDate::timeIntervalBetween1970AndReferenceDate);
  const double seconds = date.timeIntervalSinceReferenceDate();
  if (!(seconds >= static_cast<double>(startOfYear1 - reference - day) &&
        seconds < static_cast<double>(startOfYear10000 - reference + day)))
    return std::nullopt;
  // The fraction goes before the other epoch comes: adding would round it away.
  const auto cut = static_cast<std::int64_t>(seconds);
  return cut - (static_cast<double>(cut) > seconds ? 1 : 0) + reference;
}

// What clocks show that are `offset` seconds ahead of UTC; nothing when that is not in the years 1 to 9999.
inline std::optional<CivilTime> civilTime(std::int64_t secondsSince1970, std::int32_t offset) {
  const std::int64_t local = secondsSince1970 + offset;
  if (local < startOfYear1 || local >= startOfYear10000) return std::nullopt;
  const std::chrono::sys_seconds instant{std::chrono::seconds(local)};
  const auto day = std::chrono::floor<std::chrono::days>(instant);
  const std::chrono::year_month_day date(day);
  const auto second = static_cast<unsigned>((instant - day).count());
  return CivilTime{static_cast<unsigned>(static_cast<int>(date.year())),
                   static_cast<unsigned>(date.month()),
                   static_cast<unsigned>(date.day()),
                   second / 3600,
                   second / 60 % 60,
                   second % 60};
}

// The instant, in seconds since 1970; nothing when no calendar and clock has that.
inline std::optional<std::int64_t> secondsSince1970(const CivilTime& time, std::int32_t offset) {
  const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(time.year)), std::chrono::month(time.month),
                                         std::chrono::day(time.day)};
  if (time.year < 1 || time.year > 9999 || !date.ok() || time.hour > 23 || time.minute > 59 || time.second > 59)
    return std::nullopt;
  return std::chrono::seconds(std::chrono::sys_days(date).time_since_epoch()).count() + time.hour * 3600L +
         time.minute * 60L + time.second - offset;
}

// The distance that text forms give, in whole minutes. Clocks of long ago were apart by seconds, too; times are shown
// as if they had not been, so that what is shown is the right instant.
constexpr std::int32_t wholeMinutes(std::int32_t offset) { return offset / 60 * 60; }

}  // namespace kelvane
