#include "Platform/Foundation/NetworkReachability.h"

#include <netdb.h>
#include <sys/socket.h>
#include <unicode/idna.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <string>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// No name has more in any form.
constexpr std::size_t mostUnits = 1024;

struct AddressRelease {
  void operator()(addrinfo* first) const { freeaddrinfo(first); }
};

// The name as the resolver takes it: names beyond ASCII have a form of ASCII (UTS #46), which does not depend on the
// process's locale, as the C library's own conversion would. Empty where there is none.
std::string asciiName(TextView host) {
  if (std::ranges::all_of(host, [](char16_t unit) { return unit < 0x80; })) return utf8(host);
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::IDNA> names(icu::IDNA::createUTS46Instance(UIDNA_NONTRANSITIONAL_TO_ASCII, status));
  if (U_FAILURE(status) || host.size() > mostUnits) return {};
  icu::UnicodeString ascii;
  icu::IDNAInfo info;
  names->nameToASCII({host.data(), static_cast<std::int32_t>(host.size())}, ascii, info, status);
  if (U_FAILURE(status) || info.hasErrors()) return {};
  return utf8({ascii.getBuffer(), static_cast<std::size_t>(ascii.length())});
}

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
  const std::string name = host.find(u'\0') == TextView::npos ? asciiName(host) : std::string();
  if (name.empty()) return std::nullopt;
  addrinfo wanted = {};
  wanted.ai_socktype = SOCK_DGRAM;
  addrinfo* found = nullptr;
  // A port has to be named, since the system does not route to port 0 everywhere; that of discarded traffic.
  if (getaddrinfo(name.c_str(), "9", &wanted, &found) != 0) return std::nullopt;
  const std::unique_ptr<addrinfo, AddressRelease> addresses(found);
  for (const addrinfo* address = found; address; address = address->ai_next)
    if (hasRoute(*address)) return kSCNetworkReachabilityFlagsReachable;
  return 0;
}

}  // namespace kelvane
