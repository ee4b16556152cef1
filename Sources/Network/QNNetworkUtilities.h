#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/NetworkReachability.h"
#include "Platform/Foundation/Ref.h"

namespace kelvane {

// Questions to be asked before work on the network. Nothing is sent to the hosts that they are about; they wait only
// for names to be looked up. Any thread.
//
// ```cpp
// if (QNNetworkUtilities::isReachable(NSURL::URLWithString(u"https://example.org/"))) post.postAndNotify(form);
// ```
class KELVANE_EXPORT QNNetworkUtilities {
 public:
  // isOnline  Whether one of three well-known sites is reachable; they are tried in order until one is.
  static bool isOnline();
  // isReachable:  Whether traffic to the URL's host could leave the machine, at once and without the user's help. False
  // for nil, a URL without a host, and a host that cannot be looked up.
  static bool isReachable(const Ref<NSURL>& url);
  // Whether these flags mean that: reachable, without a connection that would have to be made first.
  static bool isReachable(SCNetworkReachabilityFlags flags);
};

}  // namespace kelvane
