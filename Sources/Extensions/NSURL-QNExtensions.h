#pragma once

#include <optional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

namespace NSURLExtensions {

// fileURLForResource:ofType:  The file URL of a resource of the main bundle; logs and gives nil when it is missing.
KELVANE_EXPORT Ref<NSURL> fileURLForResource(std::optional<TextView> name, std::optional<TextView> ofType);
// fileURLForResource:ofType:inBundle:  The same in another bundle; nil for none.
KELVANE_EXPORT Ref<NSURL> fileURLForResource(std::optional<TextView> name, std::optional<TextView> ofType,
                                             const NSBundle* inBundle);

}  // namespace NSURLExtensions

// isReachable  Whether traffic to the URL's host could leave the machine (QNNetworkUtilities::isReachable).
KELVANE_EXPORT bool isReachable(const Ref<NSURL>& receiver);

}  // namespace kelvane
