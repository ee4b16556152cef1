#pragma once

#include <optional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// The user's home folder: what HOME names when that is an absolute path, else what the user database has; "/" when
// there is neither. Any thread, as long as none changes the environment meanwhile.
KELVANE_EXPORT Text NSHomeDirectory();

// The home folder of the user of that name; nothing when there is no such user.
KELVANE_EXPORT std::optional<Text> NSHomeDirectoryForUser(TextView name);

}  // namespace kelvane
