#pragma once

#include <optional>
#include <string>

namespace notebook {

// Runs the application with its windows until the user quits, on the notes in `folder`; without one on those of the
// last time, or the ones in the user's documents. Returns the program's exit status.
int runWithWindows(int& count, char** arguments, const std::optional<std::string>& folder);

// Runs it offscreen, without a user (Walkthrough.h). 0 when all was well.
int runWalkthrough(int& count, char** arguments, const std::string& sample, const std::string& pictures);

}  // namespace notebook
