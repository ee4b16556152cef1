#include "Platform/Foundation/TextScan.h"

#include <algorithm>

#include "Platform/Foundation/Overwrite.h"

namespace kelvane {

std::size_t findAnyOf(TextView text, const UnitSet& set, std::size_t from) {
  while (from < text.size() && !set.contains(text[from])) ++from;
  return std::min(from, text.size());
}

std::size_t findUnit(TextView text, char16_t unit, std::size_t from) {
  return std::min(text.find(unit, from), text.size());
}

std::size_t countUnit(TextView text, char16_t unit) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), unit));
}

Text replacingUnit(TextView text, char16_t from, char16_t to) {
  return overwritten<Text>(text.size(), [&](char16_t* out) {
    for (std::size_t i = 0; i < text.size(); ++i) out[i] = text[i] == from ? to : text[i];
    return text.size();
  });
}

}  // namespace kelvane
