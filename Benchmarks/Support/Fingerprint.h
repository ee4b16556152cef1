#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "Platform/Foundation/Text.h"

// A number by which results of different libraries are found to be the same: texts with the same code units, bytes with
// the same bytes, lists of equal elements in the same order and dictionaries of equal entries in any order have the
// same one, whatever their types are called. No library has to be included for that.
namespace kelvane::bench {

inline std::uint64_t mixed(std::uint64_t a, std::uint64_t b) {
  return (a ^ (b + 0x9E3779B97F4A7C15U + (a << 6U) + (a >> 2U))) * 0xFF51AFD7ED558CCDU;
}

template <class T>
std::uint64_t fingerprint(const T& value);

// Qt's and ICU's texts, by what only they have.
template <class T>
concept QtText = requires(const T& text) {
  text.utf16();
};
template <class T>
concept ICUText = requires(const T& text) {
  text.getBuffer();
};
template <class T>
concept QtBytes = requires(const T& bytes) {
  { bytes.constData() } -> std::same_as<const char*>;
};
template <class T>
concept QtDictionary = requires(const T& dictionary) {
  dictionary.keyValueBegin();
};
template <class T>
concept Pair = requires(const T& pair) {
  pair.first;
  pair.second;
};

// Entries add up, so that their order does not count.
template <class T>
std::uint64_t fingerprintOfElements(const T& elements) {
  std::uint64_t sum = 0;
  for (const auto& element : elements) {
    const std::uint64_t one = fingerprint(element);
    sum = Pair<std::remove_cvref_t<decltype(element)>> ? sum + one : mixed(sum, one);
  }
  return sum;
}

template <class T>
std::uint64_t fingerprint(const T& value) {
  if constexpr (std::convertible_to<const T&, TextView>) {
    return std::hash<TextView>()(value);
  } else if constexpr (std::convertible_to<const T&, std::string_view>) {
    return std::hash<std::string_view>()(value);
  } else if constexpr (QtText<T>) {
    return fingerprint(TextView(reinterpret_cast<const char16_t*>(value.utf16()), std::size_t(value.size())));
  } else if constexpr (ICUText<T>) {
    return fingerprint(TextView(value.getBuffer(), std::size_t(value.length())));
  } else if constexpr (QtBytes<T>) {
    return fingerprint(std::string_view(value.constData(), std::size_t(value.size())));
  } else if constexpr (std::integral<T>) {
    return static_cast<std::uint64_t>(value);
  } else if constexpr (std::floating_point<T>) {
    return std::hash<double>()(value);
  } else if constexpr (QtDictionary<T>) {
    std::uint64_t sum = 0;
    for (auto i = value.keyValueBegin(); i != value.keyValueEnd(); ++i)
      sum += mixed(fingerprint((*i).first), fingerprint((*i).second));
    return sum;
  } else if constexpr (Pair<T>) {
    return mixed(fingerprint(value.first), fingerprint(value.second));
  } else {
    return fingerprintOfElements(value);
  }
}

}  // namespace kelvane::bench
