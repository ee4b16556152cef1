#include "Utilities/QNLogger.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <string_view>

#include "Extensions/NSFileManager-ThreadSafeManager.h"
#include "Extensions/NSUserDefaultsController-OSCompatibility.h"
#include "Platform/Desktop/Desktop.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/ShortText.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

using NSFileManagerExtensions::threadSafeManager;
using NSUserDefaultsControllerExtensions::standardUserDefaults;

constexpr std::uint32_t mostSevere = 4;

std::uint32_t preferredLevel() {
  const auto level = static_cast<std::uint32_t>(integerForKey(standardUserDefaults(), u"QNLogger_logLevel"));
  return level <= mostSevere ? level : static_cast<std::uint32_t>(QNLogLevel::Warn);
}

std::string_view labelOf(QNLogLevel level) {
  constexpr std::array<std::string_view, 5> labels{"DEBUG", "INFO", "WARN", "ERROR", "FATAL"};
  const auto index = static_cast<std::size_t>(level);
  return index < labels.size() ? labels[index] : std::string_view();
}

const char* labelOf(std::uint32_t event) {
  switch (static_cast<QNLogEvent>(event)) {
    case QNLogEvent::Binding:
      return "BINDING";
    case QNLogEvent::Database:
      return "DATABASE";
    case QNLogEvent::Memory:
      return "MEMORY";
    case QNLogEvent::Transport:
      return "TRANSPORT";
    case QNLogEvent::Ui:
      return "UI";
    case QNLogEvent::Verbose:
      return "VERBOSE";
  }
  return "";
}

void appendNumber(ShortText& line, int number) {
  char digits[16];
  line.appendASCII({digits, std::to_chars(digits, std::end(digits), number).ptr});
}

// What stands for a line that ISO Latin-1 cannot hold.
constexpr std::string_view unwritable = "(null)";

// Writes the line in ISO Latin-1, and a line end, to `out`, and returns the length.
std::size_t latin1Line(TextView line, char* out) {
  std::size_t length = line.size();
  if (!narrowISOLatin1(line, out)) length = unwritable.copy(out, unwritable.size());
  out[length] = '\n';
  return length + 1;
}

constexpr bool hasBit(std::uint32_t event, QNLogEvent bit) { return (event & static_cast<std::uint32_t>(bit)) != 0; }

}  // namespace

QNLogger& QNLogger::sharedLogger() {
  static auto& logger = *new QNLogger();
  return logger;
}

QNLogger::QNLogger() : myLogLevel(preferredLevel()) {}

QNLogger::~QNLogger() { closeLogFile(); }

void QNLogger::openLogFile(std::optional<TextView> path, bool emptyLogFirst) {
  if (!path || path->empty()) return;
  // A copy first: the path may be a view of the one that it replaces.
  myLogFilePath = Text(*path);
  NSFileManager& files = threadSafeManager();
  bool isFolder = false;
  if (emptyLogFirst && files.fileExistsAtPath(*myLogFilePath, &isFolder)) {
    Ref<NSError> error;
    // A folder would go with all that is in it.
    if (isFolder)
      error = NSError::errorWithSystemError(std::make_error_code(std::errc::is_a_directory), *myLogFilePath);
    if (isFolder || !files.removeItemAtPath(*myLogFilePath, &error))
      NSLog(u"Error while removing file at path '%@': %@", *myLogFilePath, error->localizedDescription());
  }
  // A path with NUL would open another file.
  const bool isPath = myLogFilePath->find(u'\0') == Text::npos;
  myLogFile = isPath ? std::fopen(fileSystemRepresentation(*myLogFilePath).c_str(), "ae") : nullptr;
  if (!myLogFile) NSLog(u"Can't open log file!");
}

void QNLogger::clearLogFile() {
  const std::optional<Text> path = myLogFilePath;
  closeLogFile();
  if (path) openLogFile(*path, true);
}

void QNLogger::closeLogFile() {
  myLogFilePath.reset();
  if (myLogFile) std::fclose(myLogFile);
  myLogFile = nullptr;
}

void QNLogger::logNSError(const NSError*) {}

void QNLogger::nsError(int lineNumber, const char* fileName, const char* methodName, const NSError* nsError) {
  if (nsError) error(lineNumber, fileName, methodName, format(u"%@ (NSError)", nsError->localizedDescription()));
}

void QNLogger::writeMessage(QNLogLevel logLevel, int lineNumber, const char*, const char* methodName, TextView message,
                            const NSException* withException) {
  const std::string_view method = methodName ? methodName : "(null)";
  ShortText line;
  line.appendASCII(labelOf(logLevel));
  line.append(u' ');
  line.appendUTF8(method);
  line.append(u':');
  appendNumber(line, lineNumber);
  line.append(TextView(u" - "));
  line.append(message);
  if (withException) line.append(format(u" - Exception: %@", withException->reason()));
  writeToLogFile(line.view());
  systemLog(line.view());
}

void QNLogger::writeToLogFile(TextView line) {
  if (!myLogFile) return;
  // One call, so that lines of several threads do not mix. A line is mostly short.
  char shortLine[512];
  if (line.size() < sizeof shortLine) {
    const std::size_t length = latin1Line(line, shortLine);
    std::fwrite(shortLine, 1, length, myLogFile);
  } else {
    const auto longLine = std::make_unique_for_overwrite<char[]>(std::max(line.size(), unwritable.size()) + 1);
    std::fwrite(longLine.get(), 1, latin1Line(line, longLine.get()), myLogFile);
  }
  if (myImmediatelyFlusLogFile) std::fflush(myLogFile);
}

void QNLogger::showAlert(TextView message) {
  Desktop::current().runModalAlert({u"A serious problem occurred", formatWithoutArguments(message), u"OK"});
}

void QNLogger::writeEvent(int lineNumber, const char* methodName, std::uint32_t event, TextView message) {
  const char* label = labelOf(event);
  if (hasBit(event, QNLogEvent::Binding))
    NSLog(u"%s %s:%ld - %@", label, methodName, lineNumber, message);
  else if (hasBit(event, QNLogEvent::Memory))
    NSLog(u"%s %s - %@", label, methodName, message);
  else
    NSLog(u"%s - %@", label, message);
}

}  // namespace kelvane
