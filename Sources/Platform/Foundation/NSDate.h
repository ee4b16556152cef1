#pragma once

#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// An instant, in seconds since 2001-01-01 00:00:00 UTC, the reference date; leap seconds do not count. Immutable.
class KELVANE_EXPORT NSDate : public NSObject {
 public:
  // The reference date lies this many seconds behind 1970-01-01 00:00:00 UTC.
  static constexpr double timeIntervalBetween1970AndReferenceDate = 978307200.0;

  // Now.
  NSDate();
  static NSDate dateWithTimeIntervalSinceReferenceDate(double seconds) { return NSDate(seconds); }
  static NSDate dateWithTimeIntervalSince1970(double seconds) {
    return NSDate(seconds - timeIntervalBetween1970AndReferenceDate);
  }

  double timeIntervalSinceReferenceDate() const { return mySeconds; }
  double timeIntervalSince1970() const { return mySeconds + timeIntervalBetween1970AndReferenceDate; }

  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // The earlier one comes first.
  std::weak_ordering compare(const NSObject& other) const override;
  // In UTC, "2001-01-01 00:00:00 +0000", with the fraction cut toward the past; an instant outside the years 1 to 9999
  // as its number of seconds.
  Text description() const override;
  Ref<NSObject> copy() const override;

 private:
  explicit NSDate(double secondsSinceReferenceDate) : mySeconds(secondsSinceReferenceDate) {}

  double mySeconds;
};

}  // namespace kelvane
