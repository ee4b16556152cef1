#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "Platform/Foundation/Export.h"

namespace kelvane {

// The numbers of a release of the operating system, as far as they are known.
struct SystemVersion {
  std::optional<std::int32_t> major;
  std::optional<std::int32_t> minor;
  std::optional<std::int32_t> bugFix;

  friend bool operator==(const SystemVersion&, const SystemVersion&) = default;
};

// The numbers that the running kernel tells. Any thread.
KELVANE_EXPORT SystemVersion currentSystemVersion();

// The numbers that a release's name begins with: "6.1.0-18-amd64" is 6, 1 and 0; in "6.1-rc3" the third is unknown.
KELVANE_EXPORT SystemVersion systemVersionFromRelease(std::string_view release);

// 0x1000, sixteen times the minor number and the bug-fix number, which counts as 9 at most; nothing when one of the two
// is unknown.
KELVANE_EXPORT std::optional<std::int32_t> combinedSystemVersion(const SystemVersion& version);

}  // namespace kelvane
