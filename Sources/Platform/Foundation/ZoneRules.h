#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "Platform/Foundation/Export.h"

namespace kelvane {

// A time during which the clocks of a zone keep one distance from UTC: seconds from 1970 on, the end not included.
struct ZonePeriod {
  std::int64_t from = 0;
  std::int64_t until = 0;
  // Seconds, positive to the east.
  std::int32_t offset = 0;
};

// When the clocks of a zone are changed, from the first records on into the distant future. Immutable.
class KELVANE_EXPORT ZoneRules {
 public:
  // The same distance at all times.
  explicit ZoneRules(std::int32_t offset = 0) : myOffsets{offset} {}
  // A file of the time zone database (TZif, RFC 8536, versions 1 to 4); nothing when it is damaged. Leap seconds, which
  // only the zones below "right/" have, do not count.
  static std::optional<ZoneRules> fromTZif(std::string_view bytes);
  // A rule such as "CET-1CEST,M3.5.0,M10.5.0/3" (POSIX, "TZ", with the extensions of RFC 8536, section 3.3.1); nothing
  // when it is none.
  static std::optional<ZoneRules> fromPOSIX(std::string_view rule);

  // The period that an instant is in; of a zone that changes by rule at most a year. Logarithmic.
  ZonePeriod periodAt(std::int64_t secondsSince1970) const;

 private:
  // A day of every year, and a time on it.
  struct Day {
    enum class Kind { CountedWithoutLeapDay, Counted, Weekday } kind = Kind::Weekday;
    // The number of the day, from 1 without leap day and from 0 with it.
    int number = 0;
    // The week'th weekday of the month, 5 for the last; Sunday is 0.
    unsigned month = 1;
    unsigned week = 1;
    unsigned weekday = 0;
    // Seconds from midnight, which may lie on other days.
    std::int32_t time = 2 * 3600;

    std::int64_t inYear(int year) const;
  };
  struct Rule {
    std::int32_t standard = 0;
    std::int32_t summer = 0;
    Day summerBegins{Day::Kind::Weekday, 0, 3, 2, 0, 2 * 3600};
    Day summerEnds{Day::Kind::Weekday, 0, 11, 1, 0, 2 * 3600};
  };
  class Parser;
  class FileReader;

  ZonePeriod periodByRule(std::int64_t secondsSince1970) const;

  // Ascending; myOffsets has one more, the one before the first change being the first.
  std::vector<std::int64_t> myChanges;
  std::vector<std::int32_t> myOffsets;
  // Counts from the last change on.
  std::optional<Rule> myRule;
};

}  // namespace kelvane
