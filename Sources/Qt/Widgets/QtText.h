#pragma once

#include <QString>

#include "Platform/Foundation/Text.h"

// Text crosses to Qt and back as it is: both count in UTF-16 code units.
namespace kelvane {

inline QString qString(TextView text) {
  return QString(reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
}

inline Text textOf(const QString& string) {
  return Text(reinterpret_cast<const char16_t*>(string.utf16()), static_cast<std::size_t>(string.size()));
}

}  // namespace kelvane
