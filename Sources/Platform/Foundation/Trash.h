#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// Moves the file, the link (not what it leads to) or the folder at `path` to the trash, from where the user's file
// manager can bring it back: the trash in the user's data folder, or for another mount the one at its top (the
// freedesktop.org trash standard, 1.0). What cannot be moved there stays where it is, nothing is ever deleted or
// copied; so it is where XDG_DATA_HOME is relative, and with the root and paths that end in "." or "..".
//
// True when it was moved. Then `resultingItemURL`, unless null, is set to where it is now, or nil if that cannot be
// told. Otherwise `error`, unless null, is set to the reason. Any thread.
KELVANE_EXPORT bool trashItemAtPath(TextView path, Ref<NSURL>* resultingItemURL, Ref<NSError>* error);

}  // namespace kelvane
