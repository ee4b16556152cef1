#include "Platform/Foundation/ZoneRules.h"

#include <algorithm>
#include <chrono>
#include <limits>

namespace kelvane {
namespace {

constexpr std::int64_t secondsPerDay = 86400;
// What a zone may be away from UTC at most, as RFC 8536 has it.
constexpr std::int32_t mostOffset = 26 * 3600;

constexpr bool isDigit(char character) { return character >= '0' && character <= '9'; }
constexpr bool isLetter(char character) {
  return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

}  // namespace

// --- Rules

class ZoneRules::Parser {
 public:
  explicit Parser(std::string_view text) : myText(text) {}

  bool parse(Rule& rule, bool& hasSummer) {
    if (!skipName() || !offset(rule.standard)) return false;
    hasSummer = !myText.empty();
    if (!hasSummer) return true;
    if (!skipName()) return false;
    rule.summer = rule.standard + 3600;
    if (!myText.empty() && myText.front() != ',' && !offset(rule.summer)) return false;
    if (myText.empty()) return true;
    return take(',') && day(rule.summerBegins) && take(',') && day(rule.summerEnds) && myText.empty();
  }

 private:
  bool take(char character) {
    if (!myText.starts_with(character)) return false;
    myText.remove_prefix(1);
    return true;
  }

  bool skipName() {
    const bool isQuoted = take('<');
    std::size_t length = 0;
    const auto belongs = [&](char c) { return isLetter(c) || (isQuoted && (isDigit(c) || c == '+' || c == '-')); };
    while (length < myText.size() && belongs(myText[length])) ++length;
    myText.remove_prefix(length);
    return length >= 3 && (!isQuoted || take('>'));
  }

  // A number up to `most`.
  template <class Number>
  bool number(Number& value, int least, int most) {
    int read = 0;
    const std::size_t before = myText.size();
    for (; !myText.empty() && isDigit(myText.front()) && read <= most; myText.remove_prefix(1))
      read = read * 10 + (myText.front() - '0');
    value = static_cast<Number>(read);
    return myText.size() < before && read >= least && read <= most;
  }

  // Sign, hours and, as far as they are there, minutes and seconds.
  bool time(std::int32_t& seconds, int mostHours) {
    const bool isNegative = take('-');
    if (!isNegative) take('+');
    int hours = 0;
    int minutes = 0;
    int rest = 0;
    if (!number(hours, 0, mostHours)) return false;
    if (take(':') && (!number(minutes, 0, 59) || (take(':') && !number(rest, 0, 59)))) return false;
    seconds = hours * 3600 + minutes * 60 + rest;
    if (isNegative) seconds = -seconds;
    return true;
  }

  // POSIX counts to the west.
  bool offset(std::int32_t& seconds) {
    if (!time(seconds, 24)) return false;
    seconds = -seconds;
    return true;
  }

  bool day(Day& day) {
    bool good = false;
    if (take('M')) {
      day.kind = Day::Kind::Weekday;
      good = number(day.month, 1, 12) && take('.') && number(day.week, 1, 5) && take('.') && number(day.weekday, 0, 6);
    } else if (take('J')) {
      day.kind = Day::Kind::CountedWithoutLeapDay;
      good = number(day.number, 1, 365);
    } else {
      day.kind = Day::Kind::Counted;
      good = number(day.number, 0, 365);
    }
    day.time = 2 * 3600;
    return good && (!take('/') || time(day.time, 167));
  }

  std::string_view myText;
};

std::int64_t ZoneRules::Day::inYear(int year) const {
  using namespace std::chrono;
  const std::chrono::year inThat(year);
  sys_days date;
  if (kind == Kind::Weekday) {
    const std::chrono::month inMonth(month);
    const std::chrono::weekday on(weekday);
    date = week == 5 ? sys_days(inThat / inMonth / on[last]) : sys_days(inThat / inMonth / on[week]);
  } else {
    const bool passesLeapDay = kind == Kind::CountedWithoutLeapDay && inThat.is_leap() && number >= 60;
    const int daysAfterNewYear = kind == Kind::Counted ? number : number - 1 + (passesLeapDay ? 1 : 0);
    date = sys_days(inThat / January / 1) + days(daysAfterNewYear);
  }
  return date.time_since_epoch().count() * secondsPerDay + time;
}

std::optional<ZoneRules> ZoneRules::fromPOSIX(std::string_view text) {
  Rule rule;
  bool hasSummer = false;
  if (!Parser(text).parse(rule, hasSummer)) return std::nullopt;
  ZoneRules rules(rule.standard);
  if (hasSummer) rules.myRule = rule;
  return rules;
}

// --- Files

class ZoneRules::FileReader {
 public:
  explicit FileReader(std::string_view bytes) : myBytes(bytes) {}

  bool read(ZoneRules& rules) {
    if (!readHeader()) return false;
    if (myVersion == 0) return readBlock(rules, 4);
    // What follows the block for readers of 32 bits counts, and then the rule for the time after the last change.
    if (!skipBlock(4) || !readHeader() || !readBlock(rules, 8)) return false;
    return readFooter(rules);
  }

