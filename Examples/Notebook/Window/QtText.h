#pragma once

#include <QString>

#include "Platform/Foundation/Text.h"

namespace notebook {

inline QString toQt(kelvane::TextView text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

// A view, which lives as long as the string does and is not changed.
inline kelvane::TextView viewOf(const QString& string) {
  return {reinterpret_cast<const char16_t*>(string.utf16()), static_cast<std::size_t>(string.size())};
}

inline kelvane::Text fromQt(const QString& string) { return kelvane::Text(viewOf(string)); }

}  // namespace notebook
