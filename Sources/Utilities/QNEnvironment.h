#pragma once

#include <chrono>
#include <concepts>
#include <cstdint>
#include <optional>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/URLLimits.h"

namespace kelvane {

inline constexpr TextView cQNCompany_KelvaneSoftware = u"Kelvane Software";
inline constexpr TextView cQNFolderName_ApplicationSupport = u"Application Support";
inline constexpr TextView cQNFolderName_Caches = u"Caches";
inline constexpr TextView cQNFolderName_Metadata = u"Metadata";
inline constexpr TextView cQNFolderName_Plugins = u"Plug-Ins";
inline constexpr TextView cQNPref_LogLevel = u"QNLogger_logLevel";

// Who the application is, and where it keeps its files. A host sets it up once, at its start:
//
// ```cpp
// QNEnvironment& environment = QNEnvironment::sharedEnvironment();
// environment.setAppName(u"Notebook");
// environment.setupFilesAndFolders();
// const Text log = environment.logFilePath();
// ```
//
// Every path is put together when it is asked for, from the application's name and the standard folders
// (NSSearchPath.h), and nothing is made but where it is said; what was asked for before the name changed has the old
// name. Below, NAME is `appName`. Names are used as they are, a "/" included.
//
// Setters on one thread, while no other asks; the rest on any thread.
class KELVANE_EXPORT QNEnvironment {
 public:
  // sharedEnvironment  The environment of the process, made at the first call.
  static QNEnvironment& sharedEnvironment();

  // An environment without a name of its own and with both flags off.
  QNEnvironment() = default;
  QNEnvironment(const QNEnvironment&) = delete;
  QNEnvironment& operator=(const QNEnvironment&) = delete;

  // appName  The name that the host has set; when it is nil or empty the main bundle's "CFBundleName", else its
  // "CFBundleExecutable", else "NoNameApp".
  Text appName() const;
  // setAppName:
  void setAppName(std::optional<TextView> appName);
  // appVersion  The main bundle's "CFBundleShortVersionString"; nil when it is missing.
  std::optional<Text> appVersion() const;
  // appRevision  The main bundle's "CFBundleVersion"; nil when it is missing.
  std::optional<Text> appRevision() const;

  // majorVersion  The major version number; 0 until the host sets it.
  std::int64_t majorVersion() const { return myMajorVersion; }
  // setMajorVersion:
  void setMajorVersion(std::int64_t majorVersion) { myMajorVersion = majorVersion; }
  // isDevelopmentVersion  Whether the running build is one of development, which gets caches of its own.
  bool isDevelopmentVersion() const { return myIsDevelopmentVersion; }
  // setDevelopmentVersion:
  void setDevelopmentVersion(std::same_as<bool> auto isDevelopment) { myIsDevelopmentVersion = isDevelopment; }
  // redirectHelpBookToWebSite  Whether requests for help go to the web site and not to the help that is installed.
  bool redirectHelpBookToWebSite() const { return myRedirectHelpBookToWebSite; }
  // setRedirectHelpBookToWebSite:
  void setRedirectHelpBookToWebSite(std::same_as<bool> auto redirects) { myRedirectHelpBookToWebSite = redirects; }

  // applicationFolderPath  The main bundle's folder; "Contents" in it, and "Resources" in that.
  Text applicationFolderPath() const;
  Text contentsFolderPath() const;
  Text resourcesFolderPath() const;

  // libraryFolderPath  The user's Library folder.
  Text libraryFolderPath() const;
  // systemLibraryPath  The Library folder of the machine.
  Text systemLibraryPath() const;
  // libraryAppSupportPath  NAME in the user's Application Support folder.
  Text libraryAppSupportPath() const;
  // systemLibraryAppSupportPath  "Application Support/NAME" in the machine's Library folder.
  Text systemLibraryAppSupportPath() const;

