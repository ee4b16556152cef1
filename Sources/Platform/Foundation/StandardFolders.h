#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Where the XDG base directories put the user's files. Any thread, as long as none changes the environment.
namespace kelvane {

// The folder of the user's configuration: XDG_CONFIG_HOME when that is an absolute path, else ".config" in the home
// folder.
KELVANE_EXPORT Text configurationFolderPath();

// The folder of the user's application data: XDG_DATA_HOME likewise, else ".local/share" in the home folder.
KELVANE_EXPORT Text dataFolderPath();

// The folder of what can be made again: XDG_CACHE_HOME likewise, else ".cache" in the home folder.
KELVANE_EXPORT Text cacheFolderPath();

}  // namespace kelvane
