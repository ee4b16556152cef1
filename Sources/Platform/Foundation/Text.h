#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

namespace kelvane {

// Text is UTF-16, and every length, index and range in the library counts UTF-16 code units. A text may hold anything,
// NUL characters and unpaired surrogates included; nothing but a conversion to another encoding looks at
// well-formedness.
//
// Operations take views and, where the result is a slice of what they were given, return views: they are valid as long
// as the text that they were taken from is neither changed nor destroyed.
using Text = std::u16string;
using TextView = std::u16string_view;

// A run of code units, or of elements: `location` is the index of the first, `length` how many there are.
struct NSRange {
  std::size_t location = 0;
  std::size_t length = 0;

  // The index behind the last one.
  constexpr std::size_t end() const { return location + length; }
  friend constexpr bool operator==(const NSRange&, const NSRange&) = default;
};

// The index of what is nowhere.
inline constexpr std::size_t NSNotFound = static_cast<std::size_t>(-1);

// A Text that is about to go. What would return a view of it refuses to take one.
template <class T>
concept TemporaryText = std::same_as<std::remove_const_t<T>, Text>;

}  // namespace kelvane
