#include "Extensions/NSURL-QNExtensions.h"

#include "Extensions/NSBundle-QNExtensions.h"
#include "Network/QNNetworkUtilities.h"

namespace kelvane {

namespace NSURLExtensions {

Ref<NSURL> fileURLForResource(std::optional<TextView> name, std::optional<TextView> ofType) {
  return fileURLForResource(name, ofType, &NSBundle::mainBundle());
}

Ref<NSURL> fileURLForResource(std::optional<TextView> name, std::optional<TextView> ofType, const NSBundle* inBundle) {
  return inBundle ? URLForResource(*inBundle, name, ofType) : nullptr;
}

}  // namespace NSURLExtensions

bool isReachable(const Ref<NSURL>& receiver) { return QNNetworkUtilities::isReachable(receiver); }

}  // namespace kelvane
