#include "Application/Session.h"

#include <filesystem>
#include <system_error>

#include "Extensions/NSFileManager-QNExtensions.h"
#include "Extensions/NSFileManager-ThreadSafeManager.h"
#include "Extensions/NSUserDefaultsController-OSCompatibility.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Utilities/QNEnvironment.h"
#include "Utilities/QNLogger.h"

namespace notebook {
namespace {

using kelvane::QNEnvironment;
using kelvane::QNLogger;
using kelvane::NSUserDefaultsControllerExtensions::standardUserDefaults;

constexpr kelvane::TextView lastFolderKey = u"lastReportFolder";

void keepFolder(const std::string& folder) {
  std::error_code ignored;
  const std::string absolute = std::filesystem::absolute(folder, ignored).lexically_normal().native();
  setString(standardUserDefaults(), kelvane::textFromFileSystem(absolute), lastFolderKey);
  kelvane::Ref<kelvane::NSError> error;
  if (!standardUserDefaults().save(nullptr, &error))
    QNLogger::sharedLogger().warn(__LINE__, __FILE__, __func__,
                                  kelvane::format(u"Can't save the preferences: %@", error->localizedDescription()));
}

// The folders that a host works with, and its log among them.
void setUpEnvironment() {
  QNEnvironment& environment = QNEnvironment::sharedEnvironment();
  environment.setAppName(u"Notebook");
  environment.setMajorVersion(1);
  environment.setDevelopmentVersion(false);
  environment.setRedirectHelpBookToWebSite(false);
  // Only so that nobody is told, at the first start, that there was no temporary folder to be emptied.
  environment.temporaryFolderPathWithCreate();
  environment.setupFilesAndFolders();
  const kelvane::NSFileManager& files = kelvane::NSFileManagerExtensions::threadSafeManager();
  createDirectoryRecursivlyAtPath(files, environment.logFolderPath(), nullptr);
  QNLogger::sharedLogger().setLogFile(environment.logFilePath(), false);
}

}  // namespace

std::optional<std::string> lastFolder() {
  const auto folder = stringForKey(standardUserDefaults(), lastFolderKey);
  if (!folder) return std::nullopt;
  return kelvane::fileSystemRepresentation(*folder);
}

void beginSession() {
  standardUserDefaults().defaults().registerDefaults(
      *kelvane::NSDictionary::dictionaryWithEntries({{kelvane::Text(kelvane::cQNPref_LogLevel), kelvane::box(2)}}));
  setUpEnvironment();
}

void beginSession(const std::string& folder) {
  beginSession();
  QNLogger::sharedLogger().info(__LINE__, __FILE__, __func__,
                                kelvane::format(u"Report on %@", kelvane::textFromFileSystem(folder)));
  keepFolder(folder);
}

void endSession(bool isWhole) {
  QNLogger& logger = QNLogger::sharedLogger();
  logger.info(__LINE__, __FILE__, __func__, isWhole ? u"All is done." : u"Something was left out.");
  logger.closeLogFile();
}

}  // namespace notebook
