#include "Extensions/ABAddressBook-QNExtensions.h"

#include "Platform/Foundation/ABAddressBook.h"

namespace kelvane::ABAddressBookExtensions {

std::vector<Text> myEmailAddresses() {
  return ABAddressBook::sharedAddressBook().me().value_or(ABPerson()).emailAddresses;
}

}  // namespace kelvane::ABAddressBookExtensions
