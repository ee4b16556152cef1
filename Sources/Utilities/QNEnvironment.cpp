#include "Utilities/QNEnvironment.h"

#include <system_error>

#include "Extensions/NSFileManager-QNExtensions.h"
#include "Extensions/NSFileManager-ThreadSafeManager.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/HomeDirectory.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/NSSearchPath.h"
#include "Platform/Foundation/PathText.h"
#include "Utilities/QNLogger.h"

namespace kelvane {
namespace {

using NSFileManagerExtensions::threadSafeManager;

// Each of the standard folders that are asked for has a path in these domains.
Text firstFolder(NSSearchPathDirectory directory, NSSearchPathDomainMask domain) {
  return NSSearchPathForDirectoriesInDomains(directory, domain, true).front();
}

Text joined(TextView path, TextView component) { return stringByAppendingPathComponent(path, component); }

// Removes the application's temporary folder, but none that others use too: a name such as "/" or "a/../.." leads
// there.
bool removeTemporaryFolder(const NSFileManager& files, TextView path, Ref<NSError>& error) {
  if (stringByStandardizingPath(path).starts_with(stringByStandardizingPath(NSTemporaryDirectory()) + u'/'))
    return files.removeItemAtPath(path, &error);
  error = NSError::errorWithSystemError(std::make_error_code(std::errc::invalid_argument), path);
  return false;
}

}  // namespace

QNEnvironment& QNEnvironment::sharedEnvironment() {
  static auto& environment = *new QNEnvironment();
  return environment;
}

Text QNEnvironment::appName() const {
  if (myAppName && !myAppName->empty()) return *myAppName;
  const NSBundle& bundle = NSBundle::mainBundle();
  if (const auto name = bundle.textInInfoDictionary(u"CFBundleName")) return *name;
  return bundle.textInInfoDictionary(u"CFBundleExecutable").value_or(u"NoNameApp");
}

void QNEnvironment::setAppName(std::optional<TextView> appName) { myAppName = appName; }

std::optional<Text> QNEnvironment::appVersion() const {
  return NSBundle::mainBundle().stringForInfoDictionaryKey(u"CFBundleShortVersionString");
}

std::optional<Text> QNEnvironment::appRevision() const {
  return NSBundle::mainBundle().stringForInfoDictionaryKey(u"CFBundleVersion");
}

Text QNEnvironment::applicationFolderPath() const { return NSBundle::mainBundle().bundlePath(); }

Text QNEnvironment::contentsFolderPath() const { return joined(applicationFolderPath(), u"Contents"); }

Text QNEnvironment::resourcesFolderPath() const { return joined(contentsFolderPath(), u"Resources"); }

Text QNEnvironment::libraryFolderPath() const { return firstFolder(NSLibraryDirectory, NSUserDomainMask); }

Text QNEnvironment::systemLibraryPath() const { return firstFolder(NSLibraryDirectory, NSLocalDomainMask); }

Text QNEnvironment::libraryAppSupportPath() const {
  return joined(firstFolder(NSApplicationSupportDirectory, NSUserDomainMask), appName());
}

Text QNEnvironment::systemLibraryAppSupportPath() const {
  return joined(joined(systemLibraryPath(), cQNFolderName_ApplicationSupport), appName());
}

Text QNEnvironment::cachesFolderPath() const { return firstFolder(NSCachesDirectory, NSUserDomainMask); }

Text QNEnvironment::cachesMetadataFolderPath() const { return joined(cachesFolderPath(), cQNFolderName_Metadata); }

Text QNEnvironment::cachesMetadataApplicationFolderPath() const {
  return joined(cachesMetadataFolderPath(), appName()) + (myIsDevelopmentVersion ? u".dev" : u"");
}

Text QNEnvironment::logFolderPath() const { return joined(libraryAppSupportPath(), u"Logs"); }

Text QNEnvironment::logFilePath() const { return joined(logFolderPath(), appName() + u".log"); }

Text QNEnvironment::logConfigFilePath() const { return joined(libraryAppSupportPath(), u"Log.config"); }

Text QNEnvironment::crashReportFilePath() const {
  return joined(joined(joined(libraryFolderPath(), u"Logs"), u"CrashReporter"), format(u"%@.crash.log", appName()));
}

Text QNEnvironment::userPluginFolderPath() const { return joined(libraryAppSupportPath(), cQNFolderName_Plugins); }

std::vector<Text> QNEnvironment::pluginFolderPaths() const {
  return {NSBundle::libraryBundle().builtInPlugInsPath(), NSBundle::mainBundle().builtInPlugInsPath(),
          joined(systemLibraryAppSupportPath(), cQNFolderName_Plugins), userPluginFolderPath()};
}

Text QNEnvironment::privateDocumentsFolderPath() const { return joined(libraryAppSupportPath(), u"Documents"); }

Text QNEnvironment::documentsFolderPath() const {
  return NSSearchPathForDirectoriesInDomains(NSDocumentDirectory, NSUserDomainMask, true).back();
}

Text QNEnvironment::desktopFolderPath() { return firstFolder(NSDesktopDirectory, NSUserDomainMask); }

Text QNEnvironment::userHomeFolderPath() const { return NSHomeDirectory(); }

Text QNEnvironment::userPicturesFolderPath() const { return joined(userHomeFolderPath(), u"Pictures"); }

Text QNEnvironment::temporaryFolderPath() const { return joined(NSTemporaryDirectory(), appName()); }

std::optional<Text> QNEnvironment::temporaryFolderPathWithCreate() const {
  const Text path = temporaryFolderPath();
  const NSFileManager& files = threadSafeManager();
  constexpr const char* method = "-[QNEnvironment temporaryFolderPathWithCreate]";
  QNLogger& logger = QNLogger::sharedLogger();
  bool isFolder = false;
  const bool exists = files.fileExistsAtPath(path, &isFolder);
  if (!exists) {
    logger.info(__LINE__, __FILE__, method, u"Temporary folder does not exist. Will create one...");
    createDirectoryRecursivlyAtPath(files, path, nullptr);
  } else if (!isFolder) {
    logger.error(__LINE__, __FILE__, method,
                 format(u"Can't put poster into the temporary folder at '%@', because there is a file with the same "
                        u"name.",
                        path));
    return std::nullopt;
  }
  if (!files.fileExistsAtPath(path)) return std::nullopt;
  return path;
}

void QNEnvironment::setupFilesAndFolders() {
  const NSFileManager& files = threadSafeManager();
  const Text temporary = temporaryFolderPath();
  Ref<NSError> error;
  if (!removeTemporaryFolder(files, temporary, error))
    NSLog(u"Error while removing file at path '%@': %@", temporary, error->localizedDescription());
  if (!files.createDirectoryAtPath(temporary, true, &error))
    NSLog(u"Error while creating folder at path '%@': %@", temporary, error->localizedDescription());
  const Text support = libraryAppSupportPath();
  if (!files.fileExistsAtPath(support)) createDirectoryRecursivlyAtPath(files, support, nullptr);
}

Text QNEnvironment::summary() const {
  return format(u"app-name: %@\n", appName()) + format(u"library-app-support: %@\n", libraryAppSupportPath());
}

}  // namespace kelvane
