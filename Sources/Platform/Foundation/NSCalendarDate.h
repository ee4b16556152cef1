#pragma once

#include <utility>

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSTimeZone.h"

namespace kelvane {

// An instant that carries the time zone and the format in which it is to be shown. Equality is that of the instant.
// Immutable.
class KELVANE_EXPORT NSCalendarDate : public NSDate {
 public:
  static constexpr TextView isoFormat = u"%Y-%m-%d %H:%M:%S %z";

  // Nil stands for the default time zone at this moment.
  explicit NSCalendarDate(const NSDate& date, Ref<NSTimeZone> timeZone = nullptr, TextView calendarFormat = isoFormat);

  const Ref<NSTimeZone>& timeZone() const { return myTimeZone; }
  const Text& calendarFormat() const { return myCalendarFormat; }

  // descriptionWithCalendarFormat:  The date in its own time zone. "%Y" is the year in four digits, "%m", "%d", "%H",
  // "%M" and "%S" month, day, hour, minute and second in two, "%z" the zone's distance from UTC ("+0545"), "%%" a
  // percent sign; everything else stands for itself. Empty outside the years 1 to 9999.
  Text descriptionWithCalendarFormat(TextView format) const;

  // In the date's own format.
  Text description() const override { return descriptionWithCalendarFormat(myCalendarFormat); }
  Ref<NSObject> copy() const override;

 private:
  Ref<NSTimeZone> myTimeZone;
  Text myCalendarFormat;
};

}  // namespace kelvane
