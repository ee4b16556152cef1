#pragma once

#include <optional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// URLForResource:ofType:  The file URL of a resource (NSBundle::pathForResource); when it is missing that is logged,
// and nil returned. Any thread.
KELVANE_EXPORT Ref<NSURL> URLForResource(const NSBundle& receiver, std::optional<TextView> name,
                                         std::optional<TextView> ofType);

}  // namespace kelvane
