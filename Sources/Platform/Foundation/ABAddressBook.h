#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// A person's card. Immutable.
struct ABPerson {
  // The values of the e-mail property, in the order of the card.
  std::vector<Text> emailAddresses;
};

// The user's contacts, of which there is the user's own card: the first one in the file "contacts/me.vcf" in the user's
// data folder. The file is read at each call. Any thread.
class KELVANE_EXPORT ABAddressBook {
 public:
  static const ABAddressBook& sharedAddressBook();

  // me  Nothing when there is no card, or it cannot be read.
  std::optional<ABPerson> me() const;
};

// The first card in `bytes`, which are vCards in UTF-8 (RFC 6350; also RFC 2426 and versions before, with values in
// quoted-printable). What is no property line is passed over; properties without a value are left out, and a card
// without its end ends with the bytes. Nothing when no card begins. Linear.
KELVANE_EXPORT std::optional<ABPerson> readVCard(std::string_view bytes);

}  // namespace kelvane
