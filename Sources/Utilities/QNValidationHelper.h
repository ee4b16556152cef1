#pragma once

#include <optional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// Checks of what users type in. Any thread.
//
// ```cpp
// const bool isAddress = QNValidationHelper::validateEmail(u"ann@example.org");
// ```
class KELVANE_EXPORT QNValidationHelper {
 public:
  // validateEmail:  Whether the whole text has the form of an e-mail address:
  // [A-Z0-9a-z._%+-]+@[A-Za-z0-9.-]+\.[A-Za-z]{2,4}. Top-level names of more than four letters do not; nil does not.
  static bool validateEmail(std::optional<TextView> address);
};

}  // namespace kelvane
