#include <csignal>
#include <cstddef>
#include <exception>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Application/Session.h"
#include "Extensions/NSAttributedString-QNExtensions.h"
#include "Platform/Foundation/Format.h"
#include "Report/Feedback.h"
#include "Report/Output.h"
#include "Report/Pages.h"
#include "Report/Report.h"
#include "Utilities/QNEnvironment.h"

#ifdef NOTEBOOK_WINDOWS
#include "Qt/QtDesktop.h"
#include "Window/WindowedSession.h"
#endif

namespace {

using kelvane::QNEnvironment;

enum ExitStatus { Success = 0, Failure = 1, WrongUsage = 2 };

constexpr kelvane::TextView usage =
    u"Usage: Notebook [FOLDER]\n"
    u"       Notebook --walkthrough SAMPLE PICTURES\n"
    u"       Notebook --report [FOLDER]\n"
    u"       Notebook --html FILE\n"
    u"       Notebook --rtf FILE\n"
    u"       Notebook --feedback\n"
    u"       Notebook --help\n"
    u"\n"
    u"Opens the notes in FOLDER; without it, those of the last time.\n"
    u"With --walkthrough, uses the application for a minute without a user, on a copy of the folder SAMPLE, checks "
    u"what "
    u"comes of it, and leaves pictures of its windows in the folder PICTURES.\n"
    u"With --report, reports on the documents in FOLDER and the folders in it: lines, tables, configuration "
    u"files; without FOLDER, on the one of the last report.\n"
    u"With --html or --rtf, prints the note in FILE in that format.\n"
    u"With --feedback, asks a web site for links and sends it feedback; the site is a small one that is started for "
    u"this.\n"
    u"The exit status is 1 if something could not be read or written, 2 if the arguments are wrong.\n";

ExitStatus printHelp() {
  notebook::Output output;
  output.writeLine(usage.substr(0, usage.size() - 1));
  return output.finish() ? Success : Failure;
}

ExitStatus report(const std::string& folder) {
  notebook::beginSession(folder);
  const bool isWhole = notebook::Report(folder, QNEnvironment::sharedEnvironment().summary()).print();
  notebook::endSession(isWhole);
  return isWhole ? Success : Failure;
}

ExitStatus feedback() {
  notebook::beginSession();
  const bool isSent = notebook::sendFeedback();
  notebook::endSession(isSent);
  return isSent ? Success : Failure;
}

#ifdef NOTEBOOK_WINDOWS
// What a program with windows is started for; nothing for other arguments.
std::optional<int> runWindows(int count, std::span<char*> arguments) {
  const bool isOption = arguments.size() > 1 && std::string_view(arguments[1]).starts_with('-');
  if (arguments.size() == 4 && std::string_view(arguments[1]) == "--walkthrough") {
    const std::string sample = arguments[2];
    const std::string pictures = arguments[3];
    return notebook::runWalkthrough(count, arguments.data(), sample, pictures);
  }
  if (isOption || arguments.size() > 2) return std::nullopt;
  if (const auto problem = kelvane::displayProblem(count, arguments.data())) {
    notebook::complain(*problem);
    return Failure;
  }
  const auto folder = arguments.size() == 2 ? std::optional<std::string>(arguments[1]) : std::nullopt;
  return notebook::runWithWindows(count, arguments.data(), folder);
}
#endif

ExitStatus run(std::span<char*> arguments) {
  if (arguments.size() == 2 && std::string_view(arguments[1]) == "--help") return printHelp();
  if (arguments.size() == 2 && std::string_view(arguments[1]) == "--feedback") return feedback();
  if (arguments.size() >= 2 && std::string_view(arguments[1]) == "--report") {
    if (arguments.size() == 3) return report(arguments[2]);
    const auto folder = notebook::lastFolder();
    if (arguments.size() == 2 && folder) return report(*folder);
  }
  if (arguments.size() == 3 && std::string_view(arguments[1]) == "--html")
    return notebook::printNote(arguments[2], notebook::NoteFormat::HTML) ? Success : Failure;
  if (arguments.size() == 3 && std::string_view(arguments[1]) == "--rtf")
    return notebook::printNote(arguments[2], notebook::NoteFormat::RTF) ? Success : Failure;
  notebook::writeToStandardError(usage);
  return WrongUsage;
}

}  // namespace

int main(int count, char** arguments) {
  // A reader who has seen enough is a failed write like any other, not our end.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    kelvane::NSAttributedStringExtensions::didLoad();
#ifdef NOTEBOOK_WINDOWS
    if (const auto status = runWindows(count, {arguments, static_cast<std::size_t>(count)})) return *status;
#endif
    return run({arguments, static_cast<std::size_t>(count)});
  } catch (const std::exception& exception) {
    notebook::complain(kelvane::format(u"%s", exception.what()));
    return Failure;
  }
}
