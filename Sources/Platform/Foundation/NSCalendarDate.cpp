#include "Platform/Foundation/NSCalendarDate.h"

#include <cstdlib>
#include <optional>

#include "Platform/Foundation/CivilTime.h"
#include "Platform/Foundation/Format.h"

namespace kelvane {
namespace {

// What a conversion of two digits shows; nothing for another letter.
std::optional<unsigned> twoDigits(char16_t letter, const CivilTime& time) {
  switch (letter) {
    case u'm':
      return time.month;
    case u'd':
      return time.day;
    case u'H':
      return time.hour;
    case u'M':
      return time.minute;
    case u'S':
      return time.second;
    default:
      return std::nullopt;
  }
}

// Appends what a conversion stands for; false when there is none of that letter.
bool appendConversion(Text& text, char16_t letter, const CivilTime& time, std::int32_t offset) {
  const std::int32_t minutes = std::abs(offset) / 60;
  if (const auto number = twoDigits(letter, time))
    text += format(u"%02u", *number);
  else if (letter == u'Y')
    text += format(u"%04u", time.year);
  else if (letter == u'z')
    text += format(u"%s%02d%02d", offset < 0 ? "-" : "+", minutes / 60, minutes % 60);
  else if (letter == u'%')
    text += u'%';
  else
    return false;
  return true;
}

}  // namespace

NSCalendarDate::NSCalendarDate(const NSDate& date, Ref<NSTimeZone> timeZone, TextView calendarFormat)
    : NSDate(date),
      myTimeZone(timeZone ? std::move(timeZone) : NSTimeZone::defaultTimeZone()),
      myCalendarFormat(calendarFormat) {}

Text NSCalendarDate::descriptionWithCalendarFormat(TextView format) const {
  const std::optional<std::int64_t> seconds = wholeSecondsSince1970(*this);
  if (!seconds) return {};
  const std::int32_t offset = wholeMinutes(myTimeZone->periodAt(*seconds).offset);
  const std::optional<CivilTime> time = civilTime(*seconds, offset);
  if (!time) return {};
  Text text;
  for (std::size_t i = 0; i < format.size(); ++i) {
    if (format[i] == u'%' && i + 1 < format.size() && appendConversion(text, format[i + 1], *time, offset))
      ++i;
    else
      text += format[i];
  }
  return text;
}

Ref<NSObject> NSCalendarDate::copy() const {
  return selfOr([this] { return std::make_shared<NSCalendarDate>(*this); });
}

}  // namespace kelvane
