#pragma once

#include <string_view>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// The failures that are thrown and not answered with nil. Every message names the operation and the value, in UTF-8; an
// operation that ends with ":" is not given another one. Any thread.
namespace kelvane {

// Throws std::invalid_argument with "operation: reason".
[[noreturn]] KELVANE_EXPORT void raiseInvalidArgument(std::string_view operation, std::string_view reason);

// Throws std::invalid_argument with "operation: reason 'value'".
[[noreturn]] KELVANE_EXPORT void raiseInvalidArgument(std::string_view operation, std::string_view reason,
                                                      TextView value);

// Throws std::out_of_range unless `index` is less than `count`.
KELVANE_EXPORT void requireIndex(std::string_view operation, std::size_t index, std::size_t count);

// Throws std::out_of_range unless `range` lies within `count` places; a location and length that overflow do not.
KELVANE_EXPORT void requireRange(std::string_view operation, NSRange range, std::size_t count);

}  // namespace kelvane
