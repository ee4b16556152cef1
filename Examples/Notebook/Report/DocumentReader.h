#pragma once

#include <cstdint>
#include <string>

#include "Platform/Foundation/Text.h"

namespace notebook {

// What a file turned out to hold.
struct Document {
  enum class Kind {
    UTF8,
    // Bytes that are no UTF-8: `text` is what they mean in ISO Latin-1, in which everything means something.
    ISOLatin1,
    // No text, judged by a NUL byte near the start. `text` is empty.
    Binary,
    // `reason` tells why. `text` is empty.
    Unreadable,
  };

  Kind kind = Kind::Unreadable;
  // Without a byte-order mark.
  kelvane::Text text;
  // The size of the file.
  std::uint64_t bytes = 0;
  // When the file was last changed, in seconds since 1970.
  double changed = 0;
  // The first bytes of a binary file, or all.
  std::string beginning;
  std::string reason;
};

// Reads the file at `path`, as much of it as there was when it was opened. Links are followed. Never waits for a pipe
// or a device. While reading takes three times the file's size at most, afterwards twice, and hardly anything for
// binary files.
Document readDocument(const std::string& path);

}  // namespace notebook
