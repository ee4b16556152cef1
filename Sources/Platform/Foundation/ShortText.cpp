#include "Platform/Foundation/ShortText.h"

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {

void ShortText::appendUTF8(std::string_view bytes) {
  // Mostly it is ASCII, so that is tried first.
  const std::size_t before = mySize;
  appendASCII(bytes);
  if (std::ranges::all_of(bytes, [](char byte) { return (byte & 0x80) == 0; })) return;
  mySize = before;
  append(textFromUTF8(bytes));
}

}  // namespace kelvane
