#include "Platform/Foundation/NSLog.h"

#include <errno.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <ctime>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// "2026-01-31 12:00:00.123" in local time. The calendar is asked once a second. Only for whoever holds the mutex.
class Clock {
 public:
  void appendTime(std::string& line) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (now.tv_sec != mySecond) show(now.tv_sec);
    line.append(myText, myLength);
    const auto milliseconds = static_cast<unsigned>(now.tv_nsec / 1'000'000);
    const char digits[] = {'.', digit(milliseconds / 100), digit(milliseconds / 10 % 10), digit(milliseconds % 10)};
    line.append(digits, sizeof digits);
  }

 private:
  static constexpr char digit(unsigned value) { return static_cast<char>('0' + value); }

  void show(std::time_t second) {
    tm local{};
    localtime_r(&second, &local);
    myLength = strftime(myText, sizeof myText, "%Y-%m-%d %H:%M:%S", &local);
    mySecond = second;
  }

  std::time_t mySecond = -1;
  char myText[64] = {};
  std::size_t myLength = 0;
};

struct SystemLog {
  // Recursive, for a sink that logs or is replaced by itself.
  std::recursive_mutex mutex;
  // Shared, so that a sink which is replaced while it runs lives until it returns.
  std::shared_ptr<const SystemLogSink> sink;
  bool isInSink = false;
  Clock clock;
  std::string line;
};

// Never destroyed: destructors that run at exit may still log.
SystemLog& theSystemLog() {
  static auto& log = *new SystemLog();
  return log;
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

// Room for one line, which stays for the next unless it has become large.
void trim(std::string& line) {
  constexpr std::size_t usual = 4096;
  if (line.capacity() > usual) line = {};
}

// The calling thread's number, for which the system is asked once in each process: one that was forked has others.
long threadNumber(pid_t process) {
  thread_local pid_t knownFor = 0;
  thread_local long number = 0;
  if (knownFor != process) {
    number = syscall(SYS_gettid);
    knownFor = process;
  }
  return number;
}

void writeToStandardError(SystemLog& log, TextView message) {
  std::string& line = log.line;
  line.clear();
  log.clock.appendTime(line);
  line += ' ';
  line += program_invocation_short_name;
  line += '[';
  const pid_t process = getpid();
  line += std::to_string(process);
  line += ':';
  line += std::to_string(threadNumber(process));
  line += "] ";
  line += utf8(message);
  line += '\n';
  writeWhole(STDERR_FILENO, line);
  trim(line);
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
      writeToStandardError(log, message);
  } catch (...) {
    // A log that cannot be written must not bring down what wanted to log.
  }
  log.isInSink = wasInSink;
}

}  // namespace kelvane
