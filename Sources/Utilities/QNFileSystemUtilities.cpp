#include "Utilities/QNFileSystemUtilities.h"

#include <algorithm>

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSDirectoryEnumerator.h"
#include "Platform/Foundation/NSSearchPath.h"
#include "Platform/Foundation/PathText.h"

namespace kelvane {

std::vector<Text> QNFileSystemUtilities::pathsForLibraryResourcesOfType(const std::vector<Text>& types,
                                                                        TextView directory) {
  std::vector<Text> paths;
  for (const Text& library : NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSAllDomainsMask, true)) {
    const Text base = format(u"%@/%@", library, directory);
    NSDirectoryEnumerator walk(base);
    while (const auto item = walk.nextObject())
      if (std::ranges::find(types, pathExtension(*item)) != types.end()) paths.push_back(format(u"%@/%@", base, *item));
  }
  return paths;
}

}  // namespace kelvane
