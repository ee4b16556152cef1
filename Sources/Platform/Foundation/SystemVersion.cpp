#include "Platform/Foundation/SystemVersion.h"

#include <sys/utsname.h>

#include <algorithm>
#include <charconv>

namespace kelvane {

SystemVersion currentSystemVersion() {
  utsname names;
  if (uname(&names) != 0) return {};
  return systemVersionFromRelease(names.release);
}

SystemVersion systemVersionFromRelease(std::string_view release) {
  SystemVersion version;
  for (std::optional<std::int32_t>* number : {&version.major, &version.minor, &version.bugFix}) {
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(release.data(), release.data() + release.size(), value);
    if (error != std::errc() || value < 0) return version;
    *number = value;
    release.remove_prefix(static_cast<std::size_t>(end - release.data()));
    if (!release.starts_with('.')) return version;
    release.remove_prefix(1);
  }
  return version;
}

std::optional<std::int32_t> combinedSystemVersion(const SystemVersion& version) {
  if (!version.minor || !version.bugFix) return std::nullopt;
  // Beyond that a number no longer fits, and is of the newest kind anyway.
  const std::int32_t minor = std::min(*version.minor, 0xFFFFFF);
  return 0x1000 + 16 * minor + std::min(*version.bugFix, 9);
}

}  // namespace kelvane
