#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Support/Process.h"
#include "Support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;
using kelvane::test::ProcessResult;
using kelvane::test::runProcess;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using namespace std::string_literals;

ProcessResult reportOn(const fs::path& folder, const std::string& outputFile = {}) {
  return runProcess({KELVANE_NOTEBOOK, "--report", folder.native()}, outputFile);
}

std::string bytesOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// Each test works in a folder of its own, and the Notebook keeps its preferences and its log in another.
class NotebookTest : public testing::Test {
 protected:
  NotebookTest() {
    ::setenv("XDG_CONFIG_HOME", mySettings.path().c_str(), 1);
    ::setenv("XDG_DATA_HOME", mySettings.path().c_str(), 1);
    std::string pattern = fs::temp_directory_path() / "NotebookTest-XXXXXX";
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    myFolder = pattern;
  }
  ~NotebookTest() override {
    std::error_code ignored;
    fs::remove_all(myFolder, ignored);
  }

  void write(const std::string& name, std::string_view bytes) const {
    fs::create_directories((myFolder / name).parent_path());
    std::ofstream(myFolder / name, std::ios::binary) << bytes;
  }

  fs::path myFolder;
  kelvane::TemporaryFolder mySettings;
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
  EXPECT_EQ(result.out, "Report on " KELVANE_SOURCE_DIR
                        R"(/Examples/Notebook/Documents

allotment-meeting.txt
    17 lines, longest 139 in line 7
    | Minutes of the allotment society, 14 March 2026
garden-beds.tsv
    8 lines, longest 62 in line 3, table of 6 rows in 5 columns
    | Bed Plant Sown Rows Notes
letters/landlord.txt
    14 lines, longest 81 in line 9, not UTF-8, read as ISO Latin-1
    | Karlsruhe, den 9. Februar 1998
notebook.conf
    13 lines, longest 56 in line 7, 9 without comments
    | # How the notebook looks and where it saves.
recipes/grandmother.txt
    7 lines, longest 66 in line 5
    | Poppy-seed cake, the way Oma told it on the phone
recipes/kaesespaetzle.txt
    16 lines, longest 114 in line 12
    | Käsespätzle für vier
recipes/pantry.tsv
    13 lines, longest 55 in line 2, table of 6 rows in 5 columns
    | # Pantry, counted on 1 February 2026

Totals
    7 texts in 3 folders: 88 lines, 2927 bytes
    1 text not in UTF-8
    2 tables with 12 rows
    longest line: 139, line 7 of allotment-meeting.txt
)");
}

TEST_F(NotebookTest, tellsTextsFromBinariesAndOtherEncodings) {
  write("1-empty", "");
  write("2-binary", "PK\x03\x04\0\0"s);
  write("3-late-nul", std::string(9000, 'x') + '\0');
  write("4-latin", "Gr\xFC\xDF"s + "e\x85-");
  // U+FFFD itself is well-formed, and does not make up for the byte that is not.
  write("5-replacement", "\xEF\xBF\xBD\n");
  write("6-both", "\xEF\xBF\xBD\xFF");
  write("7-bom", "\xEF\xBB\xBF# comment\nvalue\n");
  write("8-cut", "x\xE2\x82");
  const ProcessResult result = reportOn(myFolder);
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, HasSubstr("1-empty\n    empty\n"));
  EXPECT_THAT(result.out, HasSubstr("2-binary\n    binary, 6 bytes\n"));
  EXPECT_THAT(result.out,
              HasSubstr("3-late-nul\n    1 line, longest 9001 in line 1\n    | " + std::string(73, 'x') + "…\n"));
  EXPECT_THAT(result.out,
              HasSubstr("4-latin\n    2 lines, longest 5 in line 1, not UTF-8, read as ISO Latin-1\n    | Grüße\n"));
  EXPECT_THAT(result.out, HasSubstr("5-replacement\n    2 lines, longest 1 in line 1\n"));
  EXPECT_THAT(result.out, HasSubstr("6-both\n    1 line, longest 4 in line 1, not UTF-8"));
  EXPECT_THAT(result.out, HasSubstr("7-bom\n    3 lines, longest 9 in line 1, 2 without comments\n    | # comment\n"));
  EXPECT_THAT(result.out, HasSubstr("8-cut\n    1 line, longest 3 in line 1, not UTF-8"));
  EXPECT_EQ(totals(result), R"(Totals
    7 texts in 1 folder: 10 lines, 9038 bytes
    3 texts not in UTF-8
    longest line: 9001, line 1 of 3-late-nul
    1 binary file with 6 bytes
)");
}

