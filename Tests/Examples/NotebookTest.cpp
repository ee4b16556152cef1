#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <regex>

#include "Support/Process.h"
#include "Support/Testing.h"

namespace {

using namespace std::string_literals;

ProcessResult reportOn(const fs::path& folder, const std::string& outputFile = {}) {
  return runProcess({KELVANE_NOTEBOOK, "--report", folder.native()}, outputFile);
}

// Each test works in a folder of its own, and the Notebook keeps its preferences and its log in another.
struct NotebookTest : testing::Test {
  NotebookTest() {
    ::setenv("XDG_CONFIG_HOME", mySettings.path().c_str(), 1);
    ::setenv("XDG_DATA_HOME", mySettings.path().c_str(), 1);
    ::setenv("LC_ALL", "en_GB.UTF-8", 1);
    ::setenv("TMPDIR", mySettings.path().c_str(), 1);
  }

  std::string summary() const {
    return "app-name: Notebook\nlibrary-app-support: " + mySettings.path() + "/Notebook\n\n";
  }

  void write(const std::string& name, std::string_view bytes) const { myDocuments.write(name, bytes); }

  TemporaryFolder myDocuments;
  TemporaryFolder mySettings;
  fs::path myFolder = myDocuments.path();
};

// The totals of a report that is otherwise of no interest.
std::string totals(const ProcessResult& result) {
  const std::size_t place = result.out.find("\nTotals\n");
  return place == std::string::npos ? "no totals in: " + result.out : result.out.substr(place + 1);
}

TEST_F(NotebookTest, reportsOnTheShippedDocuments) {
  const ProcessResult result = reportOn(KELVANE_SOURCE_DIR "/Examples/Notebook/Documents");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, StartsWith(summary() + "Report on " KELVANE_SOURCE_DIR "/Examples/Notebook/Documents\n\n"
                                                 "allotment-meeting.txt\n    17 lines, longest 139 in line 7\n"));
  EXPECT_THAT(result.out, HasSubstr("not UTF-8, read as ISO Latin-1\n    | Karlsruhe, den 9. Februar 1998\n"));
  EXPECT_EQ(totals(result), R"(Totals
    8 texts in 3 folders: 94 lines, 3230 bytes
    1 text not in UTF-8
    2 tables with 12 rows
    longest line: 139, line 7 of allotment-meeting.txt
)");
}

TEST_F(NotebookTest, showsDatesAndAttachments) {
  write("a.bin", "\0\1\2"s);
  write("b.bin", std::string(1000, '\0'));
  const timespec times[] = {{0, 0}, {1235923509, 0}};  // 16:05:09 UTC
  for (const char* name : {"a.bin", "b.bin"}) ::utimensat(AT_FDCWD, (myFolder / name).c_str(), times, 0);
  ::setenv("TZ", "Asia/Kathmandu", 1);
  const std::string line = "    = " + std::string(72, 'A') + "\n";
  EXPECT_THAT(reportOn(myFolder).out,
              HasSubstr("\na.bin\n    binary, 3 bytes\n    = AAEC\n    changed 1 March 2009 at 21:50\n"
                        "b.bin\n    binary, 1000 bytes\n" +
                        line + line + line + line + "    = ... 784 bytes more\n    changed 1 March 2009 at 21:50\n"));
  ::setenv("LC_ALL", "de_AT.UTF-8", 1);
  EXPECT_THAT(reportOn(myFolder).out, HasSubstr("    changed 1. März 2009 um 21:50\n"));
}

TEST_F(NotebookTest, readsAndWritesNotesInHTML) {
  write("Note.HTM", "<title>T</title><p>Caf&eacute; <b>at 3</b><script>x</script><br>&lt;b&gt;\xC3\xA9");
  EXPECT_THAT(reportOn(myFolder).out, HasSubstr("Note.HTM\n    2 lines, longest 9 in line 1\n"
                                                "    | Caf\u00E9 at 3\n    | <b>\u00E9\n"));
  write("note.html", "<b>1 \xC3\xA9</b><font size=5>x");
  write("note.txt", "1 < 2 {\n");
  const std::vector<std::string> rows[] = {
      {"--html", "note.html", "<b>1 &#233;</b><font size=\"5\">x </font>\n"},
      {"--rtf", "note.txt", "{\\f0\\fs24 1 < 2 \\{\\par\n}"},
  };
  for (const auto& row : rows) {
    const ProcessResult result = runProcess({KELVANE_NOTEBOOK, row[0], (myFolder / row[1]).native()});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr(row[2]));
  }
  EXPECT_EQ(runProcess({KELVANE_NOTEBOOK, "--rtf", (myFolder / "none").native()}).status, 1);
  EXPECT_EQ(runProcess({KELVANE_NOTEBOOK, "--unknown", "a"}).status, 2);
}

