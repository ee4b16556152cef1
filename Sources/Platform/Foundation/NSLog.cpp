#include "Platform/Foundation/NSLog.h"

#include <errno.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

struct SystemLog {
  std::mutex mutex;
  SystemLogSink sink;
};

// Never destroyed: destructors that run at exit may still log.
SystemLog& theSystemLog() {
  static auto& log = *new SystemLog();
  return log;
}

std::string timeStamp() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  tm local{};
  localtime_r(&now.tv_sec, &local);
  char text[64];
  const std::size_t length = strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
  const std::string milliseconds = std::to_string(1000 + now.tv_nsec / 1000000);
  return std::string(text, length) + "." + milliseconds.substr(1);
}

void writeWhole(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    // There is nowhere left to report this.
    if (written <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void writeToStandardError(TextView message) {
  const std::string line = timeStamp() + " " + program_invocation_short_name + "[" + std::to_string(getpid()) + ":" +
                           std::to_string(syscall(SYS_gettid)) + "] " + utf8(message) + "\n";
  writeWhole(STDERR_FILENO, line);
}

}  // namespace

SystemLogSink setSystemLogSink(SystemLogSink sink) {
  SystemLog& log = theSystemLog();
  const std::lock_guard lock(log.mutex);
  return std::exchange(log.sink, std::move(sink));
}

void systemLog(TextView message) {
  SystemLog& log = theSystemLog();
  const std::lock_guard lock(log.mutex);
  try {
    if (log.sink)
      log.sink(message);
    else
      writeToStandardError(message);
  } catch (...) {
    // A log that cannot be written must not bring down what wanted to log.
  }
}

}  // namespace kelvane
