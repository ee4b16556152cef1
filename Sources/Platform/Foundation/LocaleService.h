#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// What the system knows about locales and languages. Any thread.
namespace kelvane {

// A locale. Two references are to the same one when they are equal; comparing costs nothing. They stay valid for the
// life of the process, and none is taken away by letting it go.
class KELVANE_EXPORT LocaleRef {
 public:
  // The locale that a code means: "de_CH", "de-CH" and "DE_ch" are the same. Where texts can be sorted by a locale that
  // has another code but means the same, it is that one: "de" for "de_DE", "zh_Hant" for "zh_TW".
  static LocaleRef fromCode(TextView code);

  // In its usual form, such as "zh_Hant_HK".
  const Text& code() const { return *myCode; }

  friend bool operator==(LocaleRef, LocaleRef) = default;

 private:
  explicit LocaleRef(const Text* code) : myCode(code) {}
  static LocaleRef interned(const Text& code);
  friend KELVANE_EXPORT const std::vector<std::pair<LocaleRef, std::uint32_t>>& collationLocales();

  const Text* myCode;
};

// The locales by which texts can be sorted, each with the variant of the operation (0 as yet). The order is ours and
// the same in every run: those that most users ask for, then the other languages, then those with script or region, but
// none that only says in more words what another one says ("nb_NO" beside "nb").
KELVANE_EXPORT const std::vector<std::pair<LocaleRef, std::uint32_t>>& collationLocales();

// The language part alone, "de" for "de_CH".
KELVANE_EXPORT Text languagePart(TextView code);
// The language, and the script where it is not the one that the language is usually written in: "en" for "en_GB",
// "zh_Hant" for "zh_TW". Empty when there is no language.
KELVANE_EXPORT Text writtenLanguage(TextView code);
// What the locale is called in a language: "German (Switzerland)".
KELVANE_EXPORT Text localeName(LocaleRef locale, LocaleRef displayLocale);

}  // namespace kelvane
