#include "Platform/Foundation/NSLog.h"

#include <errno.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

struct SystemLog {
  // Recursive, for a sink that logs or is replaced by itself.
  std::recursive_mutex mutex;
  // Shared, so that a sink which is replaced while it runs lives until it returns.
  std::shared_ptr<const SystemLogSink> sink;
  bool isInSink = false;
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
  auto replacement = sink ? std::make_shared<const SystemLogSink>(std::move(sink)) : nullptr;
  const auto before = std::exchange(log.sink, std::move(replacement));
  return before ? *before : SystemLogSink();
}

void systemLog(TextView message) {
  SystemLog& log = theSystemLog();
  const std::lock_guard lock(log.mutex);
  const auto sink = log.isInSink ? nullptr : log.sink;
  const bool wasInSink = std::exchange(log.isInSink, true);
  try {
    if (sink)
      (*sink)(message);
    else
      writeToStandardError(message);
  } catch (...) {
    // A log that cannot be written must not bring down what wanted to log.
  }
  log.isInSink = wasInSink;
}

}  // namespace kelvane
