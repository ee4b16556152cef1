#include "Platform/Foundation/NetworkReachability.h"

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

struct AddressRelease {
  void operator()(addrinfo* first) const { freeaddrinfo(first); }
};

// Connecting a datagram socket makes the system choose a route and an address of its own, and sends nothing.
bool hasRoute(const addrinfo& address) {
  const int datagrams = socket(address.ai_family, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (datagrams < 0) return false;
  const bool isRouted = connect(datagrams, address.ai_addr, address.ai_addrlen) == 0;
  close(datagrams);
  return isRouted;
}

}  // namespace

std::optional<SCNetworkReachabilityFlags> networkReachabilityFlags(TextView host) {
  if (host.starts_with(u'[') && host.ends_with(u']')) host = host.substr(1, host.size() - 2);
  // Cut at the NUL, it would be another name.
  if (host.empty() || host.find(u'\0') != TextView::npos) return std::nullopt;
  addrinfo wanted = {};
  wanted.ai_socktype = SOCK_DGRAM;
  // Names beyond ASCII are looked up in their ASCII form, which the resolver knows to make.
  wanted.ai_flags = AI_IDN;
  addrinfo* found = nullptr;
  // A port has to be named, since the system does not route to port 0 everywhere; that of discarded traffic.
  if (getaddrinfo(utf8(host).c_str(), "9", &wanted, &found) != 0) return std::nullopt;
  const std::unique_ptr<addrinfo, AddressRelease> addresses(found);
  for (const addrinfo* address = found; address; address = address->ai_next)
    if (hasRoute(*address)) return kSCNetworkReachabilityFlagsReachable;
  return 0;
}

}  // namespace kelvane
