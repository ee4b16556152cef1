#pragma once

#include <ostream>
#include <string>

#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/TextEncoding.h"

// GoogleTest prints texts as the numbers of their code units; a person would rather read them.
namespace testing::internal {

inline void PrintTo(kelvane::TextView text, std::ostream* out) { *out << '"' << kelvane::utf8(text) << '"'; }

}  // namespace testing::internal
