#include "Platform/Foundation/RandomBytes.h"

#include <errno.h>
#include <pthread.h>
#include <sys/random.h>

#include <cstdlib>
#include <iterator>

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

namespace {

// As much as the system gives in one call that no signal can interrupt.
struct RandomStore {
  std::uint32_t words[64];
  std::size_t left = 0;
};

thread_local RandomStore theStore;

}  // namespace

std::uint32_t randomWord() {
  // Only the thread that forks lives on in the new process, and there it must not draw what it draws here.
  static const int watched = pthread_atfork(nullptr, nullptr, [] { theStore.left = 0; });
  if (watched != 0) std::abort();
  RandomStore& store = theStore;
  if (store.left == 0) {
    fillWithRandomBytes({reinterpret_cast<std::uint8_t*>(store.words), sizeof store.words});
    store.left = std::size(store.words);
  }
  return store.words[--store.left];
}

}  // namespace kelvane
