#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/LocaleService.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// A locale by which texts can be sorted, and the lists of those that there are and that the user prefers: what a menu
// of languages is made from.
//
// ```cpp
// NSMenu menu(u"Language");
// for (const Ref<QNLocale>& language : QNLocale::preferedLanguages())
//   menu.addItem(std::make_shared<NSMenuItem>(language->displayName().value_or(u"")));
// ```
//
// The lists are made on first use and never again, so that a change of preferences counts from the next start on.
// Dates are written in the language that the locale belongs to, whatever its region, and in the default time zone;
// they are empty outside the years 1 to 9999. Immutable; any thread.
class KELVANE_EXPORT QNLocale : public NSObject {
 public:
  // locales  At most 100, and at the first call a warning to the system log when there are more: those that most users
  // ask for come first, then the other languages by code, then those with script or region.
  static const std::vector<Ref<QNLocale>>& locales();
  // localeByCode:  The entry of that list for the locale that the code means ("de_DE" and "de" mean the same); nil when
  // there is none. The same object each time.
  static Ref<QNLocale> localeByCode(TextView code);
  // localeByLocale:  Always nil.
  static Ref<QNLocale> localeByLocale(LocaleRef locale);
  // defaultLocale  The one for the preference "AppleLocale", as `localeByCode` finds it: nil also for a region that the
  // list lacks, such as "en_GB". For the user's language ask `preferedLanguage`.
  static Ref<QNLocale> defaultLocale();
  // englishLocale
  static Ref<QNLocale> englishLocale();
  // preferedLanguages  Those of the preference "AppleLanguages" that the list of locales has, the preferred first. Of
  // each other one the system log is told once: "Can't create locale 'tlh'."
  static const std::vector<Ref<QNLocale>>& preferedLanguages();
  // preferedLanguage  The first of these. When there is none, the system log is told each time: "List of prefered
  // locales is empty."
  static Ref<QNLocale> preferedLanguage();

  // initWithLocale:andVariant:
  QNLocale(LocaleRef locale, std::uint32_t variant) : myLocale(locale), myVariant(variant) {}

  // locale
  LocaleRef locale() const { return myLocale; }
  // The variant of the operation that came with the locale.
  std::uint32_t variant() const { return myVariant; }
  // code  The language alone: "fr" for "fr_CA".
  Text code() const;
  // displayName  What it is called in the user's preferred language, at most 100 code units; nothing when there is no
  // preferred language.
  std::optional<Text> displayName() const;
  // englishDisplayName  The same in English.
  std::optional<Text> englishDisplayName() const;
  // language, region, script  Always nothing.
  std::optional<Text> language() const { return std::nullopt; }
  std::optional<Text> region() const { return std::nullopt; }
  std::optional<Text> script() const { return std::nullopt; }

  // dateStringForDate:  "Sunday, March 1, 2009".
  Text dateStringForDate(const NSDate& date) const;
  // dateAndTimeStringForDate:  "March 1, 2009 at 5:05:09 PM".
  Text dateAndTimeStringForDate(const NSDate& date) const;
  // timeStringForDate:  "5:05 PM".
  Text timeStringForDate(const NSDate& date) const;
  // monthNameForMonth:  The name of the month, 1 to 12, as it stands alone. std::out_of_range for any other.
  Text monthNameForMonth(int month) const;

  // The locale's code.
  Text description() const override { return myLocale.code(); }

 private:
  LocaleRef myLocale;
  std::uint32_t myVariant;
};

}  // namespace kelvane
