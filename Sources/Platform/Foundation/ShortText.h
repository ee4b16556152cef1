#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

#include "Platform/Foundation/Text.h"

namespace kelvane {

// Text that grows at its end, without taking memory as long as it is short: for what is written or copied as soon as it
// is complete, such as a line of a log. Lives on the stack, for one thread.
class ShortText {
 public:
  ShortText() = default;
  ShortText(const ShortText&) = delete;
  ShortText& operator=(const ShortText&) = delete;

  // What has been appended so far; valid until more is.
  TextView view() const { return {myUnits, mySize}; }

  void append(char16_t unit) { *grown(1) = unit; }
  void append(std::size_t count, char16_t unit) { std::fill_n(grown(count), count, unit); }
  void append(TextView text) { text.copy(grown(text.size()), text.size()); }
  void appendASCII(std::string_view bytes) {
    char16_t* out = grown(bytes.size());
    for (const char byte : bytes) *out++ = static_cast<unsigned char>(byte);
  }
  // What the bytes hold as UTF-8, by the rules of `textFromUTF8`.
  void appendUTF8(std::string_view bytes);

 private:
  // Room for `count` more units, which count as appended.
  char16_t* grown(std::size_t count) {
    if (count > myCapacity - mySize) moveToMoreRoom(count);
    char16_t* const place = myUnits + mySize;
    mySize += count;
    return place;
  }
  void moveToMoreRoom(std::size_t count) {
    myCapacity = std::max(2 * myCapacity, mySize + count);
    auto memory = std::make_unique_for_overwrite<char16_t[]>(myCapacity);
    view().copy(memory.get(), mySize);
    myMemory = std::move(memory);
    myUnits = myMemory.get();
  }

  char16_t myRoom[500];
  std::unique_ptr<char16_t[]> myMemory;
  char16_t* myUnits = myRoom;
  std::size_t mySize = 0;
  std::size_t myCapacity = std::size(myRoom);
};

}  // namespace kelvane
