#include <cmath>
#include <cstring>

#include "Extensions/NSDate-QNExtensions.h"
#include "Fuzz.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/ZoneRules.h"

namespace {

using namespace kelvane;
using kelvane::fuzz::expect;

void checkForms(const NSDate& date) {
  const Text iso = isoDateString(date);
  expect(iso.empty() == w3cDateTimeString(date).empty(), "either all forms or none");
  expect(iso.empty() == rfc822DateString(date).empty(), "either all forms or none");
  expect(iso.empty() == localeShortDateAndTimeString(date).empty(), "either all forms or none");
  if (iso.empty()) return;
  const auto read = NSDateExtensions::dateWithIsoDateString(iso);
  expect(read != nullptr, "what was written can be read");
  expect(std::abs(read->timeIntervalSince1970() - date.timeIntervalSince1970()) <= 1, "as the same second");
  expect(read->description() == iso, "in the same zone");
}

void checkReading(TextView text) {
  const auto date = NSDateExtensions::dateWithIsoDateString(text);
  if (!date) return;
  expect(text.size() == 25, "only the full format is read");
  // A distance of nothing is written with plus.
  expect(date->description() == text || text.ends_with(u"-0000"), "what was read is written the same");
}

void checkZone(const ZoneRules& rules, std::int64_t instant) {
  const ZonePeriod period = rules.periodAt(instant);
  expect(period.from < period.until || period.from == period.until, "periods do not run backwards");
  expect(std::abs(period.offset) <= 26 * 3600, "offsets are small");
  checkForms(NSDate::dateWithTimeIntervalSince1970(static_cast<double>(instant)));
}

}  // namespace

// The bytes are a date's text, a zone's rule, a zone's file, and their first eight an instant.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::bytesOf(data, size);
  checkReading(textFromUTF8(bytes));
  double seconds = 0;
  std::int64_t instant = 0;
  std::memcpy(&seconds, data, std::min(size, sizeof seconds));
  std::memcpy(&instant, data, std::min(size, sizeof instant));
  checkForms(NSDate::dateWithTimeIntervalSince1970(seconds));
  for (const auto& rules : {ZoneRules::fromPOSIX(bytes), ZoneRules::fromTZif(bytes)})
    for (const std::int64_t at : {instant, std::int64_t{0}, std::int64_t{1} << 33})
      if (rules) checkZone(*rules, at);
  return 0;
}