  // cachesFolderPath  The user's Caches folder, and "Metadata" in it.
  Text cachesFolderPath() const;
  Text cachesMetadataFolderPath() const;
  // cachesMetadataApplicationFolderPath  NAME in the latter; "NAME.dev" for a development version.
  Text cachesMetadataApplicationFolderPath() const;

  // logFolderPath  "Logs" in `libraryAppSupportPath`. Not made by `setupFilesAndFolders`.
  Text logFolderPath() const;
  // logFilePath  "NAME.log" in it.
  Text logFilePath() const;
  // logConfigFilePath  "Log.config" in `libraryAppSupportPath`.
  Text logConfigFilePath() const;
  // crashReportFilePath  "Logs/CrashReporter/NAME.crash.log" in `libraryFolderPath`.
  Text crashReportFilePath() const;

  // userPluginFolderPath  "Plug-Ins" in `libraryAppSupportPath`.
  Text userPluginFolderPath() const;
  // pluginFolderPaths  Where plug-ins are looked for, in order, whether the folders are there or not: those built into
  // the library and into the application, then "Plug-Ins" in `systemLibraryAppSupportPath` and in
  // `libraryAppSupportPath`.
  std::vector<Text> pluginFolderPaths() const;

  // privateDocumentsFolderPath  "Documents" in `libraryAppSupportPath`.
  Text privateDocumentsFolderPath() const;
  // documentsFolderPath  The user's folder for documents.
  Text documentsFolderPath() const;
  // desktopFolderPath  The folder of the user's desktop.
  static Text desktopFolderPath();
  // userHomeFolderPath  The user's home folder, and "Pictures" in it.
  Text userHomeFolderPath() const;
  Text userPicturesFolderPath() const;

  // temporaryFolderPath  NAME in the user's folder for temporary files (NSTemporaryDirectory).
  Text temporaryFolderPath() const;
  // temporaryFolderPathWithCreate  The same, made when it is missing; nil when it cannot be made, or there is something
  // that is no folder. Both are logged.
  std::optional<Text> temporaryFolderPathWithCreate() const;

  // setupFilesAndFolders  Removes `temporaryFolderPath` with all that is in it and makes it anew, and makes
  // `libraryAppSupportPath` when it is missing. Failures, also that there was no temporary folder to be removed, go to
  // the system log. With a name that leads out of the user's folder for temporary files, or to that folder itself,
  // nothing is removed.
  void setupFilesAndFolders();

  // Where the maker's web site keeps its links: the host, and the port if it is not 80, of
  // "HOST/sitemap/application.xml". Nil, as at first, when there is none; then every link is the default.
  std::optional<Text> sitemapServer() const { return mySitemapServer; }
  void setSitemapServer(std::optional<TextView> sitemapServer) { mySitemapServer = sitemapServer; }
  // How long a caller may have to wait for it, and for how much.
  const URLLimits& sitemapLimits() const { return mySitemapLimits; }
  void setSitemapLimits(const URLLimits& limits) { mySitemapLimits = limits; }

  // linkFromSitemapForKey:defaultTo:  The address that the sitemap, a property list on the web site, has under the key.
  // The default when it has none or an empty one, nil when it has a value of another kind, or the default is no text;
  // nil for nil. The first call fetches the sitemap and waits for it. It is kept for the process, whatever environment
  // has asked; when there was none to be had, the next call tries again. Any thread.
  std::optional<Text> linkFromSitemapForKey(std::optional<TextView> key, const Ref<NSObject>& defaultTo) const;
  // linkFromSitemapForKey:  The default is what the main bundle's information dictionary has under the key.
  std::optional<Text> linkFromSitemapForKey(std::optional<TextView> key) const;

  // Links that the host has asked for and keeps here for its menus and dialogs; nil until then.

