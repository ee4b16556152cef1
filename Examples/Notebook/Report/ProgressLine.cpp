#include "Report/ProgressLine.h"

#include <unistd.h>

#include "Platform/Foundation/Format.h"
#include "Report/Output.h"
#include "Report/Printable.h"

namespace notebook {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto delay = std::chrono::milliseconds(500);
constexpr auto interval = std::chrono::milliseconds(100);
constexpr std::size_t placeWidth = 50;

// Back to the start of the line, and everything behind the cursor away.
constexpr kelvane::TextView eraseLine = u"\r\x1B[K";

}  // namespace

ProgressLine::ProgressLine() : myIsOnTerminal(::isatty(STDERR_FILENO) == 1), myNext(Clock::now() + delay) {}

void ProgressLine::show(std::uint64_t files, kelvane::TextView place) {
  if (!myIsOnTerminal) return;
  const Clock::time_point now = Clock::now();
  if (now < myNext) return;
  myNext = now + interval;
  myIsShown = true;
  writeToStandardError(kelvane::format(u"%@%@: %@", eraseLine, counted(files, u"file"), printable(place, placeWidth)));
}

void ProgressLine::erase() {
  if (!myIsShown) return;
  myIsShown = false;
  writeToStandardError(eraseLine);
}

}  // namespace notebook
