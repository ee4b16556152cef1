#pragma once

#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// Questions about the standard folders. Any thread.
class KELVANE_EXPORT QNFileSystemUtilities {
 public:
  // pathsForLibraryResourcesOfType:directory:  The paths of all items, folders included, in the folder `directory` of
  // the Library folder of every domain, at any depth, whose path extension is among those given, letter for letter.
  // User before local before system, and within each in the order of the file system; links are not followed.
  //
  // ```cpp
  // const auto themes = QNFileSystemUtilities::pathsForLibraryResourcesOfType({u"css", u"js"}, u"Notebook/Themes");
  // ```
  static std::vector<Text> pathsForLibraryResourcesOfType(const std::vector<Text>& types, TextView directory);
};

}  // namespace kelvane
