#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string_view>

#include "Platform/Foundation/Text.h"

// What a fuzzer's run-time calls with each input, defined once in each program here.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace kelvane::fuzz {

inline std::string_view bytesOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// Ends the program, so that the input is kept, when something that should always hold does not.
inline void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

// Takes what stands before the first `mark` off `rest`: all of it when there is none.
inline std::string_view takeUntil(std::string_view& rest, char mark) {
  const std::string_view taken = rest.substr(0, rest.find(mark));
  rest.remove_prefix(taken.size() == rest.size() ? taken.size() : taken.size() + 1);
  return taken;
}

// A text whose memory ends right behind it, so that address checking sees every read beyond it, which it does not in
// the spare room of a string. The length decides about the alignment.
class ExactText {
 public:
  explicit ExactText(TextView text)
      : myStart(text.size() % 16), mySize(text.size()), myUnits(new char16_t[myStart + mySize]) {
    std::copy(text.begin(), text.end(), myUnits.get() + myStart);
  }

  TextView view() const { return {myUnits.get() + myStart, mySize}; }

 private:
  std::size_t myStart;
  std::size_t mySize;
  std::unique_ptr<char16_t[]> myUnits;
};

// That `slice` is a part of `whole` and no copy of one.
inline void expectSlice(TextView slice, TextView whole, const char* what) {
  const std::less_equal<const char16_t*> isUpTo;
  expect(isUpTo(whole.data(), slice.data()) && isUpTo(slice.data() + slice.size(), whole.data() + whole.size()), what);
}

}  // namespace kelvane::fuzz

// fontconfig keeps some of what it has read for itself, without a way to give it back.
extern "C" __attribute__((weak)) const char* __lsan_default_suppressions();
extern "C" __attribute__((weak)) const char* __lsan_default_suppressions() { return "leak:libfontconfig"; }
