#pragma once

#include <cstdint>

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/ZoneRules.h"

namespace kelvane {

// A time zone: a name, and how far its clocks are from UTC at any time. Immutable.
class KELVANE_EXPORT NSTimeZone : public NSObject {
 public:
  // timeZoneWithName:  The zone of that name in the system's database, such as "Europe/Zurich"; nil when there is none.
  static Ref<NSTimeZone> timeZoneWithName(TextView name);
  // timeZoneForSecondsFromGMT:  A zone without changes, named "GMT+0545"; nil for a distance of a day or more.
  static Ref<NSTimeZone> timeZoneForSecondsFromGMT(std::int32_t seconds);

  // systemTimeZone  What the environment's TZ tells (a name, a path or a rule, as in POSIX), else /etc/localtime, else
  // UTC. Read once.
  static Ref<NSTimeZone> systemTimeZone();
  // defaultTimeZone  The zone that dates are shown in: the system's, unless another one was set. Any thread.
  static Ref<NSTimeZone> defaultTimeZone();
  // setDefaultTimeZone:  Nil brings the system's back. Zones that were set are kept for the life of the process. Any
  // thread.
  static void setDefaultTimeZone(const Ref<NSTimeZone>& zone);
  // The default zone without a reference being counted; never null.
  static const NSTimeZone& currentTimeZone();

  NSTimeZone(Text name, ZoneRules rules);

  const Text& name() const { return myName; }
  // secondsFromGMTForDate:  Seconds, positive to the east.
  std::int32_t secondsFromGMTForDate(const NSDate& date) const;
  // The time around an instant (seconds since 1970) during which that stays the same.
  ZonePeriod periodAt(std::int64_t secondsSince1970) const { return myRules.periodAt(secondsSince1970); }

  // Equal when the names are.
  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // The name.
  Text description() const override { return myName; }
  Ref<NSObject> copy() const override;

 private:
  Text myName;
  ZoneRules myRules;
};

}  // namespace kelvane
