#include "Support/Process.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "Support/TemporaryFolder.h"

namespace kelvane {
namespace {

std::string quoted(const std::string& argument) {
  std::string result = "'";
  for (const char byte : argument) result += byte == '\'' ? "'\\''" : std::string(1, byte);
  return result + "'";
}

}  // namespace

ProcessResult runProcess(const std::vector<std::string>& arguments, const std::string& outputFile) {
  const TemporaryFolder folder;
  // Without `exec` the shell would write of a killed program to the standard error that is being collected.
  std::string command = "exec timeout --signal=KILL 300";
  for (const std::string& argument : arguments) command += " " + quoted(argument);
  command += " </dev/null >" + quoted(outputFile.empty() ? folder.path("out") : outputFile);
  command += " 2>" + quoted(folder.path("err"));
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), folder.bytes("out"), folder.bytes("err")};
}

pid_t childProcess(const std::function<void()>& work) {
  const pid_t child = fork();
  if (child != 0) return child;
  try {
    work();
    _exit(0);
  } catch (...) {
    _exit(2);  // else the child would go on as a test program
  }
}

bool runInProcesses(int count, const std::function<void(int)>& work) {
  std::vector<pid_t> children;
  for (int i = 0; i < count; ++i) children.push_back(childProcess([&] { work(i); }));
  int failures = 0;
  for (const pid_t child : children) {
    int status = -1;
    failures += ::waitpid(child, &status, 0) != child || status != 0;
  }
  return failures == 0;
}

}  // namespace kelvane
