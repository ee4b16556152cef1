#pragma once

#include <functional>
#include <optional>

#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

// What the user has chosen, kept in the library's preferences. Main thread only.
namespace notebook {

inline constexpr kelvane::TextView zoomKey = u"zoom";
inline constexpr kelvane::TextView darkThemeKey = u"darkTheme";
inline constexpr kelvane::TextView logLevelKey = u"QNLogger_logLevel";
inline constexpr kelvane::TextView siteKey = u"sitemapServer";

// What counts until the user chooses.
void registerPreferences();

double preferredZoom();
void setPreferredZoom(double zoom);
// Host, and port if need be, of the maker's web site; nothing when the user has named none.
std::optional<kelvane::Text> preferredSite();
bool prefersDarkTheme();
void setPrefersDarkTheme(bool isDark);

// Calls back whenever one of the preferences above is another one, whoever has changed it.
class PreferenceFollower : public kelvane::NSObject {
 public:
  explicit PreferenceFollower(std::function<void()> changed);
  ~PreferenceFollower() override;

  void observeValueForKeyPath(kelvane::TextView keyPath, NSObject& ofObject, const kelvane::NSKeyValueChange& change,
                              void* context) override;

 private:
  std::function<void()> myChanged;
};

}  // namespace notebook
