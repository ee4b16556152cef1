#include "Platform/Foundation/StandardFolders.h"

#include <cstdlib>

#include "Platform/Foundation/HomeDirectory.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// A relative value is invalid and counts as unset.
Text folderFromEnvironment(const char* variable, TextView inHome) {
  const char* value = std::getenv(variable);
  if (value && value[0] == '/') return textFromFileSystem(value);
  const Text home = NSHomeDirectory();
  return home == u"/" ? home + Text(inHome) : home + u"/" + Text(inHome);
}

}  // namespace

Text configurationFolderPath() { return folderFromEnvironment("XDG_CONFIG_HOME", u".config"); }

Text dataFolderPath() { return folderFromEnvironment("XDG_DATA_HOME", u".local/share"); }

Text cacheFolderPath() { return folderFromEnvironment("XDG_CACHE_HOME", u".cache"); }

}  // namespace kelvane
