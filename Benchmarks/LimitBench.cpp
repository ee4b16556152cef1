// What the machine itself takes, to hold the other rows against.

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "Support/Inputs.h"
#include "Support/Limits.h"
#include "Support/Row.h"

namespace kelvane::bench {
namespace {

constexpr std::size_t callCount = 100'000;

const Subject machine([] {
  Row("the machine: copy 1 MiB").limit("memcpy", [] { return copied(mixedText()); });
  Row("the machine: search 1 MiB").limit("memchr", [] { return scanned(mixedText()); });

  static const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
  Row("the machine: system call")
      .limit("write(2)",
             [] {
               for (std::size_t i = 0; i < callCount; ++i)
                 if (write(nothing, "x", 1) != 1) std::abort();
             })
      .per("call", callCount);
});

}  // namespace
}  // namespace kelvane::bench
