#pragma once

#include <concepts>
#include <cstdint>
#include <cstdio>
#include <optional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// How severe a message is.
enum class QNLogLevel : std::uint32_t { Debug = 0, Info = 1, Warn = 2, Error = 3, Fatal = 4 };

// Kinds of events, one bit each.
enum class QNLogEvent : std::uint32_t { Binding = 1, Database = 2, Memory = 4, Transport = 8, Ui = 16, Verbose = 32 };

// A message on its way into the logger, made in silence from what is one. It views what it is made from; how long a
// literal is, is only counted when the message is written. A null pointer is written as "(null)".
class LogMessage {
 public:
  LogMessage(const char16_t* text) : myText(text) {}
  LogMessage(TextView text) : myText(text.data()), myLength(text.size()) {}
  LogMessage(const Text& text) : LogMessage(TextView(text)) {}

  TextView view() const {
    if (myLength != unknown) return TextView(myText, myLength);
    return myText ? TextView(myText) : TextView(u"(null)");
  }

 private:
  static constexpr std::size_t unknown = static_cast<std::size_t>(-1);

  const char16_t* myText;
  std::size_t myLength = unknown;
};

// The one place where the library and its host report what happens. A message that is at least as severe as the
// threshold becomes one line (more where it holds line ends, which stay), which goes to the system log and, when one is
// open, to the log file:
//
//   ERROR -[NSFileManager(QNExtensions) moveFileToTrash:]:49 - Can't move file at path: '/a.txt' to trash.
//
// ```cpp
// QNLogger::sharedLogger().warn(__LINE__, __FILE__, __func__, format(u"Can't move '%@'.", path));
// ```
//
// Apart from messages there are events, which go to the system log alone, when their kind is switched on.
//
// Nothing here fails: trouble of the logger's own goes to the system log. Messages may be written by several threads at
// once, each line stays whole; thresholds and the log file are set while no other thread writes. Writing a line costs a
// system call; a level that is off costs a comparison.
class KELVANE_EXPORT QNLogger {
 public:
  // sharedLogger  The logger of the process, made at the first call, on whatever thread.
  static QNLogger& sharedLogger();

  // A logger without a log file and with all events off. Its threshold is read here, once, from the preference
  // "QNLogger_logLevel": 0 to 4 count, a missing value is 0, any other gives 2 (Warn).
  QNLogger();
  // Closes the log file.
  ~QNLogger();
  QNLogger(const QNLogger&) = delete;
  QNLogger& operator=(const QNLogger&) = delete;

  // logLevel  The threshold: what is less severe is not written. A threshold above 4 turns everything off.
  std::uint32_t logLevel() const { return myLogLevel; }
  // setLogLevel:
  void setLogLevel(std::uint32_t logLevel) { myLogLevel = logLevel; }
  void setLogLevel(QNLogLevel logLevel) { myLogLevel = static_cast<std::uint32_t>(logLevel); }
  // eventLevel  The mask of the kinds of events that are written.
  std::uint32_t eventLevel() const { return myEventLevel; }
  // setEventLevel:
  void setEventLevel(std::uint32_t eventLevel) { myEventLevel = eventLevel; }
  // setImmediatelyFlusLogFile:  Whether each line is on its way to the disk before the call returns.
  void setImmediatelyFlusLogFile(std::same_as<bool> auto immediately) { myImmediatelyFlusLogFile = immediately; }

  // setLogFile:emptyLogFirst:  Opens a log file, to whose end lines are added, in ISO Latin-1; it is made when it is
  // missing, and removed first when `emptyLogFirst` says so, unless it is a folder. Nothing for an empty or nil path. A
  // file that is open already is not closed: call `closeLogFile` before. When the file cannot be opened none is, but
  // the path is kept.
  void setLogFile(std::optional<TextView> path, std::same_as<bool> auto emptyLogFirst) {
    openLogFile(path, emptyLogFirst);
  }
  // logFilePath  The path of the log file, or nil.
  std::optional<Text> logFilePath() const { return myLogFilePath; }
  // clearLogFile  Empties the log file and opens it again; without a path it only closes.
  void clearLogFile();
  // closeLogFile  Closes the log file and forgets its path.
  void closeLogFile();
  // logNSError:  Does nothing.
  void logNSError(const NSError* error);

  // Each message comes with the place that reports it: the source line, the source file, which is not printed, and the
  // method, in UTF-8.

