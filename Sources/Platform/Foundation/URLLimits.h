#pragma once

#include <chrono>
#include <cstdint>

namespace kelvane {

// How much a transfer may ask of whoever waits for it. Beyond any of these it fails.
struct URLLimits {
  // Until the connection stands, looking the name up and agreeing on keys included.
  std::chrono::milliseconds connectTime = std::chrono::seconds(60);
  // Without a byte in either direction; noticed within a second.
  std::chrono::milliseconds idleTime = std::chrono::seconds(60);
  // For all of it, redirects included, however steadily bytes may come.
  std::chrono::milliseconds totalTime = std::chrono::hours(24);
  // Of them in a row; all lead to http or https.
  unsigned redirects = 20;
  // In the body of an answer, counted as they come in: what the server announces does not matter.
  std::uint64_t receivedBytes = std::uint64_t{256} << 20U;
};

}  // namespace kelvane