TEST_F(NotebookTest, tellsWhatFilesHold) {
  const std::tuple<std::string, std::string, std::string> rows[] = {
      {"empty", "", "empty\n"},
      {"binary", "PK\x03\x04\0\0"s, "binary, 6 bytes\n"},
      {"late-nul", std::string(9000, 'x') + '\0',
       "1 line, longest 9001 in line 1\n    | " + std::string(73, 'x') + "…\n"},
      {"latin", "Gr\xFC\xDF"s + "e\x85-",
       "2 lines, longest 5 in line 1, not UTF-8, read as ISO Latin-1\n    | Grüße\n"},
      // U+FFFD itself is well-formed.
      {"replacement", "\xEF\xBF\xBD\n", "2 lines, longest 1 in line 1\n"},
      {"bom", "\xEF\xBB\xBF# comment\nvalue\n", "3 lines, longest 9 in line 1, 2 without comments\n    | # comment\n"},
      {"a.txt", "# made by hand\n\nname\tage\nAnn\t30\n\nBob\t\n",
       "7 lines, longest 14 in line 1, table of 2 rows in 2 columns\n"},
      {"program.txt", "#!/bin/sh\nset\t-e\nif x; then\n\ty\nelse\n\tz\nfi\nexit\n",
       "9 lines, longest 10 in line 3, 8 without comments\n"},
  };
  for (const auto& [name, contents, report] : rows) write(name, contents);
  // A colour stands by itself.
  write("note.txt", "#f80, (#336699). #336699 again; #12, #1234567, x#fff, /#fff, #fff-1, ##fff, #00F\n");
  const ProcessResult result = reportOn(myFolder);
  EXPECT_EQ(result.status, 0);
  for (const auto& [name, contents, report] : rows) EXPECT_THAT(result.out, HasSubstr(name + "\n    " + report));
  EXPECT_THAT(result.out, HasSubstr("    colours #f80 #336699 #00F\n"));
}