TEST_F(NotebookTest, tellsTablesAndConfigurations) {
  write("a.txt", "# made by hand\n\nname\tage\nAnn\t30\n\nBob\t\n");
  write("b-header-only.txt", "name\tage\n");
  write("c-header-only.TSV", "name\tage\n");
  write("d-centred.txt", "\t\tThe title\nThe text\tgoes on\n");
  write("d-program.txt", "#!/bin/sh\nset\t-e\nif x; then\n\ty\nelse\n\tz\nfi\nexit\n");
  write("e.INI", "; x\n  # y\nz");
  write("f.md", "# Heading\ntext\n");
  write("g-table.conf", "# x\nkey\tvalue\na\tb");
  const ProcessResult result = reportOn(myFolder);
  EXPECT_THAT(result.out, HasSubstr("a.txt\n    7 lines, longest 14 in line 1, table of 2 rows in 2 columns\n"));
  EXPECT_THAT(result.out, HasSubstr("b-header-only.txt\n    2 lines, longest 8 in line 1\n"));
  EXPECT_THAT(result.out,
              HasSubstr("c-header-only.TSV\n    2 lines, longest 8 in line 1, table of 0 rows in 2 columns\n"));
  EXPECT_THAT(result.out, HasSubstr("d-centred.txt\n    3 lines, longest 16 in line 2\n    | The title\n"));
  EXPECT_THAT(result.out, HasSubstr("d-program.txt\n    9 lines, longest 10 in line 3, 8 without comments\n"));
  EXPECT_THAT(result.out, HasSubstr("e.INI\n    3 lines, longest 5 in line 2, 2 without comments\n"));
  EXPECT_THAT(result.out, HasSubstr("f.md\n    3 lines, longest 9 in line 1\n"));
  EXPECT_THAT(result.out, HasSubstr("g-table.conf\n    3 lines, longest 9 in line 2, table of 1 row in 2 columns\n"));
  EXPECT_THAT(totals(result), HasSubstr("    3 tables with 3 rows\n"));
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
  EXPECT_THAT(result.out, HasSubstr("\n\nB.txt\n    1 line, longest 1 in line 1\n    | 2\n"
                                    "a.txt\n    1 line, longest 1 in line 1\n    | 1\n"
                                    "b/a.txt\n    1 line, longest 1 in line 1\n    | a\n"
                                    "b/c.txt\n    1 line, longest 1 in line 1\n    | c\n"
                                    "b/to-file\n    1 line, longest 1 in line 1\n    | 1\n\n"));
  EXPECT_EQ(totals(result), R"(Totals
    5 texts in 2 folders: 5 lines, 5 bytes
    longest line: 1, line 1 of B.txt
    skipped: 1 link to a folder
    skipped: 3 special files (pipe, socket or device)
)");
}

// Whoever names a file or writes its first line must not get to talk to the terminal.
TEST_F(NotebookTest, makesControlCharactersHarmless) {
  write("evil\x1B]0;title\x07\nTotals", "\t \x1B[2J\tred\x9B\xC2\x9B\xE2\x80\xAEtxt.exe\x08 \r\nnext");
  write("gr\xFC\xDF", "\xF0\x9F\x8D\x90" + std::string(80, 'y'));
  write("exact", std::string(74, 'z'));
  write("utf8", "\xC2\x9B\xE2\x80\xAEx");
  fs::create_symlink("nowhere", myFolder / "gone\x1B[31m");
  const ProcessResult result = reportOn(myFolder);
  EXPECT_THAT(result.out, HasSubstr("\nevil\\x1B]0;title\\x07\\x0ATotals\n"));
  EXPECT_THAT(result.out, HasSubstr("    | \\x1B[2J red\\x9B"));
  EXPECT_THAT(result.out, HasSubstr("\nutf8\n    1 line, longest 3 in line 1\n    | \\x9B\\u202Ex\n"));
  EXPECT_THAT(result.out, HasSubstr("\ngr\\xFC\\xDF\n    1 line, longest 82 in line 1\n    | \xF0\x9F\x8D\x90" +
                                    std::string(71, 'y') + "…\n"));
  EXPECT_THAT(result.out, HasSubstr("    | " + std::string(74, 'z') + "\n"));
  EXPECT_THAT(result.err, HasSubstr("/gone\\x1B[31m: No such file or directory\n"));
  EXPECT_THAT(result.out + result.err, Not(HasSubstr("\x1B")));
}

