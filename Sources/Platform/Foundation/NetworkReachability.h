#pragma once

#include <cstdint>
#include <optional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// What the network configuration says about the way to a host, one bit each.
using SCNetworkReachabilityFlags = std::uint32_t;
inline constexpr SCNetworkReachabilityFlags kSCNetworkReachabilityFlagsReachable = 2;
// Only after a connection has been made, which traffic may do by itself, or which needs the user.
inline constexpr SCNetworkReachabilityFlags kSCNetworkReachabilityFlagsConnectionRequired = 4;
inline constexpr SCNetworkReachabilityFlags kSCNetworkReachabilityFlagsConnectionOnTraffic = 8;
inline constexpr SCNetworkReachabilityFlags kSCNetworkReachabilityFlagsInterventionRequired = 16;

// SCNetworkReachabilityCreateWithName, SCNetworkReachabilityGetFlags  Whether traffic to `host` (a name, an IPv4
// address, an IPv6 address with or without brackets) could leave the machine: its name is looked up, and the system is
// asked for a route to each of its addresses. Nothing is sent to the host. 0 when there is no route; nothing when the
// name is empty or cannot be looked up. Linux makes connections beforehand and not on demand, so the other three are
// never set.
//
// Waits for the look-up of the name, for as long as the system's resolver is set up to try. Any thread.
KELVANE_EXPORT std::optional<SCNetworkReachabilityFlags> networkReachabilityFlags(TextView host);

}  // namespace kelvane
