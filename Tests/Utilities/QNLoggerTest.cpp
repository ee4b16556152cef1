#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "Extensions/NSFileManager-ThreadSafeManager.h"
#include "Extensions/NSUserDefaultsController-OSCompatibility.h"
#include "Platform/Desktop/Desktop.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/CapturedSystemLog.h"
#include "Support/TemporaryFolder.h"
#include "Support/TextPrinting.h"
#include "Utilities/QNLogger.h"

namespace kelvane {
namespace {

using LogLines = std::vector<Text>;
constexpr const char* method = "-[Host work]";

// Keeps the alerts that it was asked to show.
class RecordingDesktop : public Desktop {
 public:
  void runModalAlert(const ModalAlert& alert) override { alerts.push_back(alert); }
  std::vector<ModalAlert> alerts;
};

class QNLoggerTest : public testing::Test {
 protected:
  QNLoggerTest() { setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1); }

  std::string fileBytes() const {
    std::ifstream file(fileSystemRepresentation(logPath), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  TemporaryFolder folder;
  Text logPath = textFromFileSystem(folder.path() + "/host.log");
  CapturedSystemLog systemLog;
};

TEST_F(QNLoggerTest, ThresholdComesFromThePreference) {
  auto& preferences = NSUserDefaultsControllerExtensions::standardUserDefaults();
  const struct {
    Ref<NSObject> value;
    std::uint32_t threshold;
  } rows[] = {
      {nullptr, 0},  {box(4), 4},         {box(5), 2},
      {box(-1), 2},  {box(u"3"), 3},      {box(u"x"), 0},
      {box(3.9), 3}, {box(1LL << 32), 0}, {NSArray::arrayWithObjects({}), 0},
  };
  for (const auto& row : rows) {
    setObject(preferences, row.value, u"QNLogger_logLevel");
    EXPECT_EQ(QNLogger().logLevel(), row.threshold) << utf8(description(row.value));
  }
  setObject(preferences, box(3), u"QNLogger_logLevel");
  QNLogger& shared = QNLogger::sharedLogger();
  setObject(preferences, box(1), u"QNLogger_logLevel");
  EXPECT_EQ(&shared, &QNLogger::sharedLogger());
  EXPECT_EQ(shared.logLevel(), 3U);
}

TEST_F(QNLoggerTest, EveryEntryWritesItsLine) {
  QNLogger logger;
  const NSException exception(u"Name", Text(u"why"));
  const NSException silent(u"Name");
  logger.debug(1, "f", method, u"a");
  logger.info(2, "f", method, u"b");
  logger.warn(3, "f", method, u"d", &exception);
  logger.error(4, "f", method, u"e %@ %d");
  logger.error(5, "f", method, u"f", &silent);
  logger.nsError(6, "f", method, NSError::errorWithDescription(u"D", 5, u"broken").get());
  logger.nsError(6, "f", method, nullptr);
  logger.logNSError(NSError::errorWithDescription(u"D", 5, u"broken").get());
  logger.fatal(-7, "f", method, u"g", false);
  logger.message(static_cast<QNLogLevel>(9), 9, "f", method, u"i");
  EXPECT_EQ(systemLog.take(), (LogLines{
                                  u"DEBUG -[Host work]:1 - a",
                                  u"INFO -[Host work]:2 - b",
                                  u"WARN -[Host work]:3 - d - Exception: why",
                                  u"ERROR -[Host work]:4 - e %@ %d",
                                  u"ERROR -[Host work]:5 - f - Exception: (null)",
                                  u"ERROR -[Host work]:6 - broken (NSError)",
                                  u"FATAL -[Host work]:-7 - g",
                                  u" -[Host work]:9 - i",
                              }));
}

TEST_F(QNLoggerTest, ThresholdAlsoHoldsBackTheAlert) {
  const auto desktop = std::make_shared<RecordingDesktop>();
  const auto before = Desktop::install(desktop);
  QNLogger logger;
  logger.fatal(1, "f", method, u"50%% of %d and %@", true);
  logger.setLogLevel(5);
  logger.fatal(1, "f", method, u"unheard", true);
  Desktop::install(before);
  EXPECT_EQ(systemLog.take(), LogLines{u"FATAL -[Host work]:1 - 50%% of %d and %@"});
  ASSERT_EQ(desktop->alerts.size(), 1U);
  EXPECT_EQ(desktop->alerts[0].title, u"A serious problem occurred");
  EXPECT_EQ(desktop->alerts[0].informativeText, u"50% of  and ");
  EXPECT_EQ(desktop->alerts[0].defaultButton, u"OK");
}

TEST_F(QNLoggerTest, EventsGoByTheMaskAndNotToTheFile) {
  QNLogger logger;
  logger.setLogLevel(5);
  logger.setLogFile(logPath, false);
  logger.event(1, "f", method, QNLogEvent::Memory, u"off");
  logger.setEventLevel(1 | 4 | 8 | 64);
  logger.event(1, "f", method, QNLogEvent::Binding, u"a");
  logger.event(2, "f", method, QNLogEvent::Database, u"off");
  logger.event(3, "f", method, QNLogEvent::Memory, u"b");
  logger.event(4, "f", method, QNLogEvent::Transport, u"c");
  logger.event(5, "f", method, 3, u"d");
  logger.event(6, "f", method, 12, u"e");
  logger.event(7, "f", method, 64, u"f");
  logger.closeLogFile();
  EXPECT_EQ(systemLog.take(), (LogLines{u"BINDING -[Host work]:1 - a", u"MEMORY -[Host work] - b", u"TRANSPORT - c",
                                        u" -[Host work]:5 - d", u" -[Host work] - e", u" - f"}));
  EXPECT_EQ(fileBytes(), "");
}

TEST_F(QNLoggerTest, LogFileTakesLatin1Lines) {
  QNLogger logger;
  logger.setImmediatelyFlusLogFile(true);
  logger.setLogFile(logPath, false);
  logger.warn(1, "f", method, u"caf\xE9");
  logger.warn(2, "f", method, u"\x20AC");
  logger.setLogFile(u"", true);
  logger.setLogFile(std::nullopt, true);
  EXPECT_EQ(logger.logFilePath(), logPath);
  EXPECT_EQ(fileBytes(), "WARN -[Host work]:1 - caf\xE9\n(null)\n");
  EXPECT_EQ(systemLog.take().back(), u"WARN -[Host work]:2 - \x20AC");
  logger.clearLogFile();
  logger.warn(3, "f", method, u"anew");
  logger.closeLogFile();
  EXPECT_EQ(logger.logFilePath(), std::nullopt);
  logger.warn(4, "f", method, u"after");
  logger.setLogFile(logPath, false);
  logger.warn(5, "f", method, u"more");
  EXPECT_EQ(fileBytes(), "WARN -[Host work]:3 - anew\nWARN -[Host work]:5 - more\n");
  logger.closeLogFile();
  logger.setLogFile(logPath, true);
  EXPECT_EQ(fileBytes(), "");
}

TEST_F(QNLoggerTest, TroubleWithTheLogFileHarmsNobody) {
  QNLogger logger;
  const Text missing = textFromFileSystem(folder.path() + "/no/such/folder/host.log");
  logger.setLogFile(missing, true);
  EXPECT_EQ(logger.logFilePath(), missing);
  logger.warn(1, "f", method, u"a");
  logger.clearLogFile();
  logger.closeLogFile();
  EXPECT_EQ(systemLog.take(), (LogLines{u"Can't open log file!", u"WARN -[Host work]:1 - a", u"Can't open log file!"}));

  // A log that cannot be removed: whoever may write everywhere cannot remove a folder's mount point either.
  logger.setLogFile(u"/proc/version", true);
  const auto messages = systemLog.take();
  ASSERT_FALSE(messages.empty());
  EXPECT_TRUE(messages[0].starts_with(u"Error while removing file at path '/proc/version': ")) << utf8(messages[0]);
}

// The disk is full after each number of bytes in turn: short writes, failed writes, a failed flush and a failed close.
TEST_F(QNLoggerTest, AFullDiskCostsTheLogItsRestAndNothingElse) {
  signal(SIGXFSZ, SIG_IGN);
  const std::string whole = "WARN -[Host work]:1 - a\nWARN -[Host work]:2 - b\nWARN -[Host work]:3 - c\n";
  for (const bool immediately : {true, false}) {
    for (std::size_t space = 0; space <= whole.size(); ++space) {
      QNLogger logger;
      logger.setImmediatelyFlusLogFile(immediately);
      logger.setLogFile(logPath, true);
      const rlimit limit{space, RLIM_INFINITY};
      ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
      for (const auto& [line, text] : {std::pair(1, u"a"), std::pair(2, u"b"), std::pair(3, u"c")})
        logger.warn(line, "f", method, text);
      logger.closeLogFile();
      const rlimit unlimited{RLIM_INFINITY, RLIM_INFINITY};
      ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &unlimited), 0);
      EXPECT_EQ(systemLog.take().size(), 3U);
      EXPECT_EQ(fileBytes().substr(0, space), fileBytes());
      EXPECT_TRUE(immediately ? fileBytes().size() <= space : whole.starts_with(fileBytes())) << fileBytes();
      if (space == whole.size()) {
        EXPECT_EQ(fileBytes(), whole);
      }
    }
  }
}

TEST_F(QNLoggerTest, HeadlessAlertIsWrittenAndNotWaitedFor) {
  testing::internal::CaptureStderr();
  QNLogger().fatal(1, "f", method, u"The disk is gone.", true);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "\nA serious problem occurred\nThe disk is gone.\n");
}

