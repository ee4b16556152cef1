// The operations of QNEnvironment.h that ask the maker's web site.

#include <exception>
#include <mutex>

#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/URLContents.h"
#include "Utilities/QNEnvironment.h"
#include "Utilities/QNLogger.h"

namespace kelvane {
namespace {

// Of the process. Not locked while it is fetched: of several that fetch it at once, the first to be done counts.
class SitemapCache {
 public:
  static SitemapCache& shared() {
    static auto& cache = *new SitemapCache();
    return cache;
  }

  Ref<NSDictionary> get() {
    const std::lock_guard lock(myMutex);
    return mySitemap;
  }

  Ref<NSDictionary> keep(const Ref<NSDictionary>& sitemap) {
    const std::lock_guard lock(myMutex);
    if (!mySitemap) mySitemap = sitemap;
    return mySitemap;
  }

 private:
  std::mutex myMutex;
  Ref<NSDictionary> mySitemap;
};

std::optional<Text> textOf(const Ref<NSObject>& object) {
  const NSString* string = as<NSString>(object.get());
  if (!string) return std::nullopt;
  return string->text();
}

bool isEmptyText(const Ref<NSObject>& object) {
  const NSString* string = as<NSString>(object.get());
  return string && isEmpty(string->text());
}

}  // namespace

// Nothing is escaped: names and versions are as the server knows them.
Ref<NSDictionary> QNEnvironment::fetchSitemap() const {
  if (!mySitemapServer) return nullptr;
  const Text product = replaceAllOccurencesOfString(appName(), u" ", u"");
  const Text address = format(u"http://%@/sitemap/application.xml?product=%@&version=%@&revision=%@", mySitemapServer,
                              product, appVersion(), appRevision());
  return dictionaryWithContentsOfURL(NSURL::URLWithString(address), mySitemapLimits);
}

std::optional<Text> QNEnvironment::linkFromSitemapForKey(std::optional<TextView> key,
                                                         const Ref<NSObject>& defaultTo) const {
  if (!key) return std::nullopt;
  try {
    SitemapCache& cache = SitemapCache::shared();
    Ref<NSDictionary> sitemap = cache.get();
    if (!sitemap) sitemap = cache.keep(fetchSitemap());
    const Ref<NSObject> link = sitemap ? sitemap->objectForKey(*key) : nullptr;
    if (link && !isEmptyText(link)) return textOf(link);
  } catch (const std::exception& exception) {
    constexpr const char* method = "-[QNEnvironment linkFromSitemapForKey:defaultTo:]";
    QNLogger& logger = QNLogger::sharedLogger();
    const NSException told(u"NSGenericException", textFromUTF8(exception.what()));
    logger.fatal(__LINE__, __FILE__, method, u"Exception occurred: ", &told);
    logger.error(__LINE__, __FILE__, method,
                 format(u"Can't extract link for key '%@' from sitemap. Use fallback.", *key));
  }
  return textOf(defaultTo);
}

std::optional<Text> QNEnvironment::linkFromSitemapForKey(std::optional<TextView> key) const {
  return linkFromSitemapForKey(key, key ? NSBundle::mainBundle().infoDictionary().objectForKey(*key) : nullptr);
}

}  // namespace kelvane
