#include "Platform/Foundation/LocalizedDates.h"

#include <unicode/calendar.h>
#include <unicode/dtfmtsym.h>
#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>

#include <mutex>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

icu::Locale localeNamed(TextView code) { return icu::Locale::createCanonical(utf8(code).c_str()); }

icu::DateFormat::EStyle styleOf(DateStyle style) {
  switch (style) {
    case DateStyle::None:
      return icu::DateFormat::kNone;
    case DateStyle::Short:
      return icu::DateFormat::kShort;
    case DateStyle::Medium:
      return icu::DateFormat::kMedium;
    case DateStyle::Long:
      return icu::DateFormat::kLong;
    case DateStyle::Full:
      return icu::DateFormat::kFull;
  }
  return icu::DateFormat::kNone;
}

Text textOf(const icu::UnicodeString& string) {
  return Text(string.getBuffer(), static_cast<std::size_t>(string.length()));
}

}  // namespace

struct LocalizedDateFormatter::Formatter {
  std::mutex mutex;
  std::unique_ptr<icu::DateFormat> format;
  // Set to each date in turn.
  std::unique_ptr<icu::Calendar> calendar;
};

LocalizedDateFormatter::LocalizedDateFormatter(TextView locale, DateStyle dateStyle, DateStyle timeStyle)
    : myFormatter(std::make_unique<Formatter>()) {
  myFormatter->format.reset(
      icu::DateFormat::createDateTimeInstance(styleOf(dateStyle), styleOf(timeStyle), localeNamed(locale)));
  // Null where ICU has no data at all.
  if (myFormatter->format) myFormatter->calendar.reset(myFormatter->format->getCalendar()->clone());
}

LocalizedDateFormatter::~LocalizedDateFormatter() = default;

Text LocalizedDateFormatter::text(std::int64_t secondsSince1970, std::int32_t offset) const {
  if (!myFormatter->calendar) return {};
  constexpr double milliseconds = 1000;
  const std::lock_guard lock(myFormatter->mutex);
  icu::Calendar& calendar = *myFormatter->calendar;
  UErrorCode status = U_ZERO_ERROR;
  calendar.adoptTimeZone(new icu::SimpleTimeZone(offset * static_cast<std::int32_t>(milliseconds), {}));
  calendar.setTime(static_cast<double>(secondsSince1970) * milliseconds, status);
  icu::UnicodeString string;
  icu::FieldPosition ignored;
  if (U_SUCCESS(status)) myFormatter->format->format(calendar, string, ignored);
  return textOf(string);
}

std::vector<Text> monthNames(TextView locale) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::DateFormatSymbols symbols(localeNamed(locale), status);
  if (U_FAILURE(status)) return {};
  std::int32_t count = 0;
  const icu::UnicodeString* names =
      symbols.getMonths(count, icu::DateFormatSymbols::STANDALONE, icu::DateFormatSymbols::WIDE);
  std::vector<Text> result;
  for (std::int32_t i = 0; i < count; ++i) result.push_back(textOf(names[i]));
  return result;
}

}  // namespace kelvane
