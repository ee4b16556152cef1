#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <ostream>
#include <string>
#include <string_view>

#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/TextEncoding.h"

// GoogleTest prints texts as the numbers of their code units; a person would rather read them. Every test that compares
// texts includes this, since a program must not print one type in two ways.
namespace kelvane {

inline void printText(TextView text, std::ostream& out) {
  out << "u\"";
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isPair = i + 1 < text.size() && (text[i] & 0xFC00) == 0xD800 && (text[i + 1] & 0xFC00) == 0xDC00;
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\x%X", static_cast<unsigned>(text[i]));
    if (isPair)
      out << utf8(text.substr(i++, 2));
    else if (text[i] < u' ' || (text[i] & 0xF800) == 0xD800 || text[i] == u'"' || text[i] == u'\\')
      out << escape;
    else
      out << utf8(text.substr(i, 1));
  }
  out << '"';
}

inline void PrintTo(const NSRange& range, std::ostream* out) {
  *out << '{' << range.location << ", " << range.length << '}';
}
inline void PrintTo(const CGRect& rect, std::ostream* out) { *out << utf8(NSStringFromRect(rect)); }

}  // namespace kelvane

// An overload of PrintTo would not be found: for these types GoogleTest looks in namespace std.
template <>
class testing::internal::UniversalPrinter<std::u16string> {
 public:
  static void Print(const std::u16string& text, std::ostream* out) { kelvane::printText(text, *out); }
};

template <>
class testing::internal::UniversalPrinter<std::u16string_view> {
 public:
  static void Print(std::u16string_view text, std::ostream* out) { kelvane::printText(text, *out); }
};
