// Dates in their fixed forms, beside the C library's way to the same text.

#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "Extensions/NSDate-QNExtensions.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/Row.h"

namespace kelvane::bench {
namespace {

constexpr std::size_t count = 1000;

// Within some twenty years, as the dates of documents are.
const std::vector<std::int64_t>& instants() {
  static const auto& all = *[] {
    auto* made = new std::vector<std::int64_t>;
    std::mt19937_64 random(1);
    std::uniform_int_distribution<std::int64_t> recent(1'200'000'000, 1'800'000'000);
    while (made->size() < count) made->push_back(recent(random));
    return made;
  }();
  return all;
}

std::vector<NSDate> datesOf(const std::vector<std::int64_t>& seconds) {
  std::vector<NSDate> dates;
  for (const std::int64_t each : seconds)
    dates.push_back(NSDate::dateWithTimeIntervalSince1970(static_cast<double>(each)));
  return dates;
}

// Adds up what all texts come to, so that it is made and looked at.
template <class Unit>
std::uint64_t sumOf(std::basic_string_view<Unit> text) {
  std::uint64_t sum = text.size();
  for (const Unit unit : {text[0], text[9], text[18], text.back()}) sum = sum * 31 + static_cast<std::uint64_t>(unit);
  return sum;
}

std::uint64_t byC(const std::vector<std::int64_t>& seconds, bool asString) {
  std::uint64_t sum = 0;
  for (const std::time_t each : seconds) {
    std::tm parts{};
    ::localtime_r(&each, &parts);
    char text[64];
    const std::string_view view(text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S %z", &parts));
    sum += asString ? sumOf(std::string_view(std::string(view))) : sumOf(view);
  }
  return sum;
}

void addRows(const std::string& which, const std::vector<std::int64_t>& seconds) {
  Row("date to ISO text, " + which)
      .ours([dates = datesOf(seconds)] {
        std::uint64_t sum = 0;
        for (const NSDate& date : dates) sum += sumOf(TextView(isoDateString(date)));
        return sum;
      })
      .peer("localtime_r, strftime", [seconds] { return byC(seconds, true); })
      .per("date", seconds.size())
      .reach(2.5);
  Row("date to ISO in a buffer, " + which)
      .ours([dates = datesOf(seconds)] {
        std::uint64_t sum = 0;
        DateTextBuffer buffer;
        for (const NSDate& date : dates) sum += sumOf(isoDateString(date, buffer));
        return sum;
      })
      .peer("localtime_r, strftime", [seconds] { return byC(seconds, false); })
      .per("date", seconds.size())
      .reach(5);
}

const Subject dates([] {
  // Daylight saving time changes between them, as it does for users.
  ::setenv("TZ", "Europe/Zurich", 1);
  ::tzset();
  addRows("one year", [] {
    std::vector<std::int64_t> seconds;
    for (std::size_t i = 0; i < count; ++i) seconds.push_back(1'235'923'509 + static_cast<std::int64_t>(i) * 31'557);
    return seconds;
  }());
  addRows("twenty years at random", instants());
});

}  // namespace
}  // namespace kelvane::bench
