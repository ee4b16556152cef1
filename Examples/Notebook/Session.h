#pragma once

#include <optional>
#include <string>

namespace notebook {

// The folder of the last report, from the preferences; nothing before the first.
std::optional<std::string> lastFolder();

// Opens the log file, in "Notebook/Logs" of the user's data folder, notes there which folder is reported on, and keeps
// it in the preferences for the next time. That neither can be written is told, and is no reason not to report. What is
// logged follows the preference "QNLogger_logLevel": warnings and worse, unless it says otherwise.
void beginSession(const std::string& folder);

// Notes how the report went, and closes the log file.
void endSession(bool isWhole);

}  // namespace notebook
