#include "Platform/Foundation/UserLanguages.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "Platform/Foundation/LocaleService.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// The first of the variables that is there and not empty, as POSIX wants it.
std::string_view firstOf(std::initializer_list<const char*> variables) {
  for (const char* variable : variables)
    if (const char* value = std::getenv(variable); value && *value) return value;
  return {};
}

// "de_CH.UTF-8@euro" as a locale's code, "de_CH"; "sr_RS@latin" as "sr_Latn_RS".
Text codeFromPOSIX(std::string_view name) {
  std::string_view modifier;
  if (const std::size_t at = name.find('@'); at != std::string_view::npos) {
    modifier = name.substr(at + 1);
    name = name.substr(0, at);
  }
  name = name.substr(0, name.find('.'));
  if (name.empty() || name == "C" || name == "POSIX") return u"en";
  std::string code(name);
  const std::string_view script = modifier == "latin" ? "_Latn" : modifier == "cyrillic" ? "_Cyrl" : "";
  code.insert(std::min(code.find('_'), code.size()), script);
  return textFromUTF8(code);
}

}  // namespace

Ref<NSDictionary> languageDefaults() {
  const std::string_view messages = firstOf({"LC_ALL", "LC_MESSAGES", "LANG"});
  std::vector<Text> languages;
  const auto add = [&languages](std::string_view name) {
    Text language = writtenLanguage(codeFromPOSIX(name));
    if (!language.empty() && std::ranges::find(languages, language) == languages.end())
      languages.push_back(std::move(language));
  };
  // With the C locale, LANGUAGE does not count, as the translations of programs have it.
  const std::string_view messagesName = messages.substr(0, messages.find('.'));
  std::string_view list =
      messagesName.empty() || messagesName == "C" || messagesName == "POSIX" ? "" : firstOf({"LANGUAGE"});
  while (!list.empty()) {
    const std::string_view name = list.substr(0, list.find(':'));
    if (!name.empty()) add(name);
    list.remove_prefix(std::min(name.size() + 1, list.size()));
  }
  add(messages);

  std::vector<Ref<NSObject>> objects;
  for (Text& language : languages) objects.push_back(std::make_shared<NSString>(std::move(language)));
  const Text locale = codeFromPOSIX(firstOf({"LC_ALL", "LC_TIME", "LANG"}));
  return NSDictionary::dictionaryWithEntries({{u"AppleLanguages", std::make_shared<NSArray>(std::move(objects))},
                                              {u"AppleLocale", std::make_shared<NSString>(locale)}});
}

}  // namespace kelvane