TEST_F(NotebookTest, namesWhatItCannotReadAndGoesOn) {
  fs::create_symlink("nowhere", myFolder / "a-dangling");
  fs::create_symlink("b-circle", myFolder / "b-circle");
  write("z.txt", "last");
  const ProcessResult result = reportOn(myFolder);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "Notebook: " + myFolder.native() + "/a-dangling: No such file or directory\n" +  //
                            "Notebook: " + myFolder.native() + "/b-circle: Too many levels of symbolic links\n");
  EXPECT_EQ(totals(result), R"(Totals
    1 text in 1 folder: 1 line, 4 bytes
    longest line: 4, line 1 of z.txt
    unreadable: a-dangling: No such file or directory
    unreadable: b-circle: Too many levels of symbolic links
)");
}

// A path too long for the system is the one folder that root cannot read either.
TEST_F(NotebookTest, namesFoldersItCannotReadAndGoesOn) {
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
  EXPECT_THAT(result.err, StartsWith("Notebook: " + myFolder.native() + "/" + name));
  EXPECT_THAT(result.err, EndsWith("File name too long\n"));
  EXPECT_THAT(totals(result), HasSubstr(" folders: 1 line, 4 bytes\n"));

  const ProcessResult missing = reportOn(myFolder / "missing");
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.err, "Notebook: " + myFolder.native() + "/missing: No such file or directory\n");
  EXPECT_THAT(totals(missing), HasSubstr("    unreadable: .: No such file or directory\n"));
}

TEST_F(NotebookTest, obeysPermissions) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read everything";
  write("file", "x");
  write("folder/file", "x");
  fs::permissions(myFolder / "file", fs::perms::none);
  fs::permissions(myFolder / "folder", fs::perms::none);
  const ProcessResult result = reportOn(myFolder);
  fs::permissions(myFolder / "folder", fs::perms::owner_all);
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(totals(result), HasSubstr("    unreadable: file: Permission denied\n"
                                        "    unreadable: folder: Permission denied\n"));
}

// Files of such file systems announce no bytes, or too many.
TEST_F(NotebookTest, readsFilesWhoseSizeIsWrong) {
  if (!fs::exists("/proc/self/status")) GTEST_SKIP() << "needs /proc";
  fs::create_symlink("/proc/self/status", myFolder / "status");
  fs::create_symlink("/proc/self/smaps", myFolder / "zzz-larger-than-a-buffer");
  const ProcessResult result = reportOn(myFolder);
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, HasSubstr("    | Name: Notebook\n"));
  EXPECT_THAT(result.out, Not(HasSubstr("empty")));
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

TEST_F(NotebookTest, explainsItself) {
  const ProcessResult help = runProcess({KELVANE_NOTEBOOK, "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.out, StartsWith("Usage: Notebook --report [FOLDER]\n"));
  EXPECT_EQ(help.err, "");
  const std::vector<std::vector<std::string>> wrong = {
      {}, {"--report"}, {"--report", "a", "b"}, {"--unknown", "a"}, {myFolder}, {"--help", "x"}};
  for (std::vector<std::string> arguments : wrong) {
    arguments.insert(arguments.begin(), KELVANE_NOTEBOOK);
    const ProcessResult result = runProcess(arguments);
    EXPECT_EQ(result.status, 2) << arguments.back();
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, help.out);
  }
}

TEST_F(NotebookTest, keepsItsLastFolderAndALog) {
  write("a.txt", "one\n");
  const std::string log = mySettings.path("Notebook/Logs/Notebook.log");
  const std::string preferences = mySettings.path("Notebook.plist");
  const ProcessResult first = reportOn(myFolder);
  EXPECT_EQ(first.status, 0);
  EXPECT_EQ(bytesOf(log), "");
  const ProcessResult again = runProcess({KELVANE_NOTEBOOK, "--report"});
  EXPECT_EQ(again.out, first.out);
  EXPECT_EQ(again.err, "");

  std::string settings = bytesOf(preferences);
  settings.insert(settings.find("<dict>") + 6, "<key>QNLogger_logLevel</key><integer>1</integer>");
  std::ofstream(preferences, std::ios::binary) << settings;
  EXPECT_THAT(runProcess({KELVANE_NOTEBOOK, "--report"}).err, HasSubstr("INFO beginSession:"));
  EXPECT_THAT(bytesOf(log), HasSubstr(" - Report on " + myFolder.native() + "\nINFO endSession:"));

  // Neither can be written: that is told, and the report is as whole as before.
  mySettings.clear();
  ::setenv("XDG_CONFIG_HOME", "/proc", 1);
  ::setenv("XDG_DATA_HOME", "/proc", 1);
  const ProcessResult unkept = reportOn(myFolder);
  EXPECT_EQ(unkept.status, 0);
  EXPECT_EQ(unkept.out, first.out);
  EXPECT_THAT(unkept.err, HasSubstr("Can't open log file!"));
  EXPECT_THAT(unkept.err, HasSubstr("Can't save the preferences: "));
}

}  // namespace
