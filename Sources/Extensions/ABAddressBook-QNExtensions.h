#pragma once

#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane::ABAddressBookExtensions {

// myEmailAddresses  The e-mail addresses on the user's own card (ABAddressBook.h), in its order; none when there is no
// card. Any thread.
KELVANE_EXPORT std::vector<Text> myEmailAddresses();

}  // namespace kelvane::ABAddressBookExtensions