TEST_F(NotebookTest, followsItsNotes) {
  write("a.txt", "Tea\n");
  write("b.txt", "");
  EXPECT_THAT(reportOn(myFolder).out, HasSubstr(R"(
Notes
    added "a.txt"
    "a.txt" is now "Tea"
    added "b.txt"
    removed "b.txt"
    4 changes
)"));
}

TEST_F(NotebookTest, walksInOrderAndSkipsWhatIsNoFile) {
  write("b/c.txt", "c");
  write("b/a.txt", "a");
  write("a.txt", "1");
  write("B.txt", "2");
  fs::create_directory_symlink("..", myFolder / "b" / "loop");
  fs::create_symlink("../a.txt", myFolder / "b" / "to-file");
  ASSERT_EQ(::mkfifo((myFolder / "pipe").c_str(), 0600), 0);
  fs::create_symlink("pipe", myFolder / "to-pipe");
  fs::create_symlink("/dev/zero", myFolder / "to-zero");
  const ProcessResult result = reportOn(myFolder.native() + "/");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  const std::regex dates("    changed [^\n]+\n");
  EXPECT_THAT(std::regex_replace(result.out, dates, ""),
              HasSubstr("\n\nB.txt\n    1 line, longest 1 in line 1\n    | 2\n"
                        "a.txt\n    1 line, longest 1 in line 1\n    | 1\n"
                        "b/a.txt\n    1 line, longest 1 in line 1\n    | a\n"
                        "b/c.txt\n    1 line, longest 1 in line 1\n    | c\n"
                        "b/to-file\n    1 line, longest 1 in line 1\n    | 1\n\n"));
  EXPECT_THAT(totals(result), EndsWith("    skipped: 1 link to a folder\n"
                                       "    skipped: 3 special files (pipe, socket or device)\n"));
}

// Whoever names a file or writes its first line must not get to talk to the terminal.
TEST_F(NotebookTest, makesControlCharactersHarmless) {
  write("evil\x1B]0;title\x07\nTotals", "\t \x1B[2J\tred\x9B\xC2\x9B\xE2\x80\xAEtxt.exe\x08 \r\nnext");
  write("gr\xFC\xDF", "\xF0\x9F\x8D\x90" + std::string(80, 'y'));
  fs::create_symlink("nowhere", myFolder / "gone\x1B[31m");
  const ProcessResult result = reportOn(myFolder);
  EXPECT_THAT(result.out, HasSubstr("\nevil\\x1B]0;title\\x07\\x0ATotals\n"));
  EXPECT_THAT(result.out, HasSubstr("    | \\x1B[2J red\\x9B"));
  EXPECT_THAT(result.err, HasSubstr("/gone\\x1B[31m: No such file or directory\n"));
  EXPECT_THAT(result.out + result.err, Not(HasSubstr("\x1B")));
}

// A path too long for the system is the one folder that root cannot read either.
TEST_F(NotebookTest, namesWhatItCannotReadAndGoesOn) {
  fs::create_symlink("nowhere", myFolder / "a-dangling");
  const std::string name(250, 'd');
  const fs::path before = fs::current_path();
  fs::current_path(myFolder);
  for (int depth = 0; depth < 20; ++depth) {
    ASSERT_EQ(::mkdir(name.c_str(), 0700), 0);
    ASSERT_EQ(::chdir(name.c_str()), 0);
  }
  fs::current_path(before);
  write("z.txt", "last");
  const ProcessResult result = reportOn(myFolder);
  EXPECT_EQ(result.status, 1);
  const std::string start = "Notebook: " + myFolder.native();
  EXPECT_THAT(result.err, StartsWith(start + "/a-dangling: No such file or directory\n" + start + "/" + name));
  EXPECT_THAT(result.err, EndsWith("File name too long\n"));
  EXPECT_THAT(totals(result), HasSubstr(" folders: 1 line, 4 bytes\n"));
  EXPECT_THAT(totals(result), HasSubstr("    unreadable: a-dangling: No such file or directory\n"));
}

TEST_F(NotebookTest, saysWhenTheReportCannotBeWritten) {
  write("a.txt", "x");
  const ProcessResult full = reportOn(myFolder, "/dev/full");
  EXPECT_EQ(full.status, 1);
  EXPECT_EQ(full.err, "Notebook: Standard output could not be written: No space left on device\n");

  // A reader that goes away at once, which must not end in a signal.
  const ProcessResult closed = runProcess(
      {"/bin/sh", "-c", "{ sleep 0.2; \"$0\" --report \"$1\"; echo $? >&2; } | true", KELVANE_NOTEBOOK, myFolder});
  EXPECT_EQ(closed.err, "Notebook: Standard output could not be written: Broken pipe\n1\n");
}

TEST_F(NotebookTest, asksForLinksAndSendsFeedback) {
  const ProcessResult result = runProcess({KELVANE_NOTEBOOK, "--feedback"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  const std::string thanks = "    Thank you for log (Notebook.log, 0 bytes) message\n";
  EXPECT_THAT(result.out, MatchesRegex("Feedback page: http://127.0.0.1:[0-9]+/feedback\nShop: no such link\n.*"));
  EXPECT_THAT(result.out, EndsWith("Feedback, waiting for the answer\n" + thanks +
                                   "Feedback, in the background\n    on its way\n" + thanks));
}

TEST_F(NotebookTest, keepsItsLastFolderAndALog) {
  write("a.txt", "one\n");
  const std::string log = mySettings.path("Notebook/Logs/Notebook.log");
  const std::string left = mySettings.path("tmp/Notebook/left");
  ::setenv("TMPDIR", mySettings.path("tmp").c_str(), 1);
  fs::create_directories(left);
  const std::string preferences = mySettings.path("Notebook.plist");
  const ProcessResult first = reportOn(myFolder);
  EXPECT_EQ(first.status, 0);
  EXPECT_EQ(bytesOfFile(log), "");
  EXPECT_TRUE(fs::exists(mySettings.path("tmp/Notebook")) && !fs::exists(left));
  const ProcessResult again = runProcess({KELVANE_NOTEBOOK, "--report"});
  EXPECT_EQ(again.out, first.out);
  EXPECT_EQ(again.err, "");

  std::string settings = bytesOfFile(preferences);
  settings.insert(settings.find("<dict>") + 6, "<key>QNLogger_logLevel</key><integer>1</integer>");
  mySettings.write("Notebook.plist", settings);
  EXPECT_THAT(runProcess({KELVANE_NOTEBOOK, "--report"}).err, HasSubstr("INFO beginSession:"));
  EXPECT_THAT(bytesOfFile(log), HasSubstr(" - Report on " + myFolder.native() + "\nINFO endSession:"));

  // Neither can be written: that is told, and the report is as whole as before.
  mySettings.clear();
  fs::create_directory(mySettings.path("tmp"));
  ::setenv("XDG_CONFIG_HOME", "/proc", 1);
  ::setenv("XDG_DATA_HOME", "/proc", 1);
  const ProcessResult unkept = reportOn(myFolder);
  EXPECT_EQ(unkept.status, 0);
  EXPECT_EQ(totals(unkept), totals(first));
  EXPECT_THAT(unkept.err, HasSubstr("Can't open log file!"));
  EXPECT_THAT(unkept.err, HasSubstr("Can't save the preferences: "));
}

}  // namespace
