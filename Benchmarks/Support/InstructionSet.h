#pragma once

namespace kelvane::bench {

// Measures our side at AVX2 as well, where the machine has AVX-512. To be called before rows are made. False when there
// is nothing to hold back.
bool compareWithAVX2();
bool comparesWithAVX2();

// As long as it lives, the library takes nothing above AVX2. What others choose, such as memcpy, stays.
class HeldAtAVX2 {
 public:
  HeldAtAVX2();
  ~HeldAtAVX2();
  HeldAtAVX2(const HeldAtAVX2&) = delete;
  HeldAtAVX2& operator=(const HeldAtAVX2&) = delete;
};

}  // namespace kelvane::bench
