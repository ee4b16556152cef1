#include "Window/WindowedSession.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <chrono>
#include <cstdlib>

#include "Application/Session.h"
#include "Extensions/NSUserDefaultsController-OSCompatibility.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/HomeDirectory.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/URLLimits.h"
#include "Qt/QtDesktop.h"
#include "Utilities/QNEnvironment.h"
#include "Utilities/QNLogger.h"
#include "Walkthrough/Walkthrough.h"
#include "Window/MainWindow.h"
#include "Window/Preferences.h"
#include "Window/QtText.h"

namespace notebook {
namespace {

using kelvane::Text;
using kelvane::NSUserDefaultsControllerExtensions::standardUserDefaults;

constexpr kelvane::TextView folderKey = u"notesFolder";

Text folderOfNotes(const std::optional<std::string>& folder) {
  if (folder) {
    const QByteArray absolute = QFile::encodeName(QDir(QFile::decodeName(folder->c_str())).absolutePath());
    return kelvane::textFromFileSystem(absolute.toStdString());
  }
  if (auto last = stringForKey(standardUserDefaults(), folderKey)) return *last;
  return kelvane::stringByAppendingPathComponent(kelvane::NSHomeDirectory(), u"Documents/Notebook");
}

// What Qt has to say goes where all else goes. That offscreen windows are no real ones is nothing new.
void passToLog(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (message.startsWith(QStringLiteral("This plugin does not support"))) return;
  kelvane::QNLogger& logger = kelvane::QNLogger::sharedLogger();
  const Text text = fromQt(message);
  if (type == QtDebugMsg || type == QtInfoMsg)
    logger.debug(context.line, context.file, "Qt", text);
  else
    logger.warn(context.line, context.file, "Qt", text);
}

// The window stands still while it waits for the web site, so that it does not wait for long.
constexpr kelvane::URLLimits sitemapLimits{.connectTime = std::chrono::seconds(3),
                                           .idleTime = std::chrono::seconds(3),
                                           .totalTime = std::chrono::seconds(5),
                                           .receivedBytes = std::uint64_t{1} << 20U};

void beginWindowedSession() {
  kelvane::installQtDesktop();
  beginSession();
  registerPreferences();
  kelvane::QNEnvironment::sharedEnvironment().setSitemapLimits(sitemapLimits);
}

// Preferences, log and trash of its own, so that the user's stay what they are.
void useFoldersWithin(const QString& folder) {
  QDir(folder).removeRecursively();
  for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
    const QString own = folder + QLatin1Char('/') + QString::fromLatin1(variable);
    QDir().mkpath(own);
    setenv(variable, QFile::encodeName(own).constData(), 1);
  }
}

}  // namespace

int runWithWindows(int& count, char** arguments, const std::optional<std::string>& folder) {
  qInstallMessageHandler(passToLog);
  QApplication application(count, arguments);
  application.setApplicationDisplayName(QStringLiteral("Notebook"));
  beginWindowedSession();
  const Text notes = folderOfNotes(folder);
  int status = 0;
  {
    MainWindow window(notes);
    if (const auto failure = window.load()) {
      kelvane::QNLogger::sharedLogger().fatal(
          __LINE__, __FILE__, __func__, kelvane::format(u"The notes in '%@' can't be read: %@", notes, *failure), true);
      endSession(false);
      return 1;
    }
    setString(standardUserDefaults(), notes, folderKey);
    window.show();
    status = QApplication::exec();
  }
  endSession(status == 0);
  return status;
}

int runWalkthrough(int& count, char** arguments, const std::string& sample, const std::string& pictures) {
  QElapsedTimer sinceStart;
  sinceStart.start();
  useFoldersWithin(QDir(QFile::decodeName(pictures.c_str())).absoluteFilePath(QStringLiteral("settings")));
  qInstallMessageHandler(passToLog);
  QApplication application(count, arguments);
  beginWindowedSession();
  const bool isWell =
      Walkthrough(QFile::decodeName(sample.c_str()), QFile::decodeName(pictures.c_str()), sinceStart).run();
  endSession(isWell);
  return isWell ? 0 : 1;
}

}  // namespace notebook
