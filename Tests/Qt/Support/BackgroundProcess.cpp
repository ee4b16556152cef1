#include "Qt/Support/BackgroundProcess.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace kelvane {

BackgroundProcess::BackgroundProcess(std::vector<std::string> arguments, int inherited) {
  std::vector<char*> words;
  for (std::string& argument : arguments) words.push_back(argument.data());
  words.push_back(nullptr);
  myProcess = fork();
  if (myProcess != 0) return;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int nowhere = open("/dev/null", O_RDWR);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, descriptor);
  if (inherited >= 0) fcntl(inherited, F_SETFD, 0);
  execvp(words.front(), words.data());
  _exit(127);
}

BackgroundProcess::~BackgroundProcess() {
  if (myProcess <= 0) return;
  kill(myProcess, SIGTERM);
  waitpid(myProcess, nullptr, 0);
}

}  // namespace kelvane
