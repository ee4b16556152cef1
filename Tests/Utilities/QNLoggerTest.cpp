#include <signal.h>
#include <sys/resource.h>

#include <atomic>
#include <thread>

#include "Extensions/NSFileManager-ThreadSafeManager.h"
#include "Extensions/NSUserDefaultsController-OSCompatibility.h"
#include "Platform/Desktop/Desktop.h"
#include "Platform/Foundation/Format.h"
#include "Support/PreferencesTest.h"
#include "Utilities/QNLogger.h"

namespace {

using LogLines = std::vector<Text>;
constexpr const char* method = "-[Host work]";

struct RecordingDesktop : Desktop {
  void runModalAlert(const ModalAlert& alert) override { alerts.push_back(alert); }
  std::vector<ModalAlert> alerts;
};

struct QNLoggerTest : PreferencesTest {
  std::string fileBytes() const { return folder.bytes("host.log"); }

  Text logPath = folder.text("host.log");
  CapturedSystemLog systemLog;
};

TEST_F(QNLoggerTest, ThresholdComesFromThePreference) {
  auto& preferences = NSUserDefaultsControllerExtensions::standardUserDefaults();
  const std::tuple<Ref<NSObject>, std::uint32_t> rows[] = {
      {nullptr, 0}, {box(4), 4}, {box(5), 2}, {box(-1), 2}, {box(u"3"), 3}, {box(u"x"), 0}, {box(1LL << 32), 0},
  };
  for (const auto& [value, threshold] : rows) {
    setObject(preferences, value, u"QNLogger_logLevel");
    EXPECT_EQ(QNLogger().logLevel(), threshold) << utf8(description(value));
  }
}

TEST_F(QNLoggerTest, EveryEntryWritesItsLine) {
  QNLogger logger;
  const NSException exception(u"Name", Text(u"why"));
  const NSException silent(u"Name");
  const auto error = NSError::errorWithDescription(u"D", 5, u"broken");
  logger.debug(1, "f", method, u"a");
  logger.info(2, "f", method, u"b");
  logger.warn(3, "f", method, u"d", &exception);
  logger.error(5, "f", method, u"f %@", &silent);
  logger.nsError(6, "f", method, error.get());
  logger.nsError(6, "f", method, nullptr);
  logger.logNSError(error.get());
  logger.fatal(-7, "f", method, u"g", false);
  logger.message(9, 9, "f", method, static_cast<const char16_t*>(nullptr));
  EXPECT_EQ(
      systemLog.take(),
      (LogLines{u"DEBUG -[Host work]:1 - a", u"INFO -[Host work]:2 - b", u"WARN -[Host work]:3 - d - Exception: why",
                u"ERROR -[Host work]:5 - f %@ - Exception: (null)", u"ERROR -[Host work]:6 - broken (NSError)",
                u"FATAL -[Host work]:-7 - g", u" -[Host work]:9 - (null)"}));
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
  const std::uint32_t events[] = {1, 2, 4, 8, 3, 12, 64};
  for (const std::uint32_t event : events) logger.event(7, "f", method, event, u"a");
  logger.setEventLevel(2 | 16 | 32);
  for (const std::uint32_t event : {2U, 16U, 32U, 1U}) logger.event(7, "f", method, event, u"a");
  logger.closeLogFile();
  EXPECT_EQ(systemLog.take(), (LogLines{u"BINDING -[Host work]:7 - a", u"MEMORY -[Host work] - a", u"TRANSPORT - a",
                                        u" -[Host work]:7 - a", u" -[Host work] - a", u" - a", u"DATABASE - a",
                                        u"UI - a", u"VERBOSE - a"}));
  EXPECT_EQ(fileBytes(), "");
}

TEST_F(QNLoggerTest, LogFileTakesLatin1Lines) {
  QNLogger logger;
  logger.setImmediatelyFlusLogFile(true);
  logger.setLogFile(logPath, false);
  logger.warn(1, "f", method, u"caf\xE9");
  logger.warn(2, "f", method, u"\x20AC");
  logger.setLogFile(u"", true);
  EXPECT_EQ(logger.logFilePath(), logPath);
  EXPECT_EQ(fileBytes(), "WARN -[Host work]:1 - caf\xE9\n(null)\n");
  EXPECT_EQ(systemLog.take().back(), u"WARN -[Host work]:2 - \x20AC");
  logger.clearLogFile();
  logger.warn(3, "f", method, u"anew");
  logger.closeLogFile();
  logger.warn(4, "f", method, u"after");
  logger.setLogFile(logPath, false);
  logger.warn(5, "f", method, u"more");
  EXPECT_EQ(fileBytes(), "WARN -[Host work]:3 - anew\nWARN -[Host work]:5 - more\n");
}

TEST_F(QNLoggerTest, TroubleWithTheLogFileHarmsNobody) {
  QNLogger logger;
  const Text missing = folder.text("no/such/folder/host.log");
  logger.setLogFile(missing, true);
  EXPECT_EQ(logger.logFilePath(), missing);
  logger.warn(1, "f", method, u"a");
  EXPECT_EQ(systemLog.take(), (LogLines{u"Can't open log file!", u"WARN -[Host work]:1 - a"}));

  // A folder instead of a log.
  folder.write("logs/old.log", "old");
  logger.setLogFile(folder.text("logs"), true);
  logger.clearLogFile();
  EXPECT_TRUE(fs::exists(folder.path("logs/old.log")));
  const Text refusal = u"Error while removing file at path '" + folder.text("logs") + u"': Is a directory";
  EXPECT_EQ(systemLog.take(), (LogLines{refusal, u"Can't open log file!", refusal, u"Can't open log file!"}));

  // A log that cannot be removed: whoever may write everywhere cannot remove a folder's mount point either.
  logger.setLogFile(u"/proc/version", true);
  const auto messages = systemLog.take();
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

TEST(NSFileManagerThreadSafeManager, IsEachThreadsOwn) {
  using NSFileManagerExtensions::threadSafeManager;
  NSFileManager& mine = threadSafeManager();
  std::jthread([&mine] { EXPECT_NE(&threadSafeManager(), &mine); }).join();
  EXPECT_EQ(&threadSafeManager(), &mine);
}

}  // namespace
