#include "Support/Process.h"

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "Support/TemporaryFolder.h"

namespace kelvane::test {
namespace {

std::string quoted(const std::string& argument) {
  std::string result = "'";
  for (const char byte : argument) result += byte == '\'' ? "'\\''" : std::string(1, byte);
  return result + "'";
}

std::string contentsOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
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
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), contentsOf(folder.path("out")),
          contentsOf(folder.path("err"))};
}

}  // namespace kelvane::test
