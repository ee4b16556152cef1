#pragma once

#include <cstdint>
#include <optional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/NSURLRequest.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/URLLimits.h"

// Files and servers behind URLs. Any thread.
//
// ```cpp
// const Ref<NSURL> address = NSURL::URLWithString(u"https://example.org/garden.png");
// if (isReachable(address))
//   if (const auto file = qn_downloadContentsOfURLToTemporaryFolderUsingFileExtension(address, u"png"))
//     std::cout << utf8(file->absoluteString()) << '\n';
// ```
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

// What a download may ask for unless it is told otherwise: as much as disks hold rather than memory.
inline constexpr URLLimits downloadLimits = {.receivedBytes = std::uint64_t{64} << 30U};

// qn_downloadContentsOfURLToTemporaryFolderUsingFileExtension:  Reads what is behind the receiver (http, https or file)
// into a new file in the user's folder for temporary files, whose URL it gives: a UUID, a point and `extension`,
// without both for nil. Blocks meanwhile. The file is there whole or not at all: when the reading or the writing fails,
// that is logged, and the result is nil. Takes no more memory for a long download than for a short one.
KELVANE_EXPORT Ref<NSURL> qn_downloadContentsOfURLToTemporaryFolderUsingFileExtension(
    const Ref<NSURL>& receiver, std::optional<TextView> extension, const URLProgressCall& progress = nullptr,
    const URLLimits& limits = downloadLimits);

}  // namespace kelvane
