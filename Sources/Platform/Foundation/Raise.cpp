#include "Platform/Foundation/Raise.h"

#include <stdexcept>
#include <string>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {

void raiseInvalidArgument(std::string_view operation, std::string_view reason) {
  throw std::invalid_argument(std::string(operation) + ": " + std::string(reason));
}

void raiseInvalidArgument(std::string_view operation, std::string_view reason, TextView value) {
  throw std::invalid_argument(std::string(operation) + ": " + std::string(reason) + " '" + utf8(value) + "'");
}

void requireIndex(std::string_view operation, std::size_t index, std::size_t count) {
  if (index < count) return;
  throw std::out_of_range(std::string(operation) + ": index " + std::to_string(index) + " is beyond the " +
                          std::to_string(count) + " that there are");
}

void requireRange(std::string_view operation, NSRange range, std::size_t count) {
  if (range.location <= count && range.length <= count - range.location) return;
  throw std::out_of_range(std::string(operation) + ": range {" + std::to_string(range.location) + ", " +
                          std::to_string(range.length) + "} is beyond the " + std::to_string(count) +
                          " that there are");
}

}  // namespace kelvane