 private:
  std::int64_t number(std::size_t at, std::size_t size) const {
    std::uint64_t value = (static_cast<unsigned char>(myBytes[at]) & 0x80U) ? ~std::uint64_t{0} : 0;
    for (std::size_t i = 0; i < size; ++i) value = value << 8U | static_cast<unsigned char>(myBytes[at + i]);
    return static_cast<std::int64_t>(value);
  }

  bool readHeader() {
    constexpr std::size_t headerSize = 44;
    constexpr std::size_t countsAt = 20;
    if (myBytes.size() < headerSize || !myBytes.starts_with("TZif")) return false;
    myVersion = static_cast<unsigned char>(myBytes[4]);
    for (std::size_t i = 0; i < myCounts.size(); ++i) {
      const std::int64_t count = number(countsAt + 4 * i, 4);
      if (count < 0) return false;
      myCounts[i] = static_cast<std::uint64_t>(count);
    }
    myBytes.remove_prefix(headerSize);
    return true;
  }

  // 31 bits each, so that no sum of them overflows.
  std::uint64_t blockSize(std::size_t timeSize) const {
    const auto [utcMarks, standardMarks, leapSeconds, changes, types, letters] = myCounts;
    return changes * (timeSize + 1) + types * 6 + letters + leapSeconds * (timeSize + 4) + standardMarks + utcMarks;
  }

  bool skipBlock(std::size_t timeSize) {
    const std::uint64_t size = blockSize(timeSize);
    if (size > myBytes.size()) return false;
    myBytes.remove_prefix(static_cast<std::size_t>(size));
    return true;
  }

  bool readBlock(ZoneRules& rules, std::size_t timeSize) {
    const std::size_t changes = static_cast<std::size_t>(myCounts[3]);
    const std::size_t types = static_cast<std::size_t>(myCounts[4]);
    if (types == 0 || blockSize(timeSize) > myBytes.size()) return false;
    const std::size_t typesAt = changes * (timeSize + 1);
    // Type 0 holds before the first change.
    for (std::size_t i = 0; i <= changes; ++i) {
      const std::size_t type = i == 0 ? 0 : static_cast<unsigned char>(myBytes[changes * timeSize + i - 1]);
      if (type >= types) return false;
      const std::int64_t offset = number(typesAt + 6 * type, 4);
      if (offset < -mostOffset || offset > mostOffset) return false;
      if (i > 0) rules.myChanges.push_back(number((i - 1) * timeSize, timeSize));
      rules.myOffsets.push_back(static_cast<std::int32_t>(offset));
    }
    return std::ranges::is_sorted(rules.myChanges) && skipBlock(timeSize);
  }

  bool readFooter(ZoneRules& rules) {
    const std::size_t end = myBytes.find('\n', 1);
    if (!myBytes.starts_with('\n') || end == std::string_view::npos) return false;
    const std::string_view text = myBytes.substr(1, end - 1);
    if (text.empty()) return true;
    const std::optional<ZoneRules> rest = fromPOSIX(text);
    if (rest) rules.myRule = rest->myRule;
    return rest.has_value();
  }

  std::string_view myBytes;
  unsigned myVersion = 0;
  std::array<std::uint64_t, 6> myCounts{};
};

std::optional<ZoneRules> ZoneRules::fromTZif(std::string_view bytes) {
  ZoneRules rules;
  rules.myOffsets.clear();
  if (!FileReader(bytes).read(rules)) return std::nullopt;
  return rules;
}

// --- Looking up

ZonePeriod ZoneRules::periodAt(std::int64_t secondsSince1970) const {
  const auto next = std::ranges::upper_bound(myChanges, secondsSince1970);
  if (next == myChanges.end() && myRule) return periodByRule(secondsSince1970);
  const auto index = static_cast<std::size_t>(next - myChanges.begin());
  return {index == 0 ? std::numeric_limits<std::int64_t>::min() : myChanges[index - 1],
          next == myChanges.end() ? std::numeric_limits<std::int64_t>::max() : *next, myOffsets[index]};
}

ZonePeriod ZoneRules::periodByRule(std::int64_t secondsSince1970) const {
  // Enough for any year that has a text form; further on, the last of these years stands for all.
  constexpr std::int64_t farthest = 400'000'000'000;
  const std::int64_t instant = std::clamp(secondsSince1970, -farthest, farthest);
  const std::chrono::sys_days today(
      std::chrono::floor<std::chrono::days>(std::chrono::sys_seconds(std::chrono::seconds(instant))));
  const int year = static_cast<int>(std::chrono::year_month_day(today).year());
  // Changes near the turn of a year may fall into the neighbouring one, as UTC counts.
  ZonePeriod period{myChanges.empty() ? std::numeric_limits<std::int64_t>::min() : myChanges.back(),
                    std::numeric_limits<std::int64_t>::max(), myOffsets.back()};
  for (int i = year - 1; i <= year + 1; ++i) {
    const std::int64_t begins = myRule->summerBegins.inYear(i) - myRule->standard;
    const std::int64_t ends = myRule->summerEnds.inYear(i) - myRule->summer;
    for (const auto& [change, offset] : {std::pair(begins, myRule->summer), std::pair(ends, myRule->standard)}) {
      if (change > instant)
        period.until = std::min(period.until, change);
      else if (change >= period.from)
        period = {change, period.until, offset};
    }
  }
  return period;
}

}  // namespace kelvane
