#include "Network/QNNetworkUtilities.h"

#include <algorithm>

namespace kelvane {
namespace {

// Run by three organisations, on three networks.
constexpr TextView probes[] = {u"https://www.wikipedia.org", u"https://www.debian.org", u"https://www.iana.org"};

}  // namespace

bool QNNetworkUtilities::isOnline() {
  return std::ranges::any_of(probes, [](TextView site) { return isReachable(NSURL::URLWithString(site)); });
}

bool QNNetworkUtilities::isReachable(const Ref<NSURL>& url) {
  const std::optional<Text> host = url ? url->host() : std::nullopt;
  const std::optional<Text> name = host ? stringByRemovingPercentEncoding(*host) : std::nullopt;
  const auto flags = name ? networkReachabilityFlags(*name) : std::nullopt;
  return flags && isReachable(*flags);
}

bool QNNetworkUtilities::isReachable(SCNetworkReachabilityFlags flags) {
  constexpr SCNetworkReachabilityFlags relevant =
      kSCNetworkReachabilityFlagsReachable | kSCNetworkReachabilityFlagsConnectionRequired |
      kSCNetworkReachabilityFlagsConnectionOnTraffic | kSCNetworkReachabilityFlagsInterventionRequired;
  return (flags & relevant) == kSCNetworkReachabilityFlagsReachable;
}

}  // namespace kelvane
