#pragma once

#include <optional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// debugDescription  The error with the whole chain of those that it comes from: its user information as a dictionary
// prints it, with "domain" and "code" besides, and the same of the underlying error in that one's place. Nil for an
// error without user information; as an underlying error that is "(null)". A chain of more than 512 errors ends in
// "...". Any thread.
//
//   {
//       NSUnderlyingError = {
//           code = 2;
//           domain = NSPOSIXErrorDomain;
//       };
//       code = 5;
//       domain = Notebook;
//   }
KELVANE_EXPORT std::optional<Text> debugDescription(const NSError& receiver);

}  // namespace kelvane
