#pragma once

#include <optional>
#include <string>

namespace notebook {

// The folder of the last report, from the preferences; nothing before the first.
std::optional<std::string> lastFolder();

// Sets up the environment and its folders, and opens the log file in the environment's folder for logs. That some of
// this cannot be written is told, and is no reason not to go on. What is logged follows the preference
// "QNLogger_logLevel": warnings and worse, unless it says otherwise.
void beginSession();
// The same; notes which folder is reported on, and keeps it in the preferences for the next time.
void beginSession(const std::string& folder);

// Notes how it went, and closes the log file.
void endSession(bool isWhole);

}  // namespace notebook
