#pragma once

#include <optional>
#include <span>

#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

// What reading and writing styled text as HTML share; hosts need none of this. Main thread only.
namespace kelvane {

// A character that is read as the name of its reference, which has no ";".
struct HTMLKeyword {
  char16_t key;
  TextView name;
};

// In the order in which they are tried; none before `didLoad`.
std::span<const HTMLKeyword> htmlKeywords();
// The palette's name of black; nothing before `didLoad`.
const std::optional<Text>& blackColorString();

// The size that needs no tag, and what lies between points and the sizes of HTML.
inline constexpr double htmlDefaultPointSize = 12.0;
inline constexpr int htmlSizeOffset = 9;

}  // namespace kelvane
