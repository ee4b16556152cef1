#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSFileManager.h"

// Apart from the other operations on files, since the logger needs this one and they need the logger.
namespace kelvane::NSFileManagerExtensions {

// threadSafeManager  The calling thread's own file manager: the same one at each call, another than any other running
// thread's. It lives until the process ends; a thread that is started after another has ended may get that one's.
KELVANE_EXPORT NSFileManager& threadSafeManager();

}  // namespace kelvane::NSFileManagerExtensions
