#include "Window/Preferences.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Extensions/NSUserDefaultsController-OSCompatibility.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSKeyValueObserving.h"
#include "Platform/Foundation/NSUserDefaults.h"

namespace notebook {
namespace {

using kelvane::Text;
using kelvane::TextView;
using kelvane::NSUserDefaultsControllerExtensions::standardUserDefaults;

constexpr std::array<TextView, 4> followedKeys{zoomKey, darkThemeKey, logLevelKey, siteKey};
constexpr double smallestZoom = 0.5;
constexpr double largestZoom = 4;

}  // namespace

void registerPreferences() {
  standardUserDefaults().defaults().registerDefaults(*kelvane::NSDictionary::dictionaryWithEntries(
      {{zoomKey, kelvane::box(1.25)}, {darkThemeKey, kelvane::box(false)}}));
}

double preferredZoom() {
  return std::clamp(static_cast<double>(floatForKey(standardUserDefaults(), zoomKey, 1)), smallestZoom, largestZoom);
}

void setPreferredZoom(double zoom) {
  setFloat(standardUserDefaults(), static_cast<float>(std::clamp(zoom, smallestZoom, largestZoom)), zoomKey);
}

std::optional<Text> preferredSite() {
  auto site = stringForKey(standardUserDefaults(), siteKey);
  return site && site->empty() ? std::nullopt : std::move(site);
}

bool prefersDarkTheme() { return boolForKey(standardUserDefaults(), darkThemeKey); }

void setPrefersDarkTheme(bool isDark) { setBool(standardUserDefaults(), isDark, darkThemeKey); }

PreferenceFollower::PreferenceFollower(std::function<void()> changed) : myChanged(std::move(changed)) {
  for (const TextView key : followedKeys)
    standardUserDefaults().values()->addObserver(*this, key, kelvane::NSKeyValueObservingOptionNew, nullptr);
}

PreferenceFollower::~PreferenceFollower() {
  for (const TextView key : followedKeys) standardUserDefaults().values()->removeObserver(*this, key);
}

void PreferenceFollower::observeValueForKeyPath(TextView, NSObject&, const kelvane::NSKeyValueChange&, void*) {
  myChanged();
}

}  // namespace notebook
