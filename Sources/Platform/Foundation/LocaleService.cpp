#include "Platform/Foundation/LocaleService.h"

#include <unicode/coll.h>
#include <unicode/locid.h>

#include <algorithm>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// The languages that desktops are most often used in come first, and after them all into which desktops are translated:
// whoever shows only the beginning of the list still offers what users ask for.
constexpr std::string_view firstCodes[] = {
    "en", "zh_Hans", "zh_Hant", "es",      "hi", "ar",  "pt", "ru", "ja", "de", "fr", "ko", "it", "tr", "vi", "pl",
    "nl", "id",      "th",      "uk",      "fa", "sv",  "cs", "hu", "ro", "el", "da", "fi", "nb", "he", "sk", "bg",
    "hr", "ca",      "sr",      "sr_Latn", "sl", "lt",  "lv", "et", "ms", "bn", "ta", "te", "mr", "ur", "gu", "kn",
    "ml", "pa",      "zh",      "no",      "nn", "fil", "sw", "af", "sq", "mk", "bs", "is", "ga", "cy", "gl", "az",
    "hy", "ka",      "kk",      "uz",      "ky", "mn",  "be", "ne", "si", "km", "lo", "my", "am", "as", "or", "kok",
    "ps", "ku",      "ig",      "yo",      "ha", "zu",  "xh", "eo", "br", "fy", "lb", "fo", "tk", "ug", "yi", "en_US"};

Text textOf(const char* code) { return textFromUTF8(code); }

Text textOf(const icu::UnicodeString& string) {
  return Text(string.getBuffer(), static_cast<std::size_t>(string.length()));
}

// No locale has a longer code, and at a NUL the code would be cut and be another; these mean no language.
icu::Locale localeNamed(TextView code) {
  const bool isCode = code.size() < ULOC_FULLNAME_CAPACITY && code.find(u'\0') == TextView::npos;
  return icu::Locale::createCanonical(isCode ? utf8(code).c_str() : "");
}

icu::Locale maximized(icu::Locale locale) {
  UErrorCode status = U_ZERO_ERROR;
  locale.addLikelySubtags(status);
  return locale;
}

icu::Locale minimized(icu::Locale locale) {
  UErrorCode status = U_ZERO_ERROR;
  locale.minimizeSubtags(status);
  return locale;
}

// The code among `codes` of a locale that means the same as this one, and says no more than it must.
std::optional<Text> plainerCode(const icu::Locale& locale, const std::set<Text>& codes) {
  const icu::Locale full = maximized(locale);
  for (const icu::Locale& candidate : {minimized(locale), icu::Locale(full.getLanguage(), full.getScript()), full}) {
    Text name = textOf(candidate.getName());
    // A script without region may stand for another region.
    if (codes.contains(name) && maximized(candidate) == full) return name;
  }
  return std::nullopt;
}

// Without those that only say in more words what a plainer one says, such as "nb_NO" beside "nb", unless they are among
// the first.
std::set<Text> withoutDoubles(const std::set<Text>& codes) {
  std::set<Text> kept;
  for (const std::string_view code : firstCodes)
    if (codes.contains(textFromUTF8(code))) kept.insert(textFromUTF8(code));
  for (const Text& code : codes)
    if (plainerCode(localeNamed(code), codes).value_or(code) == code) kept.insert(code);
  return kept;
}

const std::set<Text>& collationCodes() {
  static const auto& codes = *[] {
    std::int32_t count = 0;
    const icu::Locale* locales = icu::Collator::getAvailableLocales(count);
    std::set<Text> all;
    for (std::int32_t i = 0; i < count; ++i) all.insert(textOf(locales[i].getName()));
    return new std::set<Text>(withoutDoubles(all));
  }();
  return codes;
}

// By code, those without script and region first.
std::vector<Text> orderedCollationCodes() {
  std::set<Text> left = collationCodes();
  std::vector<Text> codes;
  for (const std::string_view code : firstCodes)
    if (auto found = left.extract(textFromUTF8(code))) codes.push_back(std::move(found.value()));
  std::vector<Text> rest(left.begin(), left.end());
  std::stable_partition(rest.begin(), rest.end(), [](const Text& code) { return code.find(u'_') == Text::npos; });
  codes.insert(codes.end(), rest.begin(), rest.end());
  return codes;
}

}  // namespace

LocaleRef LocaleRef::interned(const Text& code) {
  static auto& mutex = *new std::mutex;
  static auto& codes = *new std::set<Text>;
  const std::lock_guard lock(mutex);
  return LocaleRef(&*codes.insert(code).first);
}

LocaleRef LocaleRef::fromCode(TextView code) {
  const icu::Locale locale = localeNamed(code);
  // Of no language, the likeliest would be English.
  if (*locale.getLanguage() == 0) return interned(textOf(locale.getName()));
  const Text name = textOf(locale.getName());
  if (collationCodes().contains(name)) return interned(name);
  return interned(plainerCode(locale, collationCodes()).value_or(name));
}

const std::vector<std::pair<LocaleRef, std::uint32_t>>& collationLocales() {
  static const auto& locales = *[] {
    auto* all = new std::vector<std::pair<LocaleRef, std::uint32_t>>;
    for (const Text& code : orderedCollationCodes()) all->emplace_back(LocaleRef::interned(code), 0U);
    return all;
  }();
  return locales;
}

Text languagePart(TextView code) { return textOf(localeNamed(code).getLanguage()); }

Text writtenLanguage(TextView code) {
  const icu::Locale locale = localeNamed(code);
  const icu::Locale full = maximized(locale);
  const icu::Locale usual = maximized(icu::Locale(locale.getLanguage()));
  Text language = textOf(locale.getLanguage());
  if (language.empty() || std::string_view(full.getScript()) == usual.getScript()) return language;
  return language + u"_" + textOf(full.getScript());
}

Text localeName(LocaleRef locale, LocaleRef displayLocale) {
  icu::UnicodeString name;
  return textOf(localeNamed(locale.code()).getDisplayName(localeNamed(displayLocale.code()), name));
}

}  // namespace kelvane
