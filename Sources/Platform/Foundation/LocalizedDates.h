#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// How much of a date or a time is written: 3/1/09, Mar 1, 2009, March 1, 2009, Sunday, March 1, 2009.
enum class DateStyle { None, Short, Medium, Long, Full };

// Writes dates the way that is usual in a locale, by its own calendar. Making one is expensive (tens of microseconds);
// any thread may use it, one at a time gets through.
class KELVANE_EXPORT LocalizedDateFormatter {
 public:
  // For a locale such as "de" or "en_US"; one that is not known is written as far as it is, at the worst in English or
  // in bare numbers.
  LocalizedDateFormatter(TextView locale, DateStyle dateStyle, DateStyle timeStyle);
  ~LocalizedDateFormatter();
  LocalizedDateFormatter(const LocalizedDateFormatter&) = delete;
  LocalizedDateFormatter& operator=(const LocalizedDateFormatter&) = delete;

  // The instant as clocks show it that are `offset` seconds ahead of UTC.
  Text text(std::int64_t secondsSince1970, std::int32_t offset) const;

 private:
  struct Formatter;
  std::unique_ptr<Formatter> myFormatter;
};

// The names of the months of the Gregorian calendar, as they are written when they stand alone; January first.
KELVANE_EXPORT std::vector<Text> monthNames(TextView locale);

}  // namespace kelvane
