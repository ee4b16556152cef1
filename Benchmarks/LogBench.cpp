// One million log lines, in a file and on a pipe, and messages of a level that is off.

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/Row.h"
#include "Support/TemporaryFolder.h"
#include "Utilities/QNLogger.h"

#ifdef BENCH_SPDLOG
#include <spdlog/logger.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#endif

namespace kelvane::bench {
namespace {

constexpr int million = 1'000'000;
// On the pipe each line costs a system call twice.
constexpr int pipedLines = 100'000;

constexpr TextView movedPath = u"/home/ann/Documents/letters/landlord.txt";
constexpr int movedLine = 120;
constexpr const char* movedMethod = "moveFileToTrash";

const std::string& logPath() {
  static const TemporaryFolder folder;
  static const std::string path = folder.path("kelvane.log");
  return path;
}

// What was written, to be compared.
struct LogFile {};
std::string contentsOf(LogFile) { return readFile(logPath(), std::size_t{1} << 30U).bytes; }

LogFile writeLines(int count, bool flushed) {
  QNLogger logger;
  logger.setImmediatelyFlusLogFile(flushed);
  logger.setLogFile(textFromUTF8(logPath()), true);
  for (int i = 0; i < count; ++i) {
    logger.info(movedLine, __FILE__, movedMethod, format(u"Moved '%@' after %d tries.", movedPath, i));
  }
  return {};
}

// Standard error on a pipe that somebody else empties, as a desktop's journal does.
class StandardErrorOnPipe {
 public:
  StandardErrorOnPipe() : myBefore(dup(STDERR_FILENO)) {
    std::array<int, 2> ends{};
    if (myBefore < 0 || pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
    dup2(ends[1], STDERR_FILENO);
    close(ends[1]);
    myReader = std::thread([from = ends[0]] {
      std::array<char, 65536> buffer;
      while (read(from, buffer.data(), buffer.size()) > 0) continue;
      close(from);
    });
  }
  ~StandardErrorOnPipe() {
    dup2(myBefore, STDERR_FILENO);
    close(myBefore);
    myReader.join();
  }
  StandardErrorOnPipe(const StandardErrorOnPipe&) = delete;
  StandardErrorOnPipe& operator=(const StandardErrorOnPipe&) = delete;

 private:
  int myBefore;
  std::thread myReader;
};

LogFile writeLinesAlsoToSystemLog() {
  const StandardErrorOnPipe pipe;
  SystemLogSink silence = setSystemLogSink({});
  const LogFile file = writeLines(pipedLines, false);
  setSystemLogSink(std::move(silence));
  return file;
}

// The same bytes by bare system calls, that many at a time.
void writeBytes(int count, std::size_t linesAtATime) {
  const std::string line =
      "INFO moveFileToTrash:120 - Moved '/home/ann/Documents/letters/landlord.txt' after 123456 tries.\n";
  std::string bytes;
  for (std::size_t i = 0; i < linesAtATime; ++i) bytes += line;
  const int file = open(logPath().c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  for (std::size_t i = 0; i < static_cast<std::size_t>(count); i += linesAtATime)
    if (write(file, bytes.data(), bytes.size()) < 0) std::abort();
  close(file);
}

#ifdef BENCH_SPDLOG
// One thread's logger, whose lines come out as ours do.
spdlog::logger fileLogger(bool flushed) {
  auto sink = std::make_shared<spdlog::sinks::basic_file_sink_st>(logPath(), true);
  sink->set_pattern("INFO %!:%# - %v");
  spdlog::logger logger("bench", std::move(sink));
  logger.flush_on(flushed ? spdlog::level::trace : spdlog::level::off);
  return logger;
}

LogFile writeLines(spdlog::logger logger, int count) {
  const std::string path = utf8(movedPath);
  for (int i = 0; i < count; ++i) {
    const spdlog::source_loc place{__FILE__, movedLine, movedMethod};
    logger.log(place, spdlog::level::info, "Moved '{}' after {} tries.", path, i);
  }
  return {};
}

LogFile writeLinesAlsoToStandardError() {
  const StandardErrorOnPipe pipe;
  spdlog::logger logger = fileLogger(false);
  auto sink = std::make_shared<spdlog::sinks::stderr_sink_st>();
  sink->set_pattern("%Y-%m-%d %H:%M:%S.%e Benchmarks[%P:%t] INFO %!:%# - %v");
  logger.sinks().push_back(std::move(sink));
  return writeLines(std::move(logger), pipedLines);
}
#endif

// Calls a logger a million times, each time as if its threshold might be another one.
template <class Logger, class Call>
void callOften(Logger& logger, Call call) {
  for (int i = 0; i < million; ++i) {
    call(logger);
    benchmark::ClobberMemory();
  }
}

const Subject files([] {
  Row("log to a file, buffered")
      .ours([] { return writeLines(million, false); }, contentsOf)
#ifdef BENCH_SPDLOG
      .peer(
          "spdlog", [] { return writeLines(fileLogger(false), million); }, contentsOf)
#endif
      .limit("write(2) of 64 KiB", [] { writeBytes(million, 690); })
      .per("line", million)
      .reach(2.5);

  Row("log to a file, each line flushed")
      .ours([] { return writeLines(million, true); }, contentsOf)
#ifdef BENCH_SPDLOG
      .peer(
          "spdlog", [] { return writeLines(fileLogger(true), million); }, contentsOf)
#endif
      .limit("write(2)", [] { writeBytes(million, 1); })
      .per("line", million)
      .reach(1.2);

  Row("log to a file and a pipe")
      .ours(writeLinesAlsoToSystemLog, contentsOf)
#ifdef BENCH_SPDLOG
      .peer("spdlog", writeLinesAlsoToStandardError, contentsOf)
#endif
      .per("line", pipedLines);
});

const Subject off([] {
  static QNLogger ours;
  ours.setLogLevel(QNLogLevel::Warn);
#ifdef BENCH_SPDLOG
  static spdlog::logger theirs("off", std::make_shared<spdlog::sinks::stderr_sink_st>());
  theirs.set_level(spdlog::level::warn);
#endif
  Row("log at a level that is off")
      .ours([] {
        callOften(ours, [](QNLogger& logger) { logger.debug(__LINE__, __FILE__, __func__, u"Moved a file."); });
      })
#ifdef BENCH_SPDLOG
      .peer("spdlog", [] { callOften(theirs, [](spdlog::logger& logger) { logger.debug("Moved a file."); }); })
#endif
      .per("message", million)
      .under(2);
});

}  // namespace
}  // namespace kelvane::bench