  // lineNumber:fileName:methodName:debug:
  void debug(int lineNumber, const char* fileName, const char* methodName, LogMessage debug) {
    message(QNLogLevel::Debug, lineNumber, fileName, methodName, debug);
  }
  // lineNumber:fileName:methodName:info:
  void info(int lineNumber, const char* fileName, const char* methodName, LogMessage info) {
    message(QNLogLevel::Info, lineNumber, fileName, methodName, info);
  }
  // lineNumber:fileName:methodName:warn:
  // lineNumber:fileName:methodName:warn:withException:
  void warn(int lineNumber, const char* fileName, const char* methodName, LogMessage warn,
            const NSException* withException = nullptr) {
    message(QNLogLevel::Warn, lineNumber, fileName, methodName, warn, withException);
  }
  // lineNumber:fileName:methodName:error:
  // lineNumber:fileName:methodName:error:withException:
  void error(int lineNumber, const char* fileName, const char* methodName, LogMessage error,
             const NSException* withException = nullptr) {
    message(QNLogLevel::Error, lineNumber, fileName, methodName, error, withException);
  }
  // lineNumber:fileName:methodName:nsError:  The error's localized description and " (NSError)", as an error; nothing
  // for null.
  void nsError(int lineNumber, const char* fileName, const char* methodName, const NSError* nsError);
  // lineNumber:fileName:methodName:fatal:showDialog:
  void fatal(int lineNumber, const char* fileName, const char* methodName, LogMessage fatal,
             std::same_as<bool> auto showDialog) {
    message(QNLogLevel::Fatal, lineNumber, fileName, methodName, fatal, nullptr, showDialog);
  }
  // lineNumber:fileName:methodName:fatal:withException:
  void fatal(int lineNumber, const char* fileName, const char* methodName, LogMessage fatal,
             const NSException* withException) {
    message(QNLogLevel::Fatal, lineNumber, fileName, methodName, fatal, withException);
  }

  // logLevel:lineNumber:fileName:methodName:message:withException:showDialog:  What all of these come down to: writes
  // the line, with the exception's reason when there is one, and then shows a modal alert with the message: on the main
  // thread, which must be the calling one unless the desktop goes there itself, as Qt's does. Below the threshold
  // neither. The alert reads the message as a format without arguments: "%%" gives "%", any other conversion nothing. A
  // level above 4 has an empty label.
  template <std::same_as<bool> Truth = bool>
  void message(QNLogLevel logLevel, int lineNumber, const char* fileName, const char* methodName, LogMessage message,
               const NSException* withException = nullptr, Truth showDialog = false) {
    if (myLogLevel > static_cast<std::uint32_t>(logLevel)) return;
    writeMessage(logLevel, lineNumber, fileName, methodName, message.view(), withException);
    if (showDialog) showAlert(message.view());
  }
  template <std::same_as<bool> Truth = bool>
  void message(std::uint32_t logLevel, int lineNumber, const char* fileName, const char* methodName, LogMessage message,
               const NSException* withException = nullptr, Truth showDialog = false) {
    this->message(static_cast<QNLogLevel>(logLevel), lineNumber, fileName, methodName, message, withException,
                  showDialog);
  }

  // lineNumber:fileName:methodName:event:message:  Writes an event to the system log, whatever the threshold, when a
  // bit of `event` is in the mask. With the bit of Binding the line tells method and line number, else with that of
  // Memory the method. Several bits at once, and bits beyond Verbose, have an empty label.
  void event(int lineNumber, const char*, const char* methodName, std::uint32_t event, LogMessage message) {
    if ((myEventLevel & event) != 0) writeEvent(lineNumber, methodName, event, message.view());
  }
  void event(int lineNumber, const char* fileName, const char* methodName, QNLogEvent event, LogMessage message) {
    this->event(lineNumber, fileName, methodName, static_cast<std::uint32_t>(event), message);
  }

 private:
  void openLogFile(std::optional<TextView> path, bool emptyLogFirst);
  void writeMessage(QNLogLevel logLevel, int lineNumber, const char* fileName, const char* methodName, TextView message,
                    const NSException* withException);
  void writeEvent(int lineNumber, const char* methodName, std::uint32_t event, TextView message);
  void writeToLogFile(TextView line);
  static void showAlert(TextView message);

  std::uint32_t myEventLevel = 0;
  std::uint32_t myLogLevel;
  std::FILE* myLogFile = nullptr;
  std::optional<Text> myLogFilePath;
  bool myImmediatelyFlusLogFile = false;
};

}  // namespace kelvane
