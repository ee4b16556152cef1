#pragma once

#include <functional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/Text.h"

// The system log: where the library writes when nothing else is set up, or when the logger itself is in trouble. Any
// thread may write, and may replace the sink.
namespace kelvane {

// Takes each message, without time stamp and line end. Called on the writing thread, by one thread at a time; what it
// throws is swallowed. It may log and may replace the sink: what is logged meanwhile takes the default way.
using SystemLogSink = std::function<void(TextView message)>;

// Replaces the sink and returns the one before; nothing (an empty function) stands for the default.
//
// The default writes one line to standard error, in one system call:
// "2026-01-31 12:00:00.123 Notebook[4711:4712] message", with local time, the process's name and the numbers of process
// and thread, in UTF-8.
KELVANE_EXPORT SystemLogSink setSystemLogSink(SystemLogSink sink);

// Sends a message as it stands to the system log.
KELVANE_EXPORT void systemLog(TextView message);

// Sends a formatted message to the system log; Format.h tells what a format may hold.
template <class... A>
void NSLog(FormatString<std::type_identity_t<A>...> theFormat, const A&... arguments) {
  systemLog(format<A...>(theFormat, arguments...));
}

}  // namespace kelvane
