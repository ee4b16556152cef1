#pragma once

#include <chrono>
#include <cstdint>

#include "Platform/Foundation/Text.h"

namespace notebook {

// One line on standard error that tells how far a long task has come, written over and over. Shows up when the task has
// taken half a second, changes ten times a second at most, and never shows when standard error is no terminal.
class ProgressLine {
 public:
  ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ~ProgressLine() { erase(); }

  // Shows the number of files and the place that is being worked on, if it is time. Costs next to nothing otherwise.
  void show(std::uint64_t files, kelvane::TextView place);
  // Takes the line away, so that something else can be written; it comes back with the next `show` that finds it is
  // time.
  void erase();

 private:
  bool myIsOnTerminal;
  bool myIsShown = false;
  std::chrono::steady_clock::time_point myNext;
};

}  // namespace notebook
