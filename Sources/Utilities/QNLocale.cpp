#include "Utilities/QNLocale.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "Platform/Foundation/CivilTime.h"
#include "Platform/Foundation/LocalizedDates.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/NSTimeZone.h"
#include "Platform/Foundation/NSUserDefaults.h"

namespace kelvane {
namespace {

constexpr std::size_t mostLocales = 100;
constexpr std::size_t longestName = 100;
constexpr std::size_t longestCode = 30;

Text dateText(const NSDate& date, TextView locale, DateStyle dateStyle, DateStyle timeStyle) {
  const std::optional<std::int64_t> seconds = wholeSecondsSince1970(date);
  if (!seconds) return {};
  const std::int32_t offset = NSTimeZone::currentTimeZone().periodAt(*seconds).offset;
  if (!civilTime(*seconds, offset)) return {};
  return LocalizedDateFormatter(locale, dateStyle, timeStyle).text(*seconds, offset);
}

Text nameIn(LocaleRef locale, const QNLocale& displayLocale) {
  Text name = localeName(locale, displayLocale.locale());
  name.resize(std::min(name.size(), longestName));
  return name;
}

std::vector<Ref<QNLocale>> makeLocales() {
  const auto& all = collationLocales();
  if (all.size() > mostLocales) NSLog(u"WARN: There are more locales than expected.");
  std::vector<Ref<QNLocale>> locales;
  for (const auto& [locale, variant] : all) {
    if (locales.size() == mostLocales) break;
    locales.push_back(std::make_shared<QNLocale>(locale, variant));
  }
  return locales;
}

std::vector<Ref<QNLocale>> makePreferedLanguages() {
  std::vector<Ref<QNLocale>> languages;
  const auto codes = as<NSArray>(NSUserDefaults::standardUserDefaults().objectForKey(u"AppleLanguages"));
  if (!codes) return languages;
  for (const Ref<NSObject>& code : *codes) {
    const auto text = as<NSString>(code);
    if (Ref<QNLocale> locale = text ? QNLocale::localeByCode(text->text()) : nullptr)
      languages.push_back(std::move(locale));
    else
      NSLog(u"Can't create locale '%@'.", code);
  }
  return languages;
}

}  // namespace

const std::vector<Ref<QNLocale>>& QNLocale::locales() {
  static const auto& locales = *new std::vector<Ref<QNLocale>>(makeLocales());
  return locales;
}

Ref<QNLocale> QNLocale::localeByCode(TextView code) {
  const auto found = std::ranges::find(locales(), LocaleRef::fromCode(code), &QNLocale::locale);
  return found == locales().end() ? nullptr : *found;
}

Ref<QNLocale> QNLocale::localeByLocale(LocaleRef) { return nullptr; }

Ref<QNLocale> QNLocale::defaultLocale() {
  const auto code = as<NSString>(NSUserDefaults::standardUserDefaults().objectForKey(u"AppleLocale"));
  return code ? localeByCode(code->text()) : nullptr;
}

Ref<QNLocale> QNLocale::englishLocale() { return localeByCode(u"en"); }

const std::vector<Ref<QNLocale>>& QNLocale::preferedLanguages() {
  static const auto& languages = *new std::vector<Ref<QNLocale>>(makePreferedLanguages());
  return languages;
}

Ref<QNLocale> QNLocale::preferedLanguage() {
  if (!preferedLanguages().empty()) return preferedLanguages().front();
  NSLog(u"List of prefered locales is empty.");
  return nullptr;
}

Text QNLocale::code() const {
  Text code = languagePart(myLocale.code());
  code.resize(std::min(code.size(), longestCode));
  return code;
}

std::optional<Text> QNLocale::displayName() const {
  const Ref<QNLocale> language = preferedLanguage();
  if (!language) return std::nullopt;
  return nameIn(myLocale, *language);
}

std::optional<Text> QNLocale::englishDisplayName() const {
  const Ref<QNLocale> english = englishLocale();
  if (!english) return std::nullopt;
  return nameIn(myLocale, *english);
}

Text QNLocale::dateStringForDate(const NSDate& date) const {
  return dateText(date, code(), DateStyle::Full, DateStyle::None);
}

Text QNLocale::dateAndTimeStringForDate(const NSDate& date) const {
  return dateText(date, code(), DateStyle::Long, DateStyle::Medium);
}

Text QNLocale::timeStringForDate(const NSDate& date) const {
  return dateText(date, code(), DateStyle::None, DateStyle::Short);
}

Text QNLocale::monthNameForMonth(int month) const {
  const std::vector<Text> names = monthNames(code());
  if (month < 1 || static_cast<std::size_t>(month) > names.size())
    throw std::out_of_range("monthNameForMonth: there is no month " + std::to_string(month));
  return names[static_cast<std::size_t>(month) - 1];
}

}  // namespace kelvane
