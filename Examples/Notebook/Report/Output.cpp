#include "Report/Output.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string_view>
#include <system_error>

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/TextEncoding.h"

namespace notebook {
namespace {

constexpr std::size_t bufferSize = 64 * 1024;

// Whether a call that failed with `error` is worth another try; waits until it is.
bool canRetry(int descriptor, int error) {
  if (error == EINTR) return true;
  if (error != EAGAIN) return false;
  // Whoever started us made the descriptor non-blocking.
  pollfd ready{descriptor, POLLOUT, 0};
  return ::poll(&ready, 1, -1) > 0 || errno == EINTR;
}

// 0, or the error number.
int writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    if (count >= 0)
      bytes.remove_prefix(static_cast<std::size_t>(count));
    else if (const int error = errno; !canRetry(descriptor, error))
      return error;
  }
  return 0;
}

}  // namespace

bool Output::writeLine(kelvane::TextView line) {
  myBuffer += kelvane::utf8(line);
  myBuffer += '\n';
  return myBuffer.size() >= bufferSize;
}

void Output::flush() {
  if (myError == 0) myError = writeAll(STDOUT_FILENO, myBuffer);
  myBuffer.clear();
}

bool Output::finish() {
  flush();
  if (::close(STDOUT_FILENO) != 0 && myError == 0 && errno != EINTR) myError = errno;
  if (myError == 0) return true;
  const std::string reason = std::generic_category().message(myError);
  complain(kelvane::format(u"Standard output could not be written: %s", reason.c_str()));
  return false;
}

void writeToStandardError(kelvane::TextView text) { writeAll(STDERR_FILENO, kelvane::utf8(text)); }

void complain(kelvane::TextView message) { writeToStandardError(kelvane::format(u"Notebook: %@\n", message)); }

}  // namespace notebook
