#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace kelvane {

// A program that runs beside the test, without a word of its own, and ends with it. `arguments` begins with its name;
// the file descriptor `inherited` stays open in it.
class BackgroundProcess {
 public:
  explicit BackgroundProcess(std::vector<std::string> arguments, int inherited = -1);
  ~BackgroundProcess();
  BackgroundProcess(const BackgroundProcess&) = delete;
  BackgroundProcess& operator=(const BackgroundProcess&) = delete;

 private:
  pid_t myProcess;
};

}  // namespace kelvane
