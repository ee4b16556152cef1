#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace kelvane {

struct ProcessResult {
  // The exit status; minus the signal's number when a signal ended the program.
  int status = 0;
  std::string out;
  std::string err;
};

// Runs a program without a standard input, waits for its end and collects what it prints. `arguments` begins with the
// program's path. With `outputFile` its standard output goes there instead. A program that takes longer than five
// minutes is killed.
ProcessResult runProcess(const std::vector<std::string>& arguments, const std::string& outputFile = {});

// Runs `work` in a child process and gives its number; the child ends with status 0 unless it is killed or throws.
pid_t childProcess(const std::function<void()>& work);
// Runs `work` in so many processes at once, with the number of each, and tells whether all ended with status 0.
bool runInProcesses(int count, const std::function<void(int)>& work);

}  // namespace kelvane
