#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

#include "Platform/Foundation/Text.h"

namespace kelvane {

// A text at the very end of readable memory: whatever reads behind it ends the program.
class TextBeforeAGap {
 public:
  explicit TextBeforeAGap(TextView text) : mySize(2 * static_cast<std::size_t>(sysconf(_SC_PAGESIZE))) {
    myPages = static_cast<char*>(mmap(nullptr, mySize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    mprotect(myPages + mySize / 2, mySize / 2, PROT_NONE);
    auto* start = reinterpret_cast<char16_t*>(myPages + mySize / 2) - text.size();
    std::copy(text.begin(), text.end(), start);
    myText = TextView(start, text.size());
  }
  ~TextBeforeAGap() { munmap(myPages, mySize); }
  TextBeforeAGap(const TextBeforeAGap&) = delete;
  TextBeforeAGap& operator=(const TextBeforeAGap&) = delete;

  TextView text() const { return myText; }

 private:
  std::size_t mySize;
  char* myPages;
  TextView myText;
};

}  // namespace kelvane
