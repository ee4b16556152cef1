#pragma once

#include <string>
#include <vector>

namespace kelvane::test {

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

}  // namespace kelvane::test
