#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSDictionary.h"

namespace kelvane {

// What the environment says about the user's languages, as default values for the preferences of the same names.
//
//   AppleLanguages  languages, the preferred first, from LANGUAGE (a list), LC_ALL, LC_MESSAGES, LANG: "de", "zh_Hant"
//   AppleLocale     whose dates and numbers to write, from LC_ALL, LC_TIME, LANG: "de_CH"
//
// Encodings are dropped; of modifiers, those that name a script count. "C", "POSIX" and nothing at all mean English.
KELVANE_EXPORT Ref<NSDictionary> languageDefaults();

}  // namespace kelvane
