#include "Platform/Foundation/RandomBytes.h"

#include <errno.h>
#include <sys/random.h>

#include <cstdlib>

namespace kelvane {

void fillWithRandomBytes(std::span<std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t filled = getrandom(bytes.data(), bytes.size(), 0);
    if (filled < 0 && errno == EINTR) continue;
    // Every kernel that Debian 12 runs on has the call; going on with predictable bytes would be worse than ending.
    if (filled < 0) std::abort();
    bytes = bytes.subspan(static_cast<std::size_t>(filled));
  }
}

}  // namespace kelvane
