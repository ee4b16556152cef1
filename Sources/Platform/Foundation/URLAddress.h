#pragma once

#include <optional>
#include <string>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSURL.h"

namespace kelvane {

// The URL as servers and name servers take it, in ASCII: a host's name in its Punycode form (UTS #46, not
// transitional), everything else that is not ASCII percent-encoded as UTF-8. Nothing when the host's name has no such
// form. Any thread.
//
//   http://bücher.example/é?ü#x => http://xn--bcher-kva.example/%C3%A9?%C3%BC#x
KELVANE_EXPORT std::optional<std::string> asciiAddress(const NSURL& url);

}  // namespace kelvane
