#include "Platform/Foundation/URLAddress.h"

#include <unicode/uidna.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

bool isASCII(std::string_view text) {
  return std::ranges::all_of(text, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

void appendEncoded(std::string& address, std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  for (const char byte : text) {
    const auto value = static_cast<unsigned char>(byte);
    if (value < 0x80)
      address += byte;
    else
      address.append({'%', digits[value >> 4U], digits[value & 15U]});
  }
}

std::optional<std::string> asciiHost(std::string_view host) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UIDNA, void (*)(UIDNA*)> names(
      uidna_openUTS46(UIDNA_NONTRANSITIONAL_TO_ASCII | UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ, &status), uidna_close);
  // No name that can be looked up is longer.
  char ascii[256];
  UIDNAInfo info = UIDNA_INFO_INITIALIZER;
  const int32_t length = uidna_nameToASCII_UTF8(names.get(), host.data(), static_cast<int32_t>(host.size()), ascii,
                                                sizeof ascii, &info, &status);
  if (U_FAILURE(status) || info.errors != 0 || length > static_cast<int32_t>(sizeof ascii)) return std::nullopt;
  return std::string(ascii, static_cast<std::size_t>(length));
}

}  // namespace

std::optional<std::string> asciiAddress(const NSURL& url) {
  std::string text = utf8(url.absoluteString());
  if (isASCII(text)) return text;
  const std::string_view whole = text;
  const std::size_t mark = whole.find("://");
  const std::size_t start = mark == std::string_view::npos ? 0 : mark + 3;
  const std::size_t end =
      mark == std::string_view::npos ? 0 : std::min(whole.find_first_of("/?#", start), whole.size());
  // Empty where there is none.
  const std::string_view authority = whole.substr(start, end - start);
  const std::size_t host = authority.rfind('@') + 1;
  std::string address(whole.substr(0, start));
  appendEncoded(address, authority.substr(0, host));
  const std::size_t port = std::min(authority.find(':', host), authority.size());
  const std::string_view name = authority.substr(host, port - host);
  if (isASCII(name)) {
    address += name;
  } else {
    if (name.size() > 1000) return std::nullopt;
    const auto ascii = asciiHost(name);
    if (!ascii) return std::nullopt;
    address += *ascii;
  }
  appendEncoded(address, authority.substr(port));
  appendEncoded(address, whole.substr(end));
  return address;
}

}  // namespace kelvane
