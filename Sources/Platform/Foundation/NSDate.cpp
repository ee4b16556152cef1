#include "Platform/Foundation/NSDate.h"

#include <chrono>
#include <cmath>
#include <functional>

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/TextNumbers.h"

namespace kelvane {
namespace {

double secondsSince1970() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

// The first second of the year 1 and of the year 10000, from 1970 on.
constexpr double startOfYear1 = -62135596800.0;
constexpr double startOfYear10000 = 253402300800.0;

}  // namespace

NSDate::NSDate() : mySeconds(secondsSince1970() - timeIntervalBetween1970AndReferenceDate) {}

bool NSDate::isEqual(const NSObject& other) const {
  const NSDate* date = as<NSDate>(&other);
  return date && date->mySeconds == mySeconds;
}

std::size_t NSDate::hash() const { return std::hash<double>()(mySeconds); }

Text NSDate::description() const {
  // The fraction goes first: adding would round it away.
  const double seconds = std::floor(mySeconds) + timeIntervalBetween1970AndReferenceDate;
  if (!(seconds >= startOfYear1 && seconds < startOfYear10000)) return shortestDecimal(mySeconds);
  const std::chrono::sys_seconds instant{std::chrono::seconds(static_cast<std::int64_t>(seconds))};
  const auto day = std::chrono::floor<std::chrono::days>(instant);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(instant - day);
  return format(u"%04d-%02u-%02u %02ld:%02ld:%02ld +0000", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), time.hours().count(),
                time.minutes().count(), time.seconds().count());
}

std::weak_ordering NSDate::compare(const NSObject& other) const {
  const NSDate* date = as<NSDate>(&other);
  return date ? std::weak_order(mySeconds, date->mySeconds) : NSObject::compare(other);
}

Ref<NSObject> NSDate::copy() const {
  return selfOr([this] { return std::make_shared<NSDate>(*this); });
}

}  // namespace kelvane
