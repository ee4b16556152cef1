#include "Platform/Foundation/Raise.h"

#include <stdexcept>
#include <string>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// Selectors bring their own colon.
std::string startingWith(std::string_view operation) {
  return std::string(operation) + (operation.ends_with(':') ? " " : ": ");
}

}  // namespace

void raiseInvalidArgument(std::string_view operation, std::string_view reason) {
  throw std::invalid_argument(startingWith(operation) + std::string(reason));
}

void raiseInvalidArgument(std::string_view operation, std::string_view reason, TextView value) {
  throw std::invalid_argument(startingWith(operation) + std::string(reason) + " '" + utf8(value) + "'");
}

void requireIndex(std::string_view operation, std::size_t index, std::size_t count) {
  if (index < count) return;
  throw std::out_of_range(startingWith(operation) + "index " + std::to_string(index) + " is beyond the " +
                          std::to_string(count) + " that there are");
}

void requireRange(std::string_view operation, NSRange range, std::size_t count) {
  if (range.location <= count && range.length <= count - range.location) return;
  throw std::out_of_range(startingWith(operation) + "range {" + std::to_string(range.location) + ", " +
                          std::to_string(range.length) + "} is beyond the " + std::to_string(count) +
                          " that there are");
}

}  // namespace kelvane
