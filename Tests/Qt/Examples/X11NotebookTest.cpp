#include <QProcess>
#include <QProcessEnvironment>
#include <QString>

#include "Qt/Support/XServer.h"
#include "Support/Process.h"
#include "Support/Testing.h"

namespace {

// The Notebook before an X server, used from outside by keys and clicks as a user would.
struct X11Notebook : testing::Test {
  X11Notebook() {
    myFolder.write("letter.txt", "Dear Ann");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
      environment.insert(QString::fromLatin1(variable), QString::fromStdString(mySettings.path(variable)));
    myNotebook.setProcessEnvironment(environment);
    myNotebook.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    myNotebook.start(QStringLiteral(KELVANE_NOTEBOOK), {QString::fromStdString(myFolder.path())});
  }
  ~X11Notebook() override {
    myNotebook.kill();
    myNotebook.waitForFinished();
  }

  bool hasWindow() {
    const auto found = runProcess({"xdotool", "search", "--onlyvisible", "--name", "Notebook"});
    myWindow = found.out.substr(0, found.out.find('\n'));
    return !myWindow.empty();
  }
  void press(const std::string& keys) const { runProcess({"xdotool", "key", "--clearmodifiers", keys}); }
  void type(const std::string& text) const { runProcess({"xdotool", "type", "--delay", "5", text}); }
  void click(int x, int y) const {
    runProcess({"xdotool", "mousemove", "--sync", "--window", myWindow, std::to_string(x), std::to_string(y)});
    runProcess({"xdotool", "click", "1"});
  }

  TemporaryFolder myFolder;
  TemporaryFolder mySettings;
  QProcess myNotebook;
  std::string myWindow;
};

TEST_F(X11Notebook, IsUsedByKeysAndClicks) {
  constexpr int patience = 20'000;
  ASSERT_TRUE(comesTrue([this] { return hasWindow(); }, patience));
  runProcess({"xdotool", "windowactivate", "--sync", myWindow});

  // The first row of the outline, below the menu bar and the toolbar; then into the text beside it.
  const std::string letter = myFolder.path("letter.txt");
  const auto isWritten = [&] {
    click(80, 64);
    click(600, 400);
    press("ctrl+End");
    type(", all is well");
    return comesTrue([&] { return bytesOfFile(letter).starts_with("Dear Ann, all is well"); });
  };
  EXPECT_TRUE(comesTrue(isWritten, patience));

  press("ctrl+n");
  const std::string made = myFolder.path("New Note.note");
  ASSERT_TRUE(comesTrue([&] { return fs::exists(made); }, patience));
  press("ctrl+b");
  type("Seeds");
  EXPECT_TRUE(comesTrue([&] { return bytesOfFile(made).find("Seeds") != std::string::npos; }, patience));

  press("ctrl+q");
  ASSERT_TRUE(comesTrue([this] { return myNotebook.state() == QProcess::NotRunning; }, patience));
  EXPECT_EQ(myNotebook.exitCode(), 0);
  const std::string preferences = bytesOfFile(mySettings.path("XDG_CONFIG_HOME/Notebook.plist"));
  EXPECT_THAT(preferences, HasSubstr("<key>mainWindow</key>"));
  EXPECT_THAT(preferences, HasSubstr("<key>mainDivider</key>"));
}

// What `Notebook --walkthrough` checks is what it would be used for; here it only has to say that all was well.
TEST(NotebookWalkthrough, EndsWell) {
  const TemporaryFolder pictures;
  const auto result = runProcess(
      {KELVANE_NOTEBOOK, "--walkthrough", KELVANE_SOURCE_DIR "/Examples/Notebook/Documents", pictures.path()});
  EXPECT_EQ(result.status, 0) << result.out << result.err;
  EXPECT_THAT(result.out, HasSubstr("All is well"));
}

}  // namespace
