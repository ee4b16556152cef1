#include <string>
#include <vector>

#include "Fuzz.h"
#include "Platform/Foundation/ABAddressBook.h"

using namespace kelvane;
using kelvane::fuzz::expect;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::bytesOf(data, size);
  const auto person = readVCard(bytes);
  std::size_t units = 0;
  for (const Text& address : person.value_or(ABPerson()).emailAddresses) {
    expect(!address.empty(), "no address is empty");
    units += address.size();
  }
  expect(units <= bytes.size(), "addresses are no longer than the card");
  // What follows the first card does not matter. A blank at its start would make it a part of the line before.
  const std::string whole = "BEGIN:VCARD\nEMAIL:a@b\nEND:VCARD\nNOTE:\n" + std::string(bytes);
  const auto first = readVCard(whole);
  expect(first && first->emailAddresses == std::vector<Text>{u"a@b"}, "the first card counts");
  return 0;
}