  // linkToBugsListPage
  std::optional<Text> linkToBugsListPage() const { return myLinkToBugsListPage; }
  // setLinkToBugsListPage:
  void setLinkToBugsListPage(std::optional<TextView> linkToBugsListPage) { myLinkToBugsListPage = linkToBugsListPage; }
  // linkToDownloadPage
  std::optional<Text> linkToDownloadPage() const { return myLinkToDownloadPage; }
  // setLinkToDownloadPage:
  void setLinkToDownloadPage(std::optional<TextView> linkToDownloadPage) { myLinkToDownloadPage = linkToDownloadPage; }
  // linkToFAQPage
  std::optional<Text> linkToFAQPage() const { return myLinkToFAQPage; }
  // setLinkToFAQPage:
  void setLinkToFAQPage(std::optional<TextView> linkToFAQPage) { myLinkToFAQPage = linkToFAQPage; }
  // linkToFeedbackPage
  std::optional<Text> linkToFeedbackPage() const { return myLinkToFeedbackPage; }
  // setLinkToFeedbackPage:
  void setLinkToFeedbackPage(std::optional<TextView> linkToFeedbackPage) { myLinkToFeedbackPage = linkToFeedbackPage; }
  // linkToHelpPage
  std::optional<Text> linkToHelpPage() const { return myLinkToHelpPage; }
  // setLinkToHelpPage:
  void setLinkToHelpPage(std::optional<TextView> linkToHelpPage) { myLinkToHelpPage = linkToHelpPage; }
  // linkToHomePage
  std::optional<Text> linkToHomePage() const { return myLinkToHomePage; }
  // setLinkToHomePage:
  void setLinkToHomePage(std::optional<TextView> linkToHomePage) { myLinkToHomePage = linkToHomePage; }
  // linkToProductPage
  std::optional<Text> linkToProductPage() const { return myLinkToProductPage; }
  // setLinkToProductPage:
  void setLinkToProductPage(std::optional<TextView> linkToProductPage) { myLinkToProductPage = linkToProductPage; }
  // linkToShopPage
  std::optional<Text> linkToShopPage() const { return myLinkToShopPage; }
  // setLinkToShopPage:
  void setLinkToShopPage(std::optional<TextView> linkToShopPage) { myLinkToShopPage = linkToShopPage; }
  // linkToSupportPage
  std::optional<Text> linkToSupportPage() const { return myLinkToSupportPage; }
  // setLinkToSupportPage:
  void setLinkToSupportPage(std::optional<TextView> linkToSupportPage) { myLinkToSupportPage = linkToSupportPage; }
  // linkToVersionInfoFile
  std::optional<Text> linkToVersionInfoFile() const { return myLinkToVersionInfoFile; }
  // setLinkToVersionInfoFile:
  void setLinkToVersionInfoFile(std::optional<TextView> linkToVersionInfoFile) {
    myLinkToVersionInfoFile = linkToVersionInfoFile;
  }

  // summary  "app-name: NAME", LF, "library-app-support: " and `libraryAppSupportPath`.
  Text summary() const;

 private:
  Ref<NSDictionary> fetchSitemap() const;

  std::optional<Text> myAppName;
  std::optional<Text> myLinkToBugsListPage;
  std::optional<Text> myLinkToDownloadPage;
  std::optional<Text> myLinkToFAQPage;
  std::optional<Text> myLinkToFeedbackPage;
  std::optional<Text> myLinkToHelpPage;
  std::optional<Text> myLinkToHomePage;
  std::optional<Text> myLinkToProductPage;
  std::optional<Text> myLinkToShopPage;
  std::optional<Text> myLinkToSupportPage;
  std::optional<Text> myLinkToVersionInfoFile;
  std::int64_t myMajorVersion = 0;
  bool myIsDevelopmentVersion = false;
  bool myRedirectHelpBookToWebSite = false;
  std::optional<Text> mySitemapServer;
  URLLimits mySitemapLimits = {.connectTime = std::chrono::seconds(30),
                               .idleTime = std::chrono::seconds(30),
                               .totalTime = std::chrono::minutes(2),
                               .receivedBytes = std::uint64_t{16} << 20U};
};

}  // namespace kelvane