TEST_F(QNLoggerTest, LinesOfSeveralThreadsStayWhole) {
  QNLogger logger;
  logger.setLogFile(logPath, false);
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread)
      threads.emplace_back([&logger] {
        for (int line = 0; line < 500; ++line) logger.warn(line, "f", method, Text(200, u'x'));
      });
  }
  logger.closeLogFile();
  std::ifstream file(fileSystemRepresentation(logPath));
  int count = 0;
  for (std::string line; std::getline(file, line); ++count)
    ASSERT_TRUE(line.starts_with("WARN -[Host work]:") && line.ends_with(std::string(" - ") + std::string(200, 'x')));
  EXPECT_EQ(count, 2000);
}

TEST(NSFileManagerThreadSafeManager, IsEachThreadsOwn) {
  using NSFileManagerExtensions::threadSafeManager;
  NSFileManager* const mine = &threadSafeManager();
  std::vector<NSFileManager*> managers(16);
  {
    std::vector<std::jthread> threads;
    std::atomic<int> ready = 0;
    for (NSFileManager*& manager : managers)
      threads.emplace_back([&manager, &ready, count = static_cast<int>(managers.size())] {
        manager = &threadSafeManager();
        // All stay alive until all have theirs, so that none inherits another's.
        for (++ready; ready < count;) std::this_thread::yield();
        if (manager != &threadSafeManager()) manager = nullptr;
      });
    for (auto& thread : threads) thread.join();
  }
  managers.push_back(mine);
  managers.push_back(nullptr);
  std::sort(managers.begin(), managers.end());
  EXPECT_EQ(std::adjacent_find(managers.begin(), managers.end()), managers.end());
  EXPECT_EQ(&threadSafeManager(), mine);
}

}  // namespace
}  // namespace kelvane
