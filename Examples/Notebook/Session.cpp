#include "Session.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "Extensions/NSFileManager-ThreadSafeManager.h"
#include "Extensions/NSUserDefaultsController-OSCompatibility.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/StandardFolders.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Utilities/QNLogger.h"

namespace notebook {
namespace {

using kelvane::QNLogger;
using kelvane::NSUserDefaultsControllerExtensions::standardUserDefaults;

constexpr kelvane::TextView lastFolderKey = u"lastReportFolder";

void keepFolder(const std::string& folder) {
  std::error_code ignored;
  const std::string absolute = std::filesystem::absolute(folder, ignored).lexically_normal().native();
  try {
    setString(standardUserDefaults(), kelvane::textFromFileSystem(absolute), lastFolderKey);
  } catch (const std::invalid_argument&) {
    // A name that is no text, which preferences cannot hold: the next time it has to be given again.
    return;
  }
  kelvane::Ref<kelvane::NSError> error;
  if (!standardUserDefaults().save(nullptr, &error))
    QNLogger::sharedLogger().warn(__LINE__, __FILE__, __func__,
                                  kelvane::format(u"Can't save the preferences: %@", error->localizedDescription()));
}

void openLog() {
  const kelvane::Text folder = kelvane::dataFolderPath() + u"/Notebook/Logs";
  kelvane::NSFileManagerExtensions::threadSafeManager().createDirectoryAtPath(folder, true, nullptr);
  QNLogger::sharedLogger().setLogFile(folder + u"/Notebook.log", false);
}

}  // namespace

std::optional<std::string> lastFolder() {
  const auto folder = stringForKey(standardUserDefaults(), lastFolderKey);
  if (!folder) return std::nullopt;
  return kelvane::fileSystemRepresentation(*folder);
}

void beginSession(const std::string& folder) {
  standardUserDefaults().defaults().registerDefaults(
      *kelvane::NSDictionary::dictionaryWithEntries({{u"QNLogger_logLevel", kelvane::box(2)}}));
  openLog();
  QNLogger::sharedLogger().info(__LINE__, __FILE__, __func__,
                                kelvane::format(u"Report on %@", kelvane::textFromFileSystem(folder)));
  keepFolder(folder);
}

void endSession(bool isWhole) {
  QNLogger& logger = QNLogger::sharedLogger();
  logger.info(__LINE__, __FILE__, __func__, isWhole ? u"Report is whole." : u"Something was left out of the report.");
  logger.closeLogFile();
}

}  // namespace notebook
