#pragma once

#include <cstddef>
#include <string>

namespace kelvane {

// A string of at most `limit` units that `fill(out)` writes and counts. Where the standard library can, the units are
// not cleared first. The size that g++ 12 hands to the callback may be larger than what was asked for, so `fill` never
// sees it.
template <class String, class Fill>
String overwritten(std::size_t limit, Fill fill) {
  String string;
#ifdef __cpp_lib_string_resize_and_overwrite
  string.resize_and_overwrite(limit, [&fill](auto* out, std::size_t) { return static_cast<std::size_t>(fill(out)); });
#else
  string.resize(limit);
  string.resize(static_cast<std::size_t>(fill(string.data())));
#endif
  return string;
}

// Puts at most `limit` units more at the end of `string`, which `fill(end)` writes and counts.
template <class String, class Fill>
void appendOverwritten(String& string, std::size_t limit, Fill fill) {
  const std::size_t size = string.size();
#ifdef __cpp_lib_string_resize_and_overwrite
  string.resize_and_overwrite(size + limit, [size, &fill](auto* out, std::size_t) {
    return size + static_cast<std::size_t>(fill(out + size));
  });
#else
  string.resize(size + limit);
  string.resize(size + static_cast<std::size_t>(fill(string.data() + size)));
#endif
}

}  // namespace kelvane
